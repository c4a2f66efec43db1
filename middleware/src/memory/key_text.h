// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace zo {

/// `key` in quotes, short and printable, for messages.
std::string quotedKey(std::string_view key);

bool endsWith(std::string_view key, std::string_view ending);

/// Whether the robot is asked for `key` behind its `prefix` at all: together more than 64 KiB name
/// no value of a robot.
bool canBeKey(std::string_view prefix, std::string_view key);

/// Throws ZoError for a key that cannot be one.
void checkKey(std::string_view prefix, std::string_view key);

} // namespace zo
