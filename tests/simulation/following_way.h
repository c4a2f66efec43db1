// SPDX-License-Identifier: MIT
#pragma once

#include "simulation/agenda.h"
#include "simulation/random.h"

#include <algorithm>
#include <cstddef>

/// One direction of a connection: late, but nothing overtakes anything.
class FollowingWay
{
public:
    using Time = Agenda::Time;
    using Duration = Agenda::Duration;

    /// Most are short, even and broad.
    explicit FollowingWay(Random& random)
        : fDelay(random.upTo(std::chrono::milliseconds(random.chance(60) ? 5 : 150))),
          fJitter(random.upTo(std::chrono::milliseconds(random.chance(60) ? 2 : 40))),
          fPerByte(random.chance(60) ? 0 : random.between(8, 8000))
    {
    }

    Duration delay() const { return fDelay; }
    Duration longestDelay() const { return fDelay + fJitter; }

    /// When that arrives which is sent now.
    Time arrival(Time now, std::size_t bytes, Random& random)
    {
        fFreeAt = std::max(fFreeAt, now) + fPerByte * static_cast<Duration::rep>(bytes);
        fLastArrival = std::max(fLastArrival, fFreeAt + fDelay + random.upTo(fJitter));
        return fLastArrival;
    }
    /// Nothing gets through for a while.
    void pause(Time now, Duration length) { fFreeAt = std::max(fFreeAt, now) + length; }
    /// What was on its way is gone.
    void clear(Time now) { fFreeAt = fLastArrival = now; }

private:
    Duration fDelay;
    Duration fJitter;
    Duration fPerByte;
    Time fFreeAt{};
    Time fLastArrival{};
};
