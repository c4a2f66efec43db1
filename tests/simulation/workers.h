// SPDX-License-Identifier: MIT
#pragma once

#include "simulation/options.h"
#include "simulation/tally.h"

/// Runs all schedules, those of the link or those of followers, in a process for each core; one
/// that crashes or hangs is a violation of its schedule. Tells of the first violations. Throws
/// std::runtime_error when the system does not allow it.
Tally runAll(const SimulateOptions& options);

/// Runs one schedule in this process; whether all was well.
bool runAlone(const SimulateOptions& options);
