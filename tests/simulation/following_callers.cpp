// SPDX-License-Identifier: MIT
#include "simulation/following_callers.h"

#include "simulation/violation.h"

#include <algorithm>
#include <string>

using namespace zo;

namespace {

using std::chrono::microseconds;
using std::chrono::milliseconds;
using std::chrono::seconds;

// A caller has a rhythm, and its list is known, after these.
constexpr int callsOfBeginning = 6;
constexpr seconds beginningOfLink{5};

// Of that many keys a list may have some twice; more of them would only take time.
constexpr int fewKeys = 50;

constexpr milliseconds longestPeriod{10000};

// Nobody asks twice for a list by hand in such a time.
constexpr milliseconds atOnce{250};

// What one thread waits for a list, another one of its lists waits, too.
constexpr milliseconds otherWait{1};

milliseconds somePeriod(FollowingWorld& world)
{
    const int most = world.random.chance(70) ? 300 : world.random.chance(70) ? 1000 : 10000;
    return std::min(world.slowness * milliseconds(world.random.between(60, most)), longestPeriod);
}

} // namespace

ListCaller::ListCaller(const World& world, int number, int who)
    : fWorld(world),
      fNumber(number),
      fWho(who),
      fThread(world.threads[who]),
      fPeriod(somePeriod(world.common)),
      fStray(world.common.random.chance(80) ? fPeriod / 20 : Duration(0))
{
    chooseKeys();
}

void ListCaller::start()
{
    fWorld.common.agenda.in(fWorld.common.random.upTo(fPeriod), [this] { call(); });
}

void ListCaller::chooseKeys()
{
    Random& random = fWorld.common.random;
    const int count = fWorld.robot.count();
    const int percent = random.between(5, 120);
    fKeys.clear();
    for (int key = 0; key < count; ++key) {
        if (random.chance(percent))
            fKeys.push_back(key);
        if (count < fewKeys && random.chance(3))
            fKeys.push_back(static_cast<int>(random.below(count)));
    }
    if (random.chance(5))
        fKeys.push_back(-1);
    // Those on one thread ask for lists of their own.
    if (fNumber != fWho)
        fKeys.insert(fKeys.end(), fNumber, fKeys.empty() ? 0 : fKeys.front());
    makeRequest();
    fCalls = 0;
}

void ListCaller::makeRequest()
{
    const std::string noKey(70000, 'x');
    fRequest = ZoValue();
    fRequest.arraySetSize(static_cast<int>(fKeys.size()));
    for (int i = 0; i < static_cast<int>(fKeys.size()); ++i) {
        ZoValue& element = fRequest[i];
        element.arraySetSize(2);
        element[0] = fKeys[i] < 0 ? noKey : fWorld.robot.keys()[fKeys[i]].name;
        element[1] = 0;
    }
}

void ListCaller::call()
{
    if (!fWorld.link.isUp())
        return callAgain();
    if (fThread.isWaiting())
        return fWorld.common.agenda.in(otherWait, [this] { call(); });
    const auto asked = fWorld.link.ask({&fThread, {}}, fRequest);
    fCalls = asked.list == fList ? fCalls + 1 : 1;
    fList = asked.list;
    const Duration pause = fWorld.common.now() - fEnded;
    require(fList->isFollowed() || fCalls == 1 || pause > atOnce,
            "who comes back at once is followed", [&] { return lengthText(pause); });
    if (asked.values)
        return end(asked.values);
    fThread.beginWait(fWorld.common.now());
    await(fWorld.common.now() + lengthOf(asked.patience),
          asked.patience == Follower::Patience::Brief);
}

ListCaller::Duration ListCaller::lengthOf(Follower::Patience patience)
{
    switch (patience) {
    case Follower::Patience::Brief:
        return fThread.left(fWorld.common.now(), Follower::fMoment);
    case Follower::Patience::OneWay:
        return fWorld.link.roundTrip() + milliseconds(50);
    case Follower::Patience::Full:
        return seconds(2);
    default:
        return Duration(0);
    }
}

void ListCaller::await(Time until, bool isBrief)
{
    const Time now = fWorld.common.now();
    const bool isUp = fWorld.link.isUp();
    auto values = isUp ? fWorld.link.news(fList) : Values();
    if (isUp && !values && now < until)
        return fWorld.common.agenda.at(
            std::min(until, now + std::max<Duration>((until - now) / 8, microseconds(200))),
            [this, until, isBrief] { await(until, isBrief); });
    fThread.endWait(now, isBrief);
    fList->waited(now);
    if (isUp && !values)
        values = fWorld.link.answer(fList);
    if (isUp)
        end(values);
    else
        callAgain();
}

void ListCaller::end(const Values& values)
{
    fEnded = fWorld.common.now();
    fWorld.common.trace.line([&] {
        return "caller " + std::to_string(fNumber) + (values ? " is answered" : " finds nothing") +
               " by " + fWorld.common.nameOf(fList);
    });
    if (values)
        fWorld.rules.check({fWho, fList, fKeys, *values});
    if (isSteady()) {
        Tally::Steady& steady = fWorld.tally.steadyOf(
            fWorld.common.network, std::chrono::duration_cast<milliseconds>(fPeriod));
        ++steady.calls;
        steady.answered += values ? 1 : 0;
    }
    callAgain();
}

bool ListCaller::isSteady() const
{
    const Duration upFor = fWorld.common.now() - fWorld.link.upSince();
    return fWorld.common.isCalm && fCalls > callsOfBeginning && upFor > beginningOfLink;
}

void ListCaller::callAgain()
{
    const Duration wait = pause();
    if (!fWorld.common.isCalm && fWorld.common.random.chance(2))
        chooseKeys();
    fWorld.common.agenda.in(wait, [this] { call(); });
}

ListCaller::Duration ListCaller::pause()
{
    Random& random = fWorld.common.random;
    if (!fWorld.common.isCalm && random.chance(3))
        return random.upTo(3 * fPeriod);
    return fPeriod - fStray + random.upTo(2 * fStray);
}
