// SPDX-License-Identifier: MIT
#pragma once

#include "simulation/agenda.h"

#include <memory/follower.h>

#include <deque>
#include <memory>

/// What happened to the rounds of one list, seen from outside. Counts its calls, too.
class FollowingRounds
{
public:
    using Time = Agenda::Time;

    void called() { ++fCredit; }
    /// Throws Violation when there are more rounds than calls.
    void began(const zo::Follower::Begun& begun, Time now);
    void ended(const zo::Follower::Begun& begun, Time now);
    /// The connection is gone.
    void forget();

    /// When the newest answer came; Time::min(): there is none.
    Time arrivedAt() const { return newest().end; }
    /// No value of the newest answer may be one that was written over before.
    Time validAfter() const;
    /// Rounds in a row that were answered, none of them key by key.
    int whole() const { return fWhole; }

private:
    struct Sent
    {
        std::shared_ptr<zo::Round> round; ///< null: more of it is to come
        Time begin;
        int begun;           ///< which of all beginnings and ends
        bool isMore = false; ///< it was refused, and goes on key by key
        bool isOver = false;
        Time end = Time::max(); ///< when it was shown
        int ended = 0;          ///< 0: not yet
    };

    void end(Sent& sent, Time now);
    Sent newest() const;

    std::deque<Sent> fSent;
    int fNewest = 0; ///< beginning or end: many are at the same time
    int fCredit = 0;
    int fWhole = 0;
};
