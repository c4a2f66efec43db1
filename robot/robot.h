// SPDX-License-Identifier: MIT
#pragma once

#include "arguments.h"

/// Runs the robot until the process gets SIGTERM, SIGINT or SIGHUP. Tells on standard output where
/// its keys can be read, and how, and on standard error what goes wrong. Call it from the main
/// thread before there is any other; it blocks these signals.
void runRobot(RobotArguments arguments);
