// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zo {

/// Appends one command with its arguments, encoded for the robot, to `bytes`.
void appendCommand(const std::vector<std::string_view>& words, std::string& bytes);

/// One command alone.
std::string encodeCommand(const std::vector<std::string_view>& words);

} // namespace zo
