// SPDX-License-Identifier: MIT
#include <kit/hex.h>

#include <value/hex.h>

namespace kit {

void appendHex(char byte, std::string& text)
{
    zo::appendHex(byte, text);
}

} // namespace kit
