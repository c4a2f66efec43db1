// SPDX-License-Identifier: MIT
#pragma once

#include "memory/notice_use.h"
#include "memory/pace.h"
#include "memory/round.h"

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace zo {

/// One caller's list of keys, as it follows them: a view of the link's values that its own rounds
/// keep up to date. Decides when a round begins and what it asks for, and holds the newest answer.
/// Has no lock and no clock of its own.
class FollowedList
{
public:
    using Time = SteadyClock::time_point;

    /// How many keys that the robot refuses are tried again in one round.
    static constexpr int fMostSingles = 50;

    /// The values of what `request`, the argument of getListData, asks for. Throws ZoError when it
    /// is malformed. `values` must be there until `leave`.
    FollowedList(const ZoValue& request, FollowedValues& values);
    FollowedList(const FollowedList&) = delete;
    FollowedList& operator=(const FollowedList&) = delete;
    /// Gives the keys back. Afterwards the list is of no use; not while a round is under way.
    void leave();

    bool isFor(const ZoValue& request) const;
    int count() const { return static_cast<int>(fSlotOf.size()); }
    const Pace& pace() const { return fPace; }

    /// The caller asks.
    void called(Time now);
    /// Whether it asks again and again.
    bool isFollowed() const { return fPace.isKnown(); }
    /// Whether the link has any of its values for another list as well.
    bool isShared() const;
    /// Whether it has not been asked for so long that it is forgotten.
    bool isLeft(Time now) const { return fPace.isOver(now); }
    bool isIdle() const { return fUnderWay.empty(); }
    /// The newest answer, unless it is too old, or was asked for before the link's own write whose
    /// place among all that was sent is `lastWrite`. Throws ServerRefusal.
    std::optional<ZoValue::Elements> answer(Time now, std::uint64_t lastWrite);
    /// There was none: a round may begin at once, if its answer would serve this call or the next.
    void hurry(Time now);

    /// Whether the robot has refused keys together, so that each must be asked by itself.
    bool isRefused() const { return !fRefused.empty(); }

    /// When the next round begins; Time::max(): not before something else happens.
    Time beginsAt() const;
    /// A round that begins now. `canTell`: the server can send notices. `newest`: the place of the
    /// newest thing that has come from it.
    std::shared_ptr<Round> begin(Time now, bool canTell, Places& places);
    /// It is over; without an answer when the link was lost. Its first slice was number `order` of
    /// all that was sent.
    void ended(const std::shared_ptr<Round>& round, bool isAnswered, std::uint64_t order, Time now,
               Pace::Duration trip);
    /// The connection is gone, and all values with it.
    void forget();

private:
    struct Slot
    {
        FollowedValues::Entry* entry;
        int askedBy = 0;        ///< the newest round that asks for notices of it, too
        int score = 0;          ///< for having been written before each of the last rounds
        bool isRegular = false; ///< it is read in each round, written or not
    };
    struct UnderWay
    {
        std::shared_ptr<Round> round;
        int number;
        bool isMore; ///< the end of the one before it
        std::uint64_t order = 0;
        bool isWhole = false;
    };

    std::shared_ptr<const RoundPlan> plan(Time now, bool canTell, Place newest);
    void chooseAll(Time now, bool isOnce);
    void chooseChanged(Time now);
    void choose(const Slot& slot, Time now);
    int countWritten();
    bool isInTurn(int slot, int turn) const;
    void take(const UnderWay& whole, Time now);
    void publish(const UnderWay& whole, Time now);

    FollowedValues& fValues;
    std::vector<Slot> fSlots; ///< one for each key
    std::vector<int> fSlotOf; ///< each element of the request; -1: it can be no key
    Pace fPace;
    NoticeUse fNotices;

    int fCredit = 0; ///< rounds that may begin
    Time fBeginAt = Time::max();
    bool fIsUrgent = false;
    std::deque<UnderWay> fUnderWay;
    int fBegun = 0; ///< rounds
    int fEnded = 0;
    Place fPlannedAt = 0;  ///< the newest thing when the last round was made
    int fTurn = 0;         ///< the first slot of the next round's turn
    RoundPlan::Keys fKeys; ///< of the round that is made
    RoundPlan::Keys fSingles;
    RoundPlan::Keys fRefused; ///< to be asked one by one before there is an answer
    std::shared_ptr<const RoundPlan> fPlan;

    ZoValue::Elements fAnswer;
    std::uint64_t fShown = 0; ///< the newest version in the answer
    bool fHasAnswer = false;
    std::string fFailure;
    Time fArrived;
    std::uint64_t fRequested = 0;
};

} // namespace zo
