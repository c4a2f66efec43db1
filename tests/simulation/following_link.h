// SPDX-License-Identifier: MIT
#pragma once

#include "simulation/following_network.h"
#include "simulation/following_rules.h"

#include <cstdint>
#include <map>
#include <vector>

/// Drives a Follower as a link does: tells it what happens, sends its rounds to the robot, part by
/// part, and brings the replies. Tells the rules what it sees.
class FollowingLink
{
public:
    using Time = FollowingWorld::Time;
    using Duration = FollowingWorld::Duration;

    FollowingLink(FollowingWorld& world, FollowingNetwork& network, FollowingRobot& robot,
                  FollowingRules& rules);

    bool isUp() const { return fNetwork.isUp(); }
    Time upSince() const { return fNetwork.upSince(); }
    Duration roundTrip() const { return 2 * fNetwork.delay(); }

    void comeUp();
    /// For a while.
    void lose();

    zo::Follower::Asked ask(const zo::FollowingCaller& caller, const ZoValue& request);
    /// For a call that waits, and at the end of its wait.
    std::optional<ZoValue::Elements> news(const zo::Follower::List& list);
    std::optional<ZoValue::Elements> answer(const zo::Follower::List& list);
    void write(int key);

    /// The robot tells of a change; null: of all keys.
    void notify(const FollowingRobot::Key* key);

private:
    using Begun = zo::Follower::Begun;
    using Values = std::vector<std::int64_t>;
    /// A round that is sent.
    struct Sending
    {
        Begun begun;
        std::uint64_t order = 0; ///< among all that is sent, of its first part; 0: not yet
        std::vector<int> odd{};  ///< keys that it could not read
    };
    using SendingPtr = std::shared_ptr<Sending>;

    void sendWrite(int key, const std::vector<std::string>& names, const zo::OwnWrite& own);
    void beginRounds();
    void wakeLater();
    void send(const Begun& begun);
    void sendEmpty(const SendingPtr& sending);
    void sendPart(const SendingPtr& sending, int command);
    void arrive(const SendingPtr& sending, int command);
    void receive(const SendingPtr& sending, int command, const Values& values);
    void end(const Sending& sending);
    void noteOdd(Sending& sending, int command, const Values& values) const;
    std::vector<int> keysOf(const zo::RoundPlan& plan, int command) const;

    FollowingWorld& fWorld;
    FollowingNetwork& fNetwork;
    FollowingRobot& fRobot;
    FollowingRules& fRules;
    zo::Follower fFollower;
    std::uint64_t fOrder = 0;
    std::map<zo::Follower::List, Time> fSentUntil; ///< when all parts of its rounds will be sent
};
