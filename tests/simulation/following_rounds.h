// SPDX-License-Identifier: MIT
#pragma once

#include "simulation/agenda.h"

#include <memory/follower.h>

#include <cstdint>
#include <deque>
#include <memory>

/// What happened to the rounds of one list, seen from outside. Counts its calls, too. Throws
/// Violation when a round begins that must not.
class FollowingRounds
{
public:
    using Time = Agenda::Time;

    void called(Time now);
    void began(const zo::Follower::Begun& begun, Time now);
    /// `order`: among all that was sent.
    void ended(const zo::Follower::Begun& begun, std::uint64_t order, Time now);
    /// The connection is gone.
    void forget();
    /// Rounds that were begun and have not ended.
    int underWay() const { return fUnderWay; }

    /// Whether there is an answer. Then, of the newest one:
    bool isAnswered() const { return fNewest != nullptr; }
    Time arrivedAt() const { return fNewest->end; }
    Time begunAt() const { return fNewest->begin; }
    std::uint64_t order() const { return fNewest->order; }
    /// None of its values may be one that was written over before.
    Time validAfter() const { return fValidAfter; }
    /// How many rounds from `time` on led to it; of very many, not all.
    int roundsSince(Time time) const;
    /// So many of them, each begun when the one before was answered, since the last that read key
    /// by key what is read together else.
    int tripsSince(Time time) const;

private:
    struct Sent
    {
        std::shared_ptr<zo::Round> round;
        Time begin;
        int begun;           ///< which of all beginnings and ends
        bool isMore = false; ///< it was refused, and goes on key by key
        bool isOver = false;
        std::uint64_t order = 0;
        Time end = Time::max(); ///< when it was shown
        int ended = 0;          ///< 0: not yet
        bool isTrip = false;    ///< begun when the last such one had ended
    };

    void checkCalls(const zo::FollowedList& list, Time now) const;
    void showAll(Time now);
    void show(Sent& sent, Time now);
    Time validAfterBegin(const Sent& sent) const;

    std::deque<Sent> fSent;
    const Sent* fNewest = nullptr; ///< that is shown; elements of a deque stay where they are
    Time fValidAfter = Time::min();
    int fTurns = 0; ///< beginnings and ends: many are at the same time
    int fCredit = 0;
    int fUnderWay = 0;
    int fMore = 0; ///< of these, that ask again key by key
    /// What a round asks for is known when it has begun: until then it is taken to be like the
    /// last.
    int fMostUnderWay = zo::Pace::fMostUnderWay;
    int fTripEnded = 0;
    int fApartEnded = 0; ///< when the last one ended that read key by key
    Time fLastCall{};
};
