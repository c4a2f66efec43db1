// SPDX-License-Identifier: MIT
#include "memory/follower.h"

#include <algorithm>
#include <utility>

namespace zo {

Follower::Asked Follower::ask(Time now, const FollowingCaller& caller, const ZoValue& request)
{
    forgetLeft(now);
    forgetExcess();
    List list = find(caller, request);
    list = list ? used(list) : add(caller, request);
    list->called(now, hasRoom());
    const bool isWorthWaiting =
        list->isGiven() && (!list->isFollowed() || list->isNextDueBy(now + fMoment, now));
    auto values = answer(now, list);
    if (values && !isWorthWaiting)
        return {std::move(values), list, Patience::None};
    if (!values)
        list->hurry();
    if (!list->isFollowed())
        return {{}, list, list->isShared() ? Patience::OneWay : Patience::Full};
    const bool isComing = !list->isIdle() || list->beginsAt() <= now;
    return {{}, list, isComing ? Patience::Brief : Patience::None};
}

void Follower::askedInVain(Time now, const FollowingCaller& caller, const ZoValue& request)
{
    if (const List list = find(caller, request))
        list->calledInVain(now);
}

std::optional<ZoValue::Elements> Follower::news(Time now, const List& list)
{
    return list->isGiven() ? std::nullopt : answer(now, list);
}

// Who asks for several lists must not see a key go back in time from one to the other.
std::optional<ZoValue::Elements> Follower::answer(Time now, const List& list)
{
    const auto found = std::find_if(fLists.begin(), fLists.end(),
                                    [&](const Followed& one) { return one.list == list; });
    if (found == fLists.end())
        return list->answer(now, fLastWrite);
    Version& seen = *found->seen;
    if (seen > list->answeredAt() && list->isOutdated())
        return {};
    auto values = list->answer(now, fLastWrite);
    if (values)
        seen = std::max(seen, list->answeredAt());
    return values;
}

Follower::List Follower::find(const FollowingCaller& caller, const ZoValue& request) const
{
    const auto found = std::find_if(fLists.rbegin(), fLists.rend(), [&](const Followed& one) {
        return one.caller == caller && one.list->isFor(request);
    });
    return found == fLists.rend() ? nullptr : found->list;
}

Follower::List Follower::used(const List& list)
{
    const auto found = std::find_if(fLists.begin(), fLists.end(),
                                    [&](const Followed& one) { return one.list == list; });
    std::rotate(found, found + 1, fLists.end());
    return list;
}

std::shared_ptr<Version> Follower::seenBy(const FollowingCaller& caller) const
{
    const auto found = std::find_if(fLists.begin(), fLists.end(),
                                    [&](const Followed& one) { return one.caller == caller; });
    return found == fLists.end() ? std::make_shared<Version>(0) : found->seen;
}

Follower::List Follower::add(const FollowingCaller& caller, const ZoValue& request)
{
    auto list = std::make_shared<FollowedList>(request, fValues);
    const auto seen = seenBy(caller);
    const auto isOnce = [](const Followed& one) { return !one.list->isFollowed(); };
    const auto leastUsed = std::find_if(fLists.begin(), fLists.end(), isOnce);
    if (fLists.size() >= std::size_t{fMostLists} && leastUsed != fLists.end())
        forget(leastUsed);
    fLists.push_back({caller, list, seen});
    return list;
}

void Follower::forgetLeft(Time now)
{
    const auto left =
        std::stable_partition(fLists.begin(), fLists.end(),
                              [now](const Followed& one) { return !one.list->isLeft(now); });
    std::for_each(left, fLists.end(), [this](const Followed& one) { leave(one.list); });
    fLists.erase(left, fLists.end());
}

// Whether one more may be followed.
bool Follower::hasRoom() const
{
    const auto isFollowed = [](const Followed& one) { return one.list->isFollowed(); };
    return std::count_if(fLists.begin(), fLists.end(), isFollowed) < fMostLists &&
           memory() <= FollowedValues::fMostMemory;
}

// Those that are followed go last: or else two that are too much together would drive one another
// out for ever. One that is not stays until its caller has his answer.
void Follower::forgetExcess()
{
    const auto isOnce = [](const Followed& one) { return !one.list->isFollowed(); };
    const auto isDone = [](const Followed& one) {
        return !one.list->isFollowed() && one.list->isGiven();
    };
    // The values of a list stay until its rounds are over.
    while (fLeaving.empty() && fLists.size() > 1 && memory() > FollowedValues::fMostMemory) {
        const auto done = std::find_if(fLists.begin(), fLists.end(), isDone);
        if (done != fLists.end())
            forget(done);
        else if (std::none_of(fLists.begin(), fLists.end(), isOnce))
            forget(fLists.begin());
        else
            return;
    }
}

void Follower::forget(std::vector<Followed>::iterator one)
{
    leave(one->list);
    fLists.erase(one);
}

// What its rounds ask for must stay until they are over.
void Follower::leave(const List& list)
{
    if (list->isIdle())
        list->leave();
    else
        fLeaving.push_back(list);
}

void Follower::cameUp(bool canTell)
{
    fIsUp = true;
    fCanTell = canTell;
}

void Follower::wentDown()
{
    fIsUp = false;
    fValues.forget();
    for (const Followed& one : fLists)
        one.list->forget();
    for (const List& list : fLeaving) {
        list->forget();
        list->leave();
    }
    fLeaving.clear();
}

std::uint64_t Follower::writes(const std::vector<std::string>& keys)
{
    fValues.beginWrite(keys);
    return ++fWrites;
}

void Follower::wrote(const std::vector<std::string>& keys, const OwnWrite& write)
{
    fValues.endWrite(keys, fPlaces.next());
    if (write.order == 0)
        return;
    fLastWrite.number = std::max(fLastWrite.number, write.number);
    fLastWrite.order = std::max(fLastWrite.order, write.order);
}

Follower::Time Follower::wakeAt() const
{
    Time at = Time::max();
    for (const Followed& one : fLists)
        at = std::min(at, one.list->beginsAt());
    return fIsUp && hasWay() ? at : Time::max();
}

// Whether one more round may be under way.
bool Follower::hasWay() const
{
    int rounds = 0;
    for (const Followed& one : fLists)
        rounds += one.list->underWay();
    for (const List& list : fLeaving)
        rounds += list->underWay();
    return rounds < Pace::fMostUnderWay;
}

std::optional<Follower::Begun> Follower::begin(Time now)
{
    if (!fIsUp)
        return {};
    forgetLeft(now);
    const List list = hasWay() ? nextToBegin(now) : nullptr;
    if (!list)
        return {};
    const bool isMore = list->isRefused();
    return Begun{list, list->begin(now, fCanTell, fPlaces, fWrites, ++fRounds), isMore};
}

// They share the way: the turn is that of the one whose last round began before those of the
// others.
Follower::List Follower::nextToBegin(Time now) const
{
    List next;
    for (const Followed& one : fLists) {
        const bool isDue = one.list->beginsAt() <= now;
        if (isDue && (!next || one.list->lastRound() < next->lastRound()))
            next = one.list;
    }
    return next;
}

void Follower::ended(const Begun& begun, bool isAnswered, std::uint64_t order, Time now,
                     Pace::Duration trip)
{
    begun.list->ended(begun.round, isAnswered, order, now, trip);
    const auto leaving = std::find(fLeaving.begin(), fLeaving.end(), begun.list);
    if (leaving != fLeaving.end() && begun.list->isIdle()) {
        begun.list->leave();
        fLeaving.erase(leaving);
    }
    forgetExcess();
}

ZoLinkStatus::Following Follower::following(Time now) const
{
    using Mode = ZoLinkStatus::Following;
    Mode mode = Mode::None;
    for (const Followed& one : fLists) {
        if (!fIsUp || !one.list->isFollowed() || one.list->isLeft(now))
            continue;
        if (!fCanTell || !one.list->isTold(now))
            return Mode::Everything;
        mode = Mode::Changes;
    }
    return mode;
}

} // namespace zo
