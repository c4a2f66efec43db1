// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace zo {

/// Begins a command of so many words, which follow one by one.
void beginCommand(std::size_t words, std::string& bytes);
void appendWord(std::string_view word, std::string& bytes);
/// A word of two parts.
void appendWord(std::string_view begin, std::string_view rest, std::string& bytes);

/// Appends one command with its arguments, encoded for the robot, to `bytes`.
void appendCommand(const std::vector<std::string_view>& words, std::string& bytes);

/// One command alone.
std::string encodeCommand(const std::vector<std::string_view>& words);

} // namespace zo
