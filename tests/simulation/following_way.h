// SPDX-License-Identifier: MIT
#pragma once

#include "simulation/agenda.h"
#include "simulation/network_kind.h"
#include "simulation/random.h"

#include <algorithm>
#include <cstddef>

/// One direction of a connection: late, but nothing overtakes anything.
class FollowingWay
{
public:
    using Time = Agenda::Time;
    using Duration = Agenda::Duration;

    FollowingWay(NetworkKind kind, Random& random)
    {
        using std::chrono::milliseconds;
        switch (kind) {
        case NetworkKind::Near:
            fDelay = random.upTo(milliseconds(random.chance(50) ? 1 : 10));
            fJitter = random.upTo(milliseconds(random.chance(50) ? 1 : 5));
            fPerByte = Duration(random.chance(50) ? 8 : random.between(8, 400));
            break;
        case NetworkKind::Far:
            fDelay = random.upTo(milliseconds(150));
            fJitter = random.upTo(milliseconds(40));
            fPerByte = Duration(random.between(8, 8000));
            break;
        case NetworkKind::Poor: // a round trip of 80 ms that strays by 40, and 2 Mbit/s
            fDelay = milliseconds(20);
            fJitter = milliseconds(40);
            fPerByte = Duration(4000);
            break;
        }
    }

    Duration delay() const { return fDelay; }

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
    Duration fDelay{};
    Duration fJitter{};
    Duration fPerByte{};
    Time fFreeAt{};
    Time fLastArrival{};
};
