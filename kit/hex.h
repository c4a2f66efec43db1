// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace kit {

/// Appends the two hexadecimal digits of `byte`, in lower case.
void appendHex(char byte, std::string& text);

} // namespace kit
