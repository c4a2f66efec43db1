// SPDX-License-Identifier: MIT
#include "memory/following.h"

#include "link/link.h"
#include "link/redirection.h"
#include "memory/wait_budget.h"

#include <zo/error.h>

#include <algorithm>
#include <exception>
#include <new>
#include <utility>

namespace zo {

namespace {

using std::chrono::milliseconds;

// What the robot may take, beside the way, for the few keys that the link has not.
constexpr milliseconds grace{50};

/// A round on its way.
class RoundExchange : public Exchange
{
public:
    RoundExchange(Following& following, Follower::Begun begun)
        : Exchange("MGET", begun.round->plan()->bytes(), begun.round->plan()->parts(), begun.round,
                   Deadline::none(), begun.list.get()),
          fFollowing(following),
          fBegun(std::move(begun))
    {
    }

    void end(const SharedText& problem, const SentSpan& sent) noexcept override
    {
        fFollowing.ended(fBegun, !problem, sent.first);
    }

private:
    Following& fFollowing;
    const Follower::Begun fBegun;
};

/// One question of the setting up of notices.
class SetUpExchange : public Exchange
{
public:
    SetUpExchange(Following& following, const NoticesSetUp::Question& question)
        : Exchange(question.name, question.bytes, question.replies, question.sink,
                   Deadline::none()),
          fFollowing(following)
    {
    }

    void end(const SharedText& problem, const SentSpan&) noexcept override
    {
        if (!problem)
            fFollowing.setUpAnswered();
    }
    bool isOfList() const override { return false; }

private:
    Following& fFollowing;
};

} // namespace

Following::Following(bool wantsNotices, std::string prefix)
    : fWantsNotices(wantsNotices),
      fNoticeSink([this](const std::string* key) { noticed(key); }),
      fFollower(std::move(prefix))
{
}

ZoListAnswer Following::values(Link& link, const void* proxy, const ZoValue& request)
{
    const Time now = SteadyClock::now();
    const FollowingCaller caller{proxy, std::this_thread::get_id()};
    Lock lock(fMutex);
    try {
        link.throwIfDown();
    } catch (const ZoError&) {
        fFollower.askedInVain(now, caller, request);
        throw;
    }
    fTrip = link.pulse().shortestRoundTrip();
    try {
        auto asked = fFollower.ask(now, caller, request);
        link.nudge();
        if (!asked.values) {
            asked.values = await(lock, link, asked, now);
            asked.list->waited(SteadyClock::now());
        }
        if (!asked.values)
            asked.values = fFollower.answer(SteadyClock::now(), asked.list);
        if (asked.values)
            return {ZoValue::fromElements(std::move(*asked.values)), asked.list->arrived(), {}};
    } catch (const ServerRefusal& refusal) {
        if (isMoving(refusal.text))
            throw;
        throw link.refusal("MGET", refusal.text);
    }
    lock.unlock();
    link.throwIfDown();
    throw ZoUnderWay(link.settings()->peer.says("the answer to getListData is under way"));
}

Following::Values Following::await(Lock& lock, Link& link, const Follower::Asked& asked, Time now)
{
    switch (asked.patience) {
    case Follower::Patience::None:
        return {};
    case Follower::Patience::Brief: {
        WaitBudget& budget = WaitBudget::ofThread();
        auto values = awaitUntil(lock, asked.list, now + budget.left(now, Follower::fMoment));
        budget.spend(now, SteadyClock::now());
        return values;
    }
    case Follower::Patience::OneWay:
        return awaitUntil(lock, asked.list, now + link.pulse().roundTrip() + grace);
    case Follower::Patience::Full:
        return awaitBytes(lock, link, asked.list, now);
    }
    return {};
}

Following::Values Following::awaitUntil(Lock& lock, const Follower::List& list, Time until)
{
    Values values;
    fChanged.wait_until(lock, until, [&] {
        values = fFollower.news(SteadyClock::now(), list);
        return values || !fIsUp;
    });
    return values;
}

// As for any call: as long as bytes keep coming, and not for ever.
Following::Values Following::awaitBytes(Lock& lock, Link& link, const Follower::List& list,
                                        Time now)
{
    const Time end = link.deadlineFor(list->count()).at;
    const milliseconds silence = link.settings()->options.exchangeTimeout;
    for (Time until = now; until < end && fIsUp;) {
        const Time heard = std::max(now, link.pulse().lastHeard());
        const Time next = heard + silence + link.pulse().roundTrip();
        if (next <= until)
            break;
        until = std::min(next, end);
        if (auto values = awaitUntil(lock, list, until))
            return values;
    }
    return {};
}

std::uint64_t Following::writes(const std::vector<std::string>& keys)
{
    const Lock lock(fMutex);
    return fFollower.writes(keys);
}

void Following::wrote(const std::vector<std::string>& keys, const OwnWrite& write)
{
    const Lock lock(fMutex);
    fFollower.wrote(keys, write);
}

ZoLinkStatus::Following Following::following(Time now) const
{
    const Lock lock(fMutex);
    return fFollower.following(now);
}

void Following::told(const LinkCondition& condition)
{
    const Lock lock(fMutex);
    if (std::exchange(fIsUp, condition.isUp))
        fFollower.wentDown();
    fSetUp.end();
    if (fIsUp) {
        fFollower.cameUp(false);
        if (fWantsNotices)
            fSetUp.begin();
    }
    fChanged.notify_all();
}

Following::Time Following::wakeAt()
{
    const Lock lock(fMutex);
    return fHasFailed || fSetUp.isDue() ? Time::min() : fFollower.wakeAt();
}

std::shared_ptr<Exchange> Following::due(Time now)
{
    const Lock lock(fMutex);
    if (std::exchange(fHasFailed, false))
        throw std::bad_alloc();
    if (const auto question = fSetUp.next())
        return std::make_shared<SetUpExchange>(*this, *question);
    while (auto begun = fFollower.begin(now)) {
        if (!begun->round->plan()->commands().empty())
            return std::make_shared<RoundExchange>(*this, std::move(*begun));
        fFollower.answeredAtOnce(*begun, now);
        fChanged.notify_all();
    }
    return nullptr;
}

void Following::ended(const Follower::Begun& begun, bool isAnswered, std::uint64_t order) noexcept
{
    const Lock lock(fMutex);
    try {
        fFollower.ended(begun, isAnswered, order, SteadyClock::now(), fTrip);
    } catch (const std::exception&) {
        fHasFailed = true;
    }
    fChanged.notify_all();
}

void Following::setUpAnswered() noexcept
{
    const Lock lock(fMutex);
    fSetUp.answered();
    if (fSetUp.isDone())
        fFollower.cameUp(true);
}

void Following::noticed(const std::string* key)
{
    const Lock lock(fMutex);
    if (key)
        fFollower.noticed(*key);
    else
        fFollower.noticedAll();
}

} // namespace zo
