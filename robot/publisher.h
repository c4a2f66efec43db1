// SPDX-License-Identifier: MIT
#pragma once

#include "robot_keys.h"

#include <zo/memory_proxy.h>

#include <vector>

/// Writes all keys of a robot to a memory.
class Publisher
{
public:
    Publisher(std::vector<RobotKey> keys, ZoMemoryProxy memory);

    /// Writes every key's value at the time `seconds`, in one request. Throws ZoError.
    void publish(double seconds);

private:
    std::vector<RobotKey> fKeys;
    ZoMemoryProxy fMemory;
    ZoValue fPairs; ///< the request, with the names in place
};
