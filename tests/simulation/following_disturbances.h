// SPDX-License-Identifier: MIT
#pragma once

#include "simulation/following_link.h"

/// What goes wrong for followers, or changes behind their back, from its start on.
class FollowingDisturbances
{
public:
    FollowingDisturbances(FollowingWorld& world, FollowingNetwork& network, FollowingRobot& robot,
                          FollowingLink& link);

    void start();

private:
    void strikeAgain();
    void strike();
    void strikeLink();
    void strikeKey(int key);
    void forbid(int key);
    void writeAll();

    FollowingWorld& fWorld;
    FollowingNetwork& fNetwork;
    FollowingRobot& fRobot;
    FollowingLink& fLink;
};
