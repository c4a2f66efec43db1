// SPDX-License-Identifier: MIT
#pragma once

#include "simulation/agenda.h"
#include "simulation/random.h"
#include "simulation/trace.h"

/// What all in a schedule of followers share.
struct FollowingWorld
{
    using Time = Agenda::Time;
    using Duration = Agenda::Duration;

    FollowingWorld(std::uint64_t seed, bool isTraced) : random(seed), trace(agenda, isTraced) {}

    Time now() const { return agenda.now(); }

    Random random;
    Agenda agenda;
    const Trace trace;
    bool isCalm = true; ///< nothing has gone wrong yet
};
