// SPDX-License-Identifier: MIT
#pragma once

#include "simulation/agenda.h"
#include "simulation/network_kind.h"
#include "simulation/random.h"
#include "simulation/robot_prefix.h"
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

    FollowingWorld(std::uint64_t seed, bool isTraced)
        : random(seed),
          network(random.chance(50)   ? NetworkKind::Near
                  : random.chance(50) ? NetworkKind::Far
                                      : NetworkKind::Poor),
          slowness(random.chance(10) ? 10 : 1),
          isLively(random.chance(60)),
          trace(agenda, isTraced),
          prefix(prefixOf(seed))
    {
    }

    Time now() const { return agenda.now(); }
    /// For the trace.
    std::string nameOf(const zo::Follower::List& list)
    {
        return "list " + std::to_string(lists.try_emplace(list, lists.size() + 1).first->second);
    }

    Random random;
    const NetworkKind network;
    const int slowness;  ///< of callers and robot: so many times the usual rhythms
    const bool isLively; ///< most keys change all the time
    Agenda agenda;
    const Trace trace;
    bool isCalm = true; ///< nothing has gone wrong yet
    std::map<zo::Follower::List, std::size_t> lists;
    const std::string prefix; ///< of the robot's keys on its server
};
