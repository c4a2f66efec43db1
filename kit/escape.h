// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace kit {

/// `text` on one line, whatever is in it, so that it can be told back: tab, line feed, carriage
/// return and backslash as \t \n \r \\, the bytes of other control characters and of Unicode's
/// line breaks as \xHH with two lower-case digits. All other bytes stay as they are.
std::string escaped(std::string_view text);

} // namespace kit
