// SPDX-License-Identifier: MIT
#include "simulation/following_schedule.h"

#include "simulation/following_callers.h"
#include "simulation/following_disturbances.h"

#include <algorithm>
#include <memory>

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

/// Some have more than a command can ask for.
int someKeys(Random& random)
{
    return random.chance(3) ? 2200 : random.between(1, random.chance(5) ? 200 : 40);
}

class FollowingSchedule
{
public:
    FollowingSchedule(std::uint64_t seed, Tally& tally, bool isTraced);

    void run();
    std::uint64_t events() const { return fEvents; }

private:
    void tick();
    void runFor(seconds time);

    FollowingWorld fWorld;
    FollowingNetwork fNetwork;
    FollowingRobot fRobot;
    const int fCount; ///< of callers
    FollowingRules fRules;
    FollowingLink fLink;
    FollowingDisturbances fDisturbances;
    std::vector<FollowingThread> fThreads;
    std::vector<std::unique_ptr<ListCaller>> fCallers;
    const milliseconds fTick;
    std::uint64_t fEvents = 0;
};

FollowingSchedule::FollowingSchedule(std::uint64_t seed, Tally& tally, bool isTraced)
    : fWorld(seed, isTraced),
      fNetwork(fWorld),
      fRobot(fWorld.agenda, someKeys(fWorld.random),
             [this](const FollowingRobot::Key* key) { fLink.notify(key); }),
      fCount(fWorld.random.between(1, 4)),
      fRules(fWorld.agenda, fRobot, fCount),
      fLink(fWorld, fNetwork, fRobot, fRules),
      fDisturbances(fWorld, fNetwork, fRobot, fLink),
      fThreads(fCount),
      fTick(fWorld.slowness * fWorld.random.between(5, 25))
{
    for (int i = fWorld.random.between(0, std::min(6, fRobot.count())); i > 0; --i)
        fRobot.writeTogether(static_cast<int>(fWorld.random.below(fRobot.keys().size())));
    const ListCaller::World world{fWorld, fRobot, fLink, fRules, tally, fThreads};
    for (int number = 0; number < fCount; ++number) {
        const int who = fWorld.random.chance(25) ? 0 : number;
        fCallers.push_back(std::make_unique<ListCaller>(world, number, who));
    }
}

void FollowingSchedule::run()
{
    fLink.comeUp();
    tick();
    for (const auto& caller : fCallers)
        caller->start();
    runFor(fWorld.slowness * seconds(fWorld.random.between(5, 20)));
    fDisturbances.start();
    runFor(fWorld.slowness * seconds(fWorld.random.between(5, 25)));
}

/// The robot's programs write.
void FollowingSchedule::tick()
{
    Random& random = fWorld.random;
    fRobot.tick();
    const auto someKey = [&] { return static_cast<int>(random.below(fRobot.keys().size())); };
    for (int i = fWorld.isLively ? random.between(0, 2) : 0; i > 0; --i)
        fRobot.write(someKey(), fRobot.fresh());
    if (random.chance(1))
        fRobot.writeQuietly(someKey(), fRobot.fresh());
    fWorld.agenda.in(fTick, [this] { tick(); });
}

void FollowingSchedule::runFor(seconds time)
{
    const Agenda::Time end = fWorld.now() + time;
    for (; fWorld.agenda.nextAt() < end; ++fEvents)
        fWorld.agenda.runNext();
}

} // namespace

void runFollowingSchedule(std::uint64_t seed, std::uint64_t number, Tally& tally, bool isTraced)
{
    FollowingSchedule schedule(Random(Random(seed).next() ^ number).next(), tally, isTraced);
    schedule.run();
    tally.count(schedule.events());
}
