// SPDX-License-Identifier: MIT
#include "simulation/following_callers.h"

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

milliseconds somePeriod(Random& random)
{
    return milliseconds(random.chance(70) ? random.between(60, 300) : random.between(300, 10000));
}

} // namespace

ListCaller::ListCaller(const World& world, int number)
    : fWorld(world),
      fNumber(number),
      fPeriod(somePeriod(world.common.random)),
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
    const auto asked = fWorld.link.ask({this, {}}, fRequest);
    fCalls = asked.list == fList ? fCalls + 1 : 1;
    fList = asked.list;
    if (asked.values)
        end(asked.values);
    else
        await(fWorld.common.now() + lengthOf(asked.patience));
}

ListCaller::Duration ListCaller::lengthOf(Follower::Patience patience) const
{
    switch (patience) {
    case Follower::Patience::Brief:
        return milliseconds(5);
    case Follower::Patience::OneWay:
        return fWorld.link.roundTrip() + milliseconds(50);
    case Follower::Patience::Full:
        return seconds(2);
    default:
        return Duration(0);
    }
}

void ListCaller::await(Time until)
{
    if (!fWorld.link.isUp())
        return callAgain();
    const Duration left = until - fWorld.common.now();
    const auto values = fWorld.link.answer(fList);
    if (values || left <= Duration(0))
        return end(values);
    fWorld.common.agenda.in(std::max<Duration>(left / 8, microseconds(200)),
                            [this, until] { await(until); });
}

void ListCaller::end(const Values& values)
{
    fWorld.common.trace.line([&] {
        return "caller " + std::to_string(fNumber) + (values ? " is answered" : " finds nothing") +
               " by " + fWorld.common.nameOf(fList);
    });
    if (values)
        fWorld.rules.check({fNumber, fList, fKeys, *values, fPeriod});
    if (isSteady()) {
        ++fWorld.tally.steadyCalls;
        fWorld.tally.steadyAnswered += values ? 1 : 0;
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
