// SPDX-License-Identifier: MIT
#pragma once

#include "simulation/following_way.h"
#include "simulation/following_world.h"

#include <functional>

/// The one connection between followers and their robot, and both of its directions. When it is
/// cut, all that was to happen on it does not.
class FollowingNetwork
{
public:
    using Time = FollowingWorld::Time;
    using Duration = FollowingWorld::Duration;
    using Task = std::function<void()>;

    explicit FollowingNetwork(FollowingWorld& world);

    bool isUp() const { return fIsUp; }
    Time upSince() const { return fUpSince; }
    void connect();
    void cut();
    /// As on the air: nothing gets through for a while.
    void pause(Duration up, Duration down);

    /// Of one direction.
    Duration delay() const { return fUp.delay(); }

    /// `task` happens where the bytes arrive: at the robot ...
    void up(std::size_t bytes, Task task);
    /// ... or at the link.
    void down(std::size_t bytes, Task task);
    void in(Duration wait, Task task);

private:
    void at(Time time, Task task);
    void pauseAgain();

    FollowingWorld& fWorld;
    FollowingWay fUp;
    FollowingWay fDown;
    bool fIsUp = false;
    Time fUpSince{};
    int fConnection = 0;
};
