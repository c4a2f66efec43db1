// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace zo {

/// `key` in quotes, short and printable, for messages.
std::string quotedKey(std::string_view key);

/// Whether the robot is asked for `key` at all: one of more than 64 KiB names no value of a robot.
bool canBeKey(const std::string& key);

/// Throws ZoError for a key that cannot be one.
void checkKey(const std::string& key);

} // namespace zo
