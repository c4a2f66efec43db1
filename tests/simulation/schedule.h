// SPDX-License-Identifier: MIT
#pragma once

#include "simulation/tally.h"

#include <cstdint>

/// Runs schedule `number` of `seed`, from which all that happens in it follows: a link and its
/// robot, and all that goes wrong between them. Then all becomes good, and the link must come up;
/// then it is stopped. Counts it, with its events, in `tally`. Throws Violation.
void runSchedule(std::uint64_t seed, std::uint64_t number, Tally& tally, bool isTraced);
