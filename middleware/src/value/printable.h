// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace zo {

/// `text`, of whatever origin, made fit for a message: short, and in whole UTF-8 characters that
/// a terminal shows and does not obey. Each byte or character that is not gets a '?'.
std::string printable(std::string_view text);

} // namespace zo
