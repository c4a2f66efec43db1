// SPDX-License-Identifier: MIT
#pragma once

#include "arguments.h"

/// Publishes a recording as runRobot does a robot.
void runReplay(RobotArguments arguments);
