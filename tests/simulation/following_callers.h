// SPDX-License-Identifier: MIT
#pragma once

#include "simulation/following_link.h"
#include "simulation/following_thread.h"
#include "simulation/tally.h"

#include <vector>

/// Asks for a list again and again, in its rhythm, waits as long as a real call does, and has each
/// answer checked.
class ListCaller
{
public:
    struct World
    {
        FollowingWorld& common;
        const FollowingRobot& robot;
        FollowingLink& link;
        FollowingRules& rules;
        Tally& tally;
        std::vector<FollowingThread>& threads;
    };

    /// `number` counts from 0. Number `who` is the first one on its thread.
    ListCaller(const World& world, int number, int who);
    ListCaller(const ListCaller&) = delete;
    ListCaller& operator=(const ListCaller&) = delete;

    void start();

private:
    using Time = FollowingWorld::Time;
    using Duration = FollowingWorld::Duration;
    using Values = std::optional<ZoValue::Elements>;

    void chooseKeys();
    void makeRequest();
    void call();
    void await(Time until, bool isBrief);
    void end(const Values& values);
    void callAgain();
    Duration pause();
    Duration lengthOf(zo::Follower::Patience patience);
    bool isSteady() const;

    const World fWorld;
    const int fNumber;
    const int fWho;
    FollowingThread& fThread;
    const Duration fPeriod;
    const Duration fStray;  ///< how far its calls come from their time
    std::vector<int> fKeys; ///< of the robot; -1: no key at all
    ZoValue fRequest;
    zo::Follower::List fList;
    int fCalls = 0; ///< for this list, in a row
    Time fEnded{};  ///< the last one
};
