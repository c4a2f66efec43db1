// SPDX-License-Identifier: MIT
#pragma once

#include "network/load.h"

/// Bytes of the protocol, those of TCP not counted.
struct FetchBytes
{
    double up = 0;
    double down = 0;

    double both() const { return up + down; }
};

/// Of a fetch that reads all keys.
FetchBytes plainBytes(const Load& load);
/// The least that a fetch takes when so many ticks lie between two: a notice of each key that was
/// written, the question for it and the value; or all keys, where that is less.
FetchBytes leastBytes(const Load& load, int ticks);
