// SPDX-License-Identifier: MIT
#pragma once

#include "simulation/agenda.h"
#include "simulation/random.h"
#include "simulation/trace.h"

#include <memory/follower.h>

#include <cstddef>
#include <map>
#include <string>

/// What all in a schedule of followers share.
struct FollowingWorld
{
    using Time = Agenda::Time;
    using Duration = Agenda::Duration;

    FollowingWorld(std::uint64_t seed, bool isTraced) : random(seed), trace(agenda, isTraced) {}

    Time now() const { return agenda.now(); }
    /// For the trace.
    std::string nameOf(const zo::Follower::List& list)
    {
        return "list " + std::to_string(lists.try_emplace(list, lists.size() + 1).first->second);
    }

    Random random;
    Agenda agenda;
    const Trace trace;
    bool isCalm = true; ///< nothing has gone wrong yet
    std::map<zo::Follower::List, std::size_t> lists;
};
