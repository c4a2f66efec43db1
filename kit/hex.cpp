// SPDX-License-Identifier: MIT
#include <kit/hex.h>

namespace kit {

void appendHex(char byte, std::string& text)
{
    static constexpr char digits[] = "0123456789abcdef";
    const auto code = static_cast<unsigned char>(byte);
    text += digits[code >> 4U];
    text += digits[code & 0xFU];
}

} // namespace kit
