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
        fWhole = 0; // key by key is not together
        const auto found =
            std::find_if(fSent.begin(), fSent.end(), [](const Sent& one) { return !one.round; });
        if (found != fSent.end())
            found->round = begun.round;
        return;
    }
    --fCredit;
    require(fCredit >= 0, "no more rounds than calls", [] { return "one more begins"; });
    fSent.push_back({begun.round, now, ++fNewest});
    if (fSent.size() > mostRemembered)
        fSent.pop_front();
}

void FollowingRounds::ended(const zo::Follower::Begun& begun, Time now)
{
    const auto found = std::find_if(fSent.begin(), fSent.end(),
                                    [&](const Sent& one) { return one.round == begun.round; });
    if (found == fSent.end())
        return;
    if (begun.list->isRefused()) {
        found->round.reset();
        found->isMore = true;
        return;
    }
    found->isOver = true;
    // Nothing is shown as long as more of something is to come.
    if (std::any_of(fSent.begin(), fSent.end(),
                    [](const Sent& one) { return one.isMore && !one.isOver; }))
        return;
    for (Sent& one : fSent) {
        if (one.isOver && one.ended == 0)
            end(one, now);
    }
}

void FollowingRounds::end(Sent& sent, Time now)
{
    ++fWhole;
    sent.end = now;
    sent.ended = ++fNewest;
}

void FollowingRounds::forget()
{
    fSent.clear();
    fWhole = 0;
}

FollowingRounds::Sent FollowingRounds::newest() const
{
    Sent newest{nullptr, Time::min(), 0};
    newest.end = Time::min();
    for (const Sent& one : fSent) {
        if (one.ended > newest.ended)
            newest = one;
    }
    return newest;
}

// A round may leave out what is known; what a notice tells while it is on its way is read by the
// next one. So a value is as old as the one that was answered before the newest began.
FollowingRounds::Time FollowingRounds::validAfter() const
{
    const int begun = newest().begun;
    Time after = Time::min();
    for (const Sent& one : fSent) {
        if (one.ended > 0 && one.ended < begun)
            after = std::max(after, one.begin);
    }
    return after;
}
