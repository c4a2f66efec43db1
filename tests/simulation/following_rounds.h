// SPDX-License-Identifier: MIT
#pragma once

#include "simulation/agenda.h"

#include <memory/follower.h>

#include <deque>
#include <memory>

/// What happened to the rounds of one list, seen from outside. Counts its calls and answers, too.
class FollowingRounds
{
public:
    using Time = Agenda::Time;

    void called() { ++fCredit; }
    /// Throws Violation when there are more rounds than calls.
    void began(const zo::Follower::Begun& begun, Time now);
    void ended(const zo::Follower::Begun& begun, Time now);
    void answered() { ++fAnswers; }
    /// The connection is gone.
    void forget();

    /// When the newest answer came; Time::min(): there is none.
    Time arrivedAt() const { return newest().end; }
    /// No value of the newest answer may be one that was written over before.
    Time validAfter() const;
    /// Answers in a row that no round asked for key by key.
    int answers() const { return fAnswers; }

private:
    struct Sent
    {
        std::shared_ptr<zo::Round> round; ///< null: more of it is to come
        Time begin;
        Time end = Time::max();
    };

    Sent newest() const;

    std::deque<Sent> fSent;
    int fCredit = 0;
    int fAnswers = 0;
};
