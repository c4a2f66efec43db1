// SPDX-License-Identifier: MIT
#pragma once

#include "network/loop_watch.h"
#include "network/profiles.h"
#include "network/report.h"

#include <chrono>

/// What a user does to a panel, and what may happen to its robot, on one network: how long
/// getListData holds the window up in each. What happens to the robot lasts for `time`.
void reportScenes(const NetworkProfile& profile, std::chrono::milliseconds time, LoopWatch& loop,
                  Report& report);
