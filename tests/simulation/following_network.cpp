// SPDX-License-Identifier: MIT
#include "simulation/following_network.h"

#include <utility>

namespace {

constexpr std::chrono::milliseconds pauseOfPoor{500};
constexpr std::chrono::seconds betweenPauses{10};

} // namespace

FollowingNetwork::FollowingNetwork(FollowingWorld& world)
    : fWorld(world), fUp(world.network, world.random), fDown(fUp)
{
    if (fWorld.network == NetworkKind::Poor)
        fWorld.agenda.in(fWorld.random.upTo(betweenPauses), [this] { pauseAgain(); });
}

void FollowingNetwork::pauseAgain()
{
    pause(pauseOfPoor, pauseOfPoor);
    fWorld.agenda.in(betweenPauses, [this] { pauseAgain(); });
}

void FollowingNetwork::connect()
{
    fIsUp = true;
    fUpSince = fWorld.now();
    fUp.clear(fWorld.now());
    fDown.clear(fWorld.now());
}

void FollowingNetwork::cut()
{
    fIsUp = false;
    ++fConnection;
}

void FollowingNetwork::pause(Duration up, Duration down)
{
    fUp.pause(fWorld.now(), up);
    fDown.pause(fWorld.now(), down);
}

void FollowingNetwork::up(std::size_t bytes, Task task)
{
    at(fUp.arrival(fWorld.now(), bytes, fWorld.random), std::move(task));
}

void FollowingNetwork::down(std::size_t bytes, Task task)
{
    at(fDown.arrival(fWorld.now(), bytes, fWorld.random), std::move(task));
}

void FollowingNetwork::in(Duration wait, Task task)
{
    at(fWorld.now() + wait, std::move(task));
}

void FollowingNetwork::at(Time time, Task task)
{
    fWorld.agenda.at(time, [this, task = std::move(task), connection = fConnection] {
        if (fIsUp && connection == fConnection)
            task();
    });
}
