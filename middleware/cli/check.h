// SPDX-License-Identifier: MIT
#pragma once

namespace kit {
struct Connection;
class Output;
} // namespace kit

/// Prints a line for each step of reaching the robot of `connection`: ok, failed or skipped, what
/// it is about, what was found, and what to do about a failure. Whether all is well. Throws what
/// ZoCheck::run does, and what Output does.
bool checkRobot(const kit::Connection& connection, kit::Output& output);
