// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace zo {

/// Appends the two hexadecimal digits of `byte`, in lower case.
inline void appendHex(char byte, std::string& text)
{
    static constexpr char digits[] = "0123456789abcdef";
    const auto code = static_cast<unsigned char>(byte);
    text += digits[code >> 4U];
    text += digits[code & 0xFU];
}

} // namespace zo
