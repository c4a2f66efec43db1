// SPDX-License-Identifier: MIT
#include "memory/pace.h"

#include <algorithm>

namespace zo {

namespace {

using std::chrono::milliseconds;

// What a wake-up and the way between two threads may take.
constexpr milliseconds hurry{1};

// Calls that are further apart may be by hand: two of them make no rhythm.
constexpr milliseconds byHand{250};

// Until who calls no more is forgotten: with a rhythm at least, without one at all.
constexpr milliseconds shortestMemory{1000};
constexpr std::chrono::seconds longestMemory{30};

// Less than promised, for calls that stray or are left out.
constexpr int roundsOfTurn = 18;
constexpr std::chrono::seconds timeOfTurn{8};

} // namespace

void Pace::called(Time now)
{
    if (fHasCalled)
        learn(now - fLastCall);
    calledOnce(now);
}

void Pace::calledOnce(Time now)
{
    fHasCalled = true;
    fLastCall = now;
}

// Two periods that are alike tell of the rhythm, whatever came before them: much may be in the way
// of the first calls. One call that is late takes no rhythm away.
void Pace::learn(Duration period)
{
    const bool isRepeated = std::chrono::abs(period - fLastPeriod) <= period / 4;
    fIsKnown = fIsKnown || period <= byHand || (isRepeated && fLastPeriod > Duration(0));
    fLastPeriod = period;
    if (isRepeated && std::chrono::abs(period - fPeriod.mean()) > period / 4)
        fPeriod = {};
    fPeriod.add(period);
}

bool Pace::isOver(Time now) const
{
    return now > fLastCall + (fIsKnown ? std::max<Duration>(2 * fPeriod.mean(), shortestMemory)
                                       : longestMemory);
}

// A round behind another one arrives when the line is free again: the pause between them is what
// its bytes took. Of one that is alone it is what the way does not explain.
void Pace::answered(Time begin, Time now, int keys, Duration shortest)
{
    const Duration response = now - begin;
    Duration transfer = std::max(response - shortest, Duration(0));
    if (fLastAnswer)
        transfer = std::min<Duration>(transfer, now - *fLastAnswer);
    const bool isMany = keys >= fManyKeys;
    // Straying makes a short round long. What its keys take is known better from long ones.
    if (!isMany && fTransferOfKey)
        transfer = std::min(transfer, keys * *fTransferOfKey);
    Times& times = isMany ? fOfMany : fOfFew;
    times.response.add(response);
    times.transfer.add(transfer);
    // The transfer of fewer keys is too short to be told from the way's own straying.
    if (isMany)
        fTransferOfKey = std::min(fTransferOfKey.value_or(transfer), transfer / keys);
    fShortest = shortest;
    fLastAnswer = now;
}

// Nearly all answers come within three deviations, and nearly all calls within two: a timer that
// strays evenly is never further away.
Pace::Duration Pace::lead() const
{
    const SmoothedTime& response = expected().response;
    const Duration margin = 3 * response.deviation() + 2 * fPeriod.deviation() + hurry;
    return response.mean() + std::min(margin, freshness() / 2);
}

Pace::Time Pace::beginOfRound() const
{
    const Duration ahead = lead();
    const Duration period = std::max<Duration>(fPeriod.mean(), hurry);
    const auto calls = std::max<Duration::rep>((ahead + period - Duration(1)) / period, 1);
    return fLastCall + calls * period - ahead;
}

int Pace::mostUnderWay() const
{
    const Duration transfer = std::max<Duration>(expected().transfer.mean(), hurry);
    return static_cast<int>(
        std::min<Duration::rep>(1 + fShortest / transfer, Duration::rep{fMostUnderWay}));
}

int Pace::turnOf(int keys) const
{
    const auto due = dueInTurn(keys);
    const Duration ofKey = fTransferOfKey.value_or(Duration(0));
    const auto carried = ofKey > Duration(0) ? fPeriod.mean() / 4 / ofKey : due;
    return static_cast<int>(std::clamp<Duration::rep>(carried, std::min(keys, 1), due));
}

/// That many have to be read anew in each round, whatever the link carries.
Pace::Duration::rep Pace::dueInTurn(int keys) const
{
    const auto period = std::max<Duration>(fPeriod.mean(), hurry);
    const auto rounds = std::max<Duration::rep>(timeOfTurn / period, roundsOfTurn);
    return (keys + rounds - 1) / rounds;
}

// Where the link carries less than is due, a turn takes as long as it takes.
int Pace::roundsUntilLate(int keys) const
{
    const int turn = turnOf(keys);
    return turn < dueInTurn(keys) ? (keys + turn - 1) / turn + 1 : roundsOfTurn + 1;
}

Pace::Duration Pace::freshness() const
{
    return milliseconds(100) + fPeriod.mean() / 4;
}

} // namespace zo
