// SPDX-License-Identifier: MIT
#pragma once

#include "simulation/tally.h"

#include <cstdint>

/// Runs schedule `number` of `seed`: a link whose robot is on a cluster, and what happens there.
/// Then all becomes good, and the link must serve; then it is stopped. Counts it in `tally`. Throws
/// Violation.
void runClusterSchedule(std::uint64_t seed, std::uint64_t number, Tally& tally, bool isTraced);
