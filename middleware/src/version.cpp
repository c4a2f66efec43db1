// SPDX-License-Identifier: MIT
#include <zo/version.h>

#include <boost/version.hpp>
#include <openssl/crypto.h>
#include <simdjson.h>

namespace {

std::string numbers(int first, int second, int third)
{
    return std::to_string(first) + '.' + std::to_string(second) + '.' + std::to_string(third);
}

} // namespace

std::string ZoVersion::library()
{
    return ZO_VERSION;
}

std::vector<ZoVersion::Part> ZoVersion::parts()
{
    return {
        {"OpenSSL", OpenSSL_version(OPENSSL_VERSION_STRING)},
        {"Boost", numbers(BOOST_VERSION / 100000, BOOST_VERSION / 100 % 1000, BOOST_VERSION % 100)},
        {"simdjson", numbers(simdjson::SIMDJSON_VERSION_MAJOR, simdjson::SIMDJSON_VERSION_MINOR,
                             simdjson::SIMDJSON_VERSION_REVISION)},
    };
}
