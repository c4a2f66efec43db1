// SPDX-License-Identifier: MIT
#pragma once

#include "simulation/following_robot.h"
#include "simulation/following_rounds.h"

#include <cstddef>
#include <map>
#include <string>
#include <vector>

/// What holds for every answer that a caller gets, whatever goes wrong: it has just arrived, shows
/// nothing that a round would have replaced, goes back in time for no key, shows what the link has
/// written itself, and shows together what is written together. Throws Violation.
class FollowingRules
{
public:
    using Time = Agenda::Time;
    using Duration = Agenda::Duration;

    struct Answer
    {
        int caller;
        zo::Follower::List list;
        const std::vector<int>& keys; ///< that it asks for; negative: no key at all
        const ZoValue::Elements& values;
        Duration period; ///< of its calls
    };

    /// `way`: what something takes from the link to the robot at most, when nothing is in its way.
    FollowingRules(const Agenda& agenda, const FollowingRobot& robot, int callers, Duration way);

    void called(const zo::Follower::List& list) { fLists[list].called(); }
    void began(const zo::Follower::Begun& begun);
    void ended(const zo::Follower::Begun& begun);
    void lost();
    /// The link has been told that its own write of the key is done, which made its value number
    /// `past`.
    void wrote(int key, std::ptrdiff_t past) { fOwn[key] = past; }

    void check(const Answer& answer);

private:
    /// What a caller has seen of a key.
    struct Shown
    {
        const FollowingRobot::Key& key;
        std::int64_t value;
        Time validAfter;
    };

    void checkArrival(const Answer& answer, Time arrivedAt) const;
    void checkKey(const Answer& answer, int number, const Shown& shown);
    bool isQuiet(const Answer& answer, const FollowingRobot::Key& key) const;
    /// Whether its value cannot be read, or may not have been read since it can.
    bool isOdd(const FollowingRobot::Key& key) const;
    void checkTogether(const Answer& answer);
    std::string told(const Shown& shown) const;
    std::string toldTogether(const Answer& answer) const;

    const Agenda& fAgenda;
    const FollowingRobot& fRobot;
    const Duration fWay;
    std::map<zo::Follower::List, FollowingRounds> fLists;
    std::vector<std::vector<std::ptrdiff_t>> fSeen; ///< by caller and key, the newest past value
    std::map<int, std::ptrdiff_t> fOwn; ///< of each key, the past value that the link wrote
};
