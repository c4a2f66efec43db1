// SPDX-License-Identifier: MIT
#pragma once

#include "robot_keys.h"

#include <zo/memory_proxy.h>

#include <vector>

/// Writes the keys of a robot to a memory: those whose values have changed, and the others in turn,
/// so that none that the memory has lost stays away.
class Publisher
{
public:
    /// Within so many seconds each key is written.
    static constexpr double fTurn = 10;

    Publisher(std::vector<RobotKey> keys, ZoMemoryProxy memory);

    /// Writes the values at the time `seconds`, in one request; all of them the first time, and
    /// where it is not known what the memory has. Throws ZoError.
    void publish(double seconds);
    /// The memory may have lost what it had.
    void startOver() { fIsKnown = false; }

private:
    bool isInTurn(std::size_t key, double seconds) const;

    std::vector<RobotKey> fKeys;
    ZoMemoryProxy fMemory;
    std::vector<ZoValue> fWritten; ///< by key
    bool fIsKnown = false;         ///< whether the memory has fWritten
    double fLastTime = 0;          ///< of those
};
