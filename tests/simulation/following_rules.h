// SPDX-License-Identifier: MIT
#pragma once

#include "simulation/following_robot.h"
#include "simulation/following_rounds.h"

#include <cstddef>
#include <cstdint>
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
        int who; ///< of the callers
        zo::Follower::List list;
        const std::vector<int>& keys; ///< that it asks for; negative: no key at all
        const ZoValue::Elements& values;
    };

    FollowingRules(const Agenda& agenda, const FollowingRobot& robot, int callers);

    void called(const zo::Follower::List& list) { fLists[list].called(fAgenda.now()); }
    void began(const zo::Follower::Begun& begun);
    /// `order`: among all that was sent. `odd`: keys that it could not read.
    void ended(const zo::Follower::Begun& begun, std::uint64_t order, const std::vector<int>& odd);
    void lost();
    /// The link has been told that its own write of the key is done, which was number `order` of
    /// all that was sent, and made its value number `past`.
    void wrote(int key, std::ptrdiff_t past, std::uint64_t order);

    void check(const Answer& answer);

private:
    using Pasts = std::vector<FollowingRobot::Past>;

    /// What a caller has seen of a key.
    struct Shown
    {
        int number;
        const FollowingRobot::Key& key;
        std::int64_t value;
    };

    /// The last round that could not read a key.
    struct Odd
    {
        Time begin = Time::min();
        Time end = Time::min();
    };

    void checkArrival(const Answer& answer, const FollowingRounds& rounds) const;
    void checkKey(const Shown& shown, std::ptrdiff_t& seen, const FollowingRounds& rounds) const;
    Time validAfter(int key, const FollowingRounds& rounds) const;
    Time knownUntil(const Shown& shown, Pasts::const_iterator last,
                    const FollowingRounds& rounds) const;
    bool mayBeUnknown(const FollowingRobot::Past& change, const FollowingRounds& rounds) const;
    bool mayBePaused(int key, const FollowingRounds& rounds) const;
    bool isRegular(int key, const FollowingRounds& rounds) const;
    void checkTogether(const Answer& answer, const FollowingRounds& rounds);
    std::string told(const Shown& shown, const FollowingRounds& rounds) const;
    std::string toldTogether(const Answer& answer) const;

    const Agenda& fAgenda;
    const FollowingRobot& fRobot;
    std::map<zo::Follower::List, FollowingRounds> fLists;
    std::vector<std::vector<std::ptrdiff_t>> fSeen; ///< by caller and key, the newest past value
    std::map<int, std::ptrdiff_t> fOwn; ///< of each key, the past value that the link wrote
    std::uint64_t fLastOwn = 0;         ///< among all that was sent
    std::vector<Odd> fOdd;              ///< of each key
};
