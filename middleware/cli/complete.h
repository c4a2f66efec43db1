// SPDX-License-Identifier: MIT
#pragma once

#include <kit/completion.h>
#include <kit/connection_options.h>

/// How a line of the program `zo` goes on, of whose words behind the program's name the last is
/// being written. Asks the robot for its keys where one may stand. Throws when something fails;
/// does not return where a line of `zo record` is asked for, which its own program knows.
kit::Completion completeZo(const std::vector<std::string>& words);

/// The robot's keys; ends the password's copies.
std::vector<std::string> keysToChoose(kit::Connection& connection);
