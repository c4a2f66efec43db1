// SPDX-License-Identifier: MIT
#include "simulation/schedule.h"

#include "simulation/robot_prefix.h"
#include "simulation/strikes.h"
#include "simulation/violation.h"
#include "simulation/warm_up.h"

#include <algorithm>

using namespace zo;

namespace {

using std::chrono::hours;
using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr int callsOfHealthyLink = 8;

std::uint64_t mixed(std::uint64_t seed, std::uint64_t number)
{
    return Random(Random(seed).next() ^ number).next();
}

class Schedule
{
public:
    Schedule(std::uint64_t seed, Tally& tally, bool isTraced);

    void run();
    int events() const { return fLink.events(); }

private:
    void step();
    void suffer();
    void recover();
    void callUntilAnswered(int before);
    void serve();
    void end();
    void callAgain();

    Random fRandom;
    Agenda fAgenda;
    Trace fTrace;
    Tally& fTally;
    SettingsMaker fSettings;
    SimulatedRobot fRobot;
    Callers fCallers;
    LinkUnderTest::World fWorld;
    LinkUnderTest fLink;
    SimulatedNetwork fNetwork;
    Strikes fStrikes;
    const Agenda::Duration fPeriod; ///< of the calls
    bool fMayCall = true;
};

Schedule::Schedule(std::uint64_t seed, Tally& tally, bool isTraced)
    : fRandom(seed),
      fTrace(fAgenda, isTraced),
      fTally(tally),
      fSettings(fRandom, prefixOf(seed)),
      fRobot(fAgenda, fRandom, fSettings.rules(), fRandom.between(1, 12)),
      fCallers(fAgenda, fRandom, fRobot.memory),
      fWorld{fAgenda, fRandom, fCallers, fTally, fTrace, nullptr},
      fLink(fWorld, fSettings.right(), static_cast<std::uint32_t>(fRandom.next())),
      fNetwork(fAgenda, fRandom, fRobot, fLink, makeCondition(fRandom)),
      fStrikes({fAgenda, fRandom, fTally, fTrace, fRobot, fNetwork, fLink, fSettings},
               fRandom.between(4, 9)),
      fPeriod(milliseconds(fRandom.chance(50) ? fRandom.between(5, 50) : fRandom.between(50, 2000)))
{
    fWorld.network = &fNetwork;
    for (int key = 0; key < fRobot.memory.keys(); ++key) {
        if (fRandom.chance(80))
            fRobot.memory.put(key, fRobot.memory.fresh(key));
    }
}

void Schedule::run()
{
    fLink.start();
    callAgain();
    suffer();
    fMayCall = false;
    if (!fLink.isStopped()) {
        recover();
        serve();
        fLink.stop();
    }
    end();
}

/// What is due next happens. The link is woken behind all else of the same moment.
void Schedule::step()
{
    const Agenda::Time wakeAt = fLink.wakeAt();
    const bool isWoken = wakeAt != Agenda::Time::max();
    const Agenda::Time woken = isWoken ? wakeAt + fStrikes.wakeDelay() : wakeAt;
    if (fAgenda.nextAt() <= woken)
        return fAgenda.runNext();
    if (fStrikes.wakeDelay() > seconds(0))
        fTally.meet(Fault::WokenLate, fLink.doing());
    fStrikes.wokenLate();
    fAgenda.passTo(woken);
    fLink.wake();
}

void Schedule::callAgain()
{
    if (!fMayCall)
        return;
    fLink.call(false);
    const int pause = fLink.isUp() ? 1 : 8;
    fAgenda.in(pause * fRandom.upTo(2 * fPeriod), [this] { callAgain(); });
}

void Schedule::suffer()
{
    const int most = fRandom.between(140, 260);
    while (fLink.events() < most && !fLink.isStopped()) {
        step();
        fStrikes.step();
    }
}

/// The network becomes good, and so the link must.
void Schedule::recover()
{
    fTrace.line([] { return "all is well"; });
    fStrikes.heal();
    fCallers.calmDown();
    if (fLink.doing() == LinkDoing::Refused)
        fLink.reconnect(fSettings.right());
    const int before = fCallers.answered();
    callUntilAnswered(before);
    const Agenda::Time limit = fLink.expected().upAt(fAgenda.now());
    while (fCallers.answered() == before || fCallers.underWay() > 0 || !fNetwork.isCalm() ||
           !fLink.isUp()) {
        require(fAgenda.now() <= limit, "a link comes up when all is well",
                [&] { return nameOf(fLink.doing()); });
        if (fLink.doing() == LinkDoing::Refused)
            fLink.reconnect(fSettings.right());
        step();
    }
}

void Schedule::callUntilAnswered(int before)
{
    if (fCallers.answered() > before)
        return;
    if (fLink.doing() == LinkDoing::Idle)
        fLink.call(false);
    fAgenda.in(milliseconds(50), [this, before] { callUntilAnswered(before); });
}

void Schedule::serve()
{
    for (int i = 0; i < callsOfHealthyLink; ++i) {
        const int before = fCallers.answered();
        const int underWay = fCallers.underWay();
        fLink.call(false);
        while (fCallers.underWay() > underWay)
            step();
        require(fCallers.answered() > before, "a healthy link answers", [] { return "a call"; });
    }
}

void Schedule::end()
{
    while (fStrikes.areLeftForStopped()) {
        fStrikes.step();
        if (fAgenda.nextAt() != Agenda::Time::max())
            fAgenda.runNext();
    }
    for (int i = 0; i < 10 && fAgenda.nextAt() != Agenda::Time::max(); ++i)
        fAgenda.runNext();
    fLink.checkEnd();
}

} // namespace

void runSchedule(std::uint64_t seed, std::uint64_t number, Tally& tally, bool isTraced)
{
    warmUp();
    {
        Schedule schedule(mixed(seed, number), tally, isTraced);
        schedule.run();
        tally.count(schedule.events());
    }
    require(Heap::inUseByLink() == 0, "a link that has ended gives everything back",
            [] { return std::to_string(Heap::inUseByLink()) + " bytes are left"; });
}
