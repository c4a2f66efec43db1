// SPDX-License-Identifier: MIT
#include "simulation/following_rounds.h"

#include "simulation/violation.h"

#include <algorithm>

namespace {

constexpr std::size_t mostRemembered = 40;

} // namespace

void FollowingRounds::began(const zo::Follower::Begun& begun, Time now)
{
    if (begun.isMore) {
        fAnswers = 0; // key by key is not together
        const auto found =
            std::find_if(fSent.begin(), fSent.end(), [](const Sent& one) { return !one.round; });
        if (found != fSent.end())
            found->round = begun.round;
        return;
    }
    --fCredit;
    require(fCredit >= 0, "no more rounds than calls", [] { return "one more begins"; });
    fSent.push_back({begun.round, now});
    if (fSent.size() > mostRemembered)
        fSent.pop_front();
}

void FollowingRounds::ended(const zo::Follower::Begun& begun, Time now)
{
    const auto found = std::find_if(fSent.begin(), fSent.end(),
                                    [&](const Sent& one) { return one.round == begun.round; });
    if (found == fSent.end())
        return;
    if (begun.list->isRefused())
        found->round.reset();
    else
        found->end = now;
}

void FollowingRounds::forget()
{
    fSent.clear();
    fAnswers = 0;
}

FollowingRounds::Sent FollowingRounds::newest() const
{
    Sent newest{nullptr, Time::min(), Time::min()};
    for (const Sent& one : fSent) {
        if (one.end != Time::max() && one.end > newest.end)
            newest = one;
    }
    return newest;
}

// A round may leave out what is known; what a notice tells while it is on its way is read by the
// next one. So a value is as old as the one that was answered before the newest began.
FollowingRounds::Time FollowingRounds::validAfter() const
{
    const Time begin = newest().begin;
    Time after = Time::min();
    for (const Sent& one : fSent) {
        if (one.end <= begin)
            after = std::max(after, one.begin);
    }
    return after;
}
