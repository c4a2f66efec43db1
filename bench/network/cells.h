// SPDX-License-Identifier: MIT
#pragma once

#include "network/load.h"
#include "network/loop_watch.h"
#include "network/profiles.h"
#include "network/report.h"

#include <chrono>

/// A panel on one network that watches one load: measures it for `time` (or, where the network
/// pauses, a whole number of times between pauses), with lists that are followed and with plain
/// calls, and reports both.
void reportCell(const NetworkProfile& profile, const Load& load, std::chrono::milliseconds time,
                LoopWatch& loop, Report& report);
