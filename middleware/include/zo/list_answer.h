// SPDX-License-Identifier: MIT
#pragma once

#include <zo/value.h>

#include <chrono>
#include <vector>

/// What `ZoMemoryProxy::getListAnswer` tells.
struct ZoListAnswer
{
    ZoValue values; ///< as getListData returns them
    /// When the answer came in, whole, from the robot; of the same answer always the same. A list
    /// that is followed may be answered with what came before it was asked for. For wall clock
    /// time: system_clock::now() - (steady_clock::now() - arrived).
    std::chrono::steady_clock::time_point arrived;
    /// The positions in `values`, ascending, of values that are not what they were in the last
    /// answer to the same request; all of them in the first one.
    std::vector<int> changed;
    /// How many values are invalid because the robot's are larger than what is read, 1 MiB. Not
    /// known, and 0, of lists that are followed.
    int tooLarge = 0;
};
