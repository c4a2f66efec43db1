// SPDX-License-Identifier: MIT
#pragma once

#include "arguments.h"

#include <iosfwd>

/// Runs the robot until the process gets SIGTERM, SIGINT or SIGHUP, and returns the program's exit
/// status. Tells on `out` where its keys can be read and on `err` what goes wrong. Call it from
/// the main thread before there is any other; it blocks these signals.
int runRobot(const RobotArguments& arguments, std::ostream& out, std::ostream& err);
