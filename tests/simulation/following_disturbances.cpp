// SPDX-License-Identifier: MIT
#include "simulation/following_disturbances.h"

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr milliseconds longestPause{700};

} // namespace

FollowingDisturbances::FollowingDisturbances(FollowingWorld& world, FollowingNetwork& network,
                                             FollowingRobot& robot, FollowingLink& link)
    : fWorld(world), fNetwork(network), fRobot(robot), fLink(link)
{
}

void FollowingDisturbances::start()
{
    fWorld.trace.line([] { return "nothing is well from now on"; });
    fWorld.isCalm = false;
    strikeAgain();
}

void FollowingDisturbances::strikeAgain()
{
    strike();
    fWorld.agenda.in(fWorld.slowness * fWorld.random.upTo(seconds(1)), [this] { strikeAgain(); });
}

void FollowingDisturbances::strike()
{
    const int key = static_cast<int>(fWorld.random.below(fRobot.keys().size()));
    switch (fWorld.random.between(0, 5)) {
    case 0:
    case 1:
        return strikeLink();
    case 2:
        return fWorld.isLively ? writeAll() : strikeKey(key);
    case 3:
        if (fLink.isUp())
            fLink.write(key);
        return;
    default:
        return strikeKey(key);
    }
}

void FollowingDisturbances::strikeLink()
{
    Random& random = fWorld.random;
    if (!random.chance(20))
        fNetwork.pause(random.upTo(longestPause), random.upTo(longestPause));
    else if (fLink.isUp())
        fLink.lose();
}

void FollowingDisturbances::strikeKey(int key)
{
    switch (fWorld.random.between(0, 5)) {
    case 0:
        return fRobot.writeQuietly(key, fRobot.fresh());
    case 1:
        return fRobot.write(key, FollowingRobot::fNone);
    case 2:
        return fRobot.write(key, FollowingRobot::fTooLarge);
    case 3:
        return fWorld.random.chance(50) ? forbid(key) : fRobot.allowAll();
    case 4:
        return fWorld.random.chance(20) ? fRobot.flush() : fRobot.allowAll();
    default:
        if (fLink.isUp())
            fLink.write(key);
    }
}

/// Now and then those behind it, too, so many that they are tried again in several rounds.
void FollowingDisturbances::forbid(int key)
{
    int count = fWorld.random.chance(10) ? fWorld.random.between(2, 120) : 1;
    for (; count > 0 && key < fRobot.count(); --count)
        fRobot.forbid(key++);
}

void FollowingDisturbances::writeAll()
{
    for (int key = 0; key < fRobot.count(); ++key)
        fRobot.write(key, fRobot.fresh());
}
