// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string_view>

namespace zo {

/// The numbers of the protocol. Each of these tells whether the whole of `text` is one; if it is
/// none, the argument for it stays as it was.

/// How long something is: plain digits only, so that one length has one spelling. -1 stands for
/// what is not there.
bool readLength(std::string_view text, std::int64_t& length);

bool readInteger(std::string_view text, std::int64_t& number);

/// `inf`, `-inf` and `nan` are doubles, too; what is beyond a double's range is none.
bool readDouble(std::string_view text, double& number);

bool isBigNumber(std::string_view text);

inline bool isDigit(char byte)
{
    return byte >= '0' && byte <= '9';
}

} // namespace zo
