// SPDX-License-Identifier: MIT
#include "wire/server_error.h"

#include <algorithm>
#include <iterator>

namespace zo {

namespace {

bool beginsWith(std::string_view text, std::string_view beginning)
{
    return text.substr(0, beginning.size()) == beginning;
}

} // namespace

bool wantsLogin(std::string_view error)
{
    return beginsWith(error, "NOAUTH");
}

bool isForbidden(std::string_view error)
{
    return beginsWith(error, "NOPERM");
}

bool isKeyForbidden(std::string_view error)
{
    return isForbidden(error) && error.find("permissions to run") == std::string_view::npos;
}

bool isUnknown(std::string_view error)
{
    return beginsWith(error, "ERR unknown ") ||
           beginsWith(error, "ERR This instance has cluster support disabled");
}

bool willPass(std::string_view error)
{
    constexpr std::string_view passing[] = {"LOADING ",
                                            "BUSY ",
                                            "MASTERDOWN ",
                                            "TRYAGAIN ",
                                            "CLUSTERDOWN ",
                                            "DENIED ",
                                            "ERR max number of clients"};
    return std::any_of(std::begin(passing), std::end(passing),
                       [&](std::string_view beginning) { return beginsWith(error, beginning); });
}

} // namespace zo
