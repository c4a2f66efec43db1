// SPDX-License-Identifier: MIT
#pragma once

#include "simulation/tally.h"

#include <cstdint>

/// Runs schedule `number` of followers: callers follow lists of a robot whose values change, over a
/// network in virtual time, and every answer is checked. At first all is well; then much goes
/// wrong. Counts it, with its events, in `tally`. Throws Violation.
void runFollowingSchedule(std::uint64_t seed, std::uint64_t number, Tally& tally, bool isTraced);
