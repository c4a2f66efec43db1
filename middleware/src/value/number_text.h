// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

namespace zo {

/// Both append the shortest text that reads back exactly; what is not finite is `nan`, `inf` or
/// `-inf`, as strtod reads it.
void appendNumber(std::int64_t number, std::string& text);
void appendNumber(double number, std::string& text);

} // namespace zo
