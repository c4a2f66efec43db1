// SPDX-License-Identifier: MIT
#pragma once

#include "link/deadline.h"
#include "memory/smoothed_time.h"

#include <optional>

namespace zo {

/// The rhythm of a list that is asked for again and again, and of its answers: from it follows
/// when a round has to begin to be answered just before a call. Has no clock of its own.
///
/// Each call lets one round begin. A round that takes longer than a period is meant for a call
/// after the next one, so that several are under way; but no more than the way is long: when they
/// take their time because much is to be carried, more of them would only wait for one another.
class Pace
{
public:
    using Time = SteadyClock::time_point;
    using Duration = SmoothedTime::Duration;

    static constexpr int fMostUnderWay = 8; ///< of a link
    /// A round about so many keys is a long one: its times say nothing about short ones.
    static constexpr int fManyKeys = 1000;

    void called(Time now);
    /// The same, but for a rhythm it does not count.
    void calledOnce(Time now);
    /// A round about `keys` keys begins; what is expected of the next one is that it is alike.
    void planned(int keys) { fIsMany = keys >= fManyKeys; }
    /// A round about `keys` keys that began at `begin` is answered. The shortest round trip of the
    /// link is about `shortest`.
    void answered(Time begin, Time now, int keys, Duration shortest);

    /// Whether there is a rhythm: from the second call on, or the third when it is so slow that
    /// people could call by hand.
    bool isKnown() const { return fIsKnown; }
    Duration period() const { return fPeriod.mean(); }
    Time lastCall() const { return fLastCall; }
    /// Whether the caller has let two periods pass, and some time: it may be held up itself.
    bool isOver(Time now) const;

    /// When the round that the last call allows has to begin: for the first call that it can be
    /// answered before. Only when the rhythm is known.
    Time beginOfRound() const;
    /// How many rounds may be under way.
    int mostUnderWay() const;
    /// How many keys may be read anew in each round beside what was written: all of `keys` within
    /// 20 rounds or 10 s, whichever is more, and a quarter of what the link carries.
    int turnOf(int keys) const;
    /// What was asked for so long ago, and so many rounds, is late: it is read at once, turn or
    /// not.
    static constexpr std::chrono::seconds fTimeUntilLate{9};
    int roundsUntilLate(int keys) const;
    /// How long a round takes, about.
    Duration response() const { return expected().response.mean(); }
    /// How old an answer may be that is returned.
    Duration freshness() const;

private:
    /// What rounds take.
    struct Times
    {
        SmoothedTime response;
        SmoothedTime transfer; ///< what of the response is no way, but waiting for bytes
    };

    void learn(Duration period);
    Duration::rep dueInTurn(int keys) const;
    Duration lead() const;
    const Times& expected() const { return fIsMany ? fOfMany : fOfFew; }

    SmoothedTime fPeriod;
    Times fOfFew;
    Times fOfMany;
    bool fIsMany = false;                   ///< the round that began last is about many keys
    std::optional<Duration> fTransferOfKey; ///< the shortest: pauses and strays only add to it
    Duration fShortest{0};
    Time fLastCall;
    std::optional<Time> fLastAnswer;
    Duration fLastPeriod{0}; ///< 0: there was one call at most
    bool fHasCalled = false;
    bool fIsKnown = false;
};

} // namespace zo
