// SPDX-License-Identifier: MIT
#pragma once

#include "memory/notice_use.h"
#include "memory/pace.h"
#include "memory/round.h"

#include <cstdint>
#include <deque>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace zo {

/// A write of the link's own. What is answered must have been asked for when it had begun, so that
/// its keys were asked for, and sent behind it.
struct OwnWrite
{
    /// What has gone before something else: so many writes had begun, and so much was sent.
    struct Behind
    {
        std::uint64_t writes = 0;
        std::uint64_t sent = 0;
    };

    std::uint64_t number = 0; ///< of all writes, from 1
    std::uint64_t order = 0;  ///< its place among all that was sent

    bool isSeenFrom(const Behind& behind) const
    {
        return behind.writes >= number && behind.sent > order;
    }
};

/// One caller's list of keys, as it follows them: a view of the link's values that its own rounds
/// keep up to date. Decides when a round begins and what it asks for, and holds the newest answer.
/// Has no lock and no clock of its own.
class FollowedList
{
public:
    using Time = SteadyClock::time_point;

    /// How many keys that the robot refuses, or may, are asked for one by one in a round.
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

    /// The caller asks. `mayFollow`: it may become one that asks again and again.
    void called(Time now, bool mayFollow);
    /// The same while the link is down: it allows no round.
    void calledInVain(Time now) { fPace.called(now); }
    /// A call that had to wait is over.
    void waited(Time now);
    /// Whether it asks again and again.
    bool isFollowed() const { return fPace.isKnown(); }
    /// Whether the link has any of its values for another list as well.
    bool isShared() const;
    /// Whether it has not been asked for so long that it is forgotten.
    bool isLeft(Time now) const { return fPace.isOver(now); }
    /// Whether only what was written is read, if the server can tell.
    bool isTold(Time now) const { return isFollowed() && fNotices.pays(now); }
    bool isIdle() const { return fUnderWay.empty(); }
    /// Rounds.
    int underWay() const { return static_cast<int>(fUnderWay.size()); }
    /// The one that began last, among all of the link; 0: none has.
    std::uint64_t lastRound() const { return fLastRound; }
    /// The newest answer, unless it is too old, or was asked for before the link's own `lastWrite`.
    /// Throws ServerRefusal.
    std::optional<ZoValue::Elements> answer(Time now, const OwnWrite& lastWrite);
    /// Whether the answer was returned before.
    bool isGiven() const { return fIsGiven; }
    /// Whether the next one is expected by `time`, when this one may still be returned.
    bool isNextDueBy(Time time, Time now) const;
    /// The newest value of the link when the answer was made.
    Version answeredAt() const { return fAnsweredAt; }
    /// When the newest of its values came.
    Time arrived() const { return fArrived; }
    /// Whether the link has got another value of any of the keys since.
    bool isOutdated() const;
    /// There was none: a round may begin at once, if its answer would serve this call or the next.
    void hurry();

    /// Whether the robot has refused keys together, so that each must be asked by itself.
    bool isRefused() const { return !fRefused.empty(); }

    /// When the next round begins; Time::max(): not before something else happens.
    Time beginsAt() const;
    /// A round that begins now. `canTell`: the server can send notices. `places` are those of the
    /// link, `writes` counts its own writes that have begun.
    /// It is number `round` of the link's rounds.
    std::shared_ptr<Round> begin(Time now, bool canTell, Places& places, std::uint64_t writes,
                                 std::uint64_t round);
    /// It is over; without an answer when the link was lost. Its first slice was number `order` of
    /// all that was sent.
    void ended(const std::shared_ptr<Round>& round, bool isAnswered, std::uint64_t order, Time now,
               Pace::Duration trip);
    /// The connection is gone, and all values with it.
    void forget();

private:
    struct Slot
    {
        static constexpr int fNever = std::numeric_limits<int>::min();

        FollowedValues::Entry* entry;
        int readBy = fNever;    ///< the newest round that asks for it ...
        int armedBy = 0;        ///< ... and for notices of it, too
        int score = 0;          ///< for having been written before each of the last rounds
        bool isRegular = false; ///< it is read in each round, written or not
    };
    struct UnderWay
    {
        std::shared_ptr<Round> round;
        int number;
        bool isMore; ///< the end of the one before it
        OwnWrite::Behind behind;
        bool isWhole = false;
    };

    /// Slots that are read anew, written or not.
    struct Turn
    {
        int first;
        int count;
        int all;
        Time lateTime; ///< those that were last asked for before it ...
        int lateRound; ///< ... and before this round are late

        bool has(int slot) const { return (slot - first + all) % all < count; }
        bool isLate(const Slot& slot) const
        {
            return slot.entry->second.askedAt < lateTime && slot.readBy < lateRound;
        }
    };

    std::shared_ptr<const RoundPlan> plan(Time now, bool canTell, Place newest);
    void chooseKeys(Time now, bool isTold, bool canTell);
    void chooseMissing(Time now, bool canTell);
    bool isKnown(const FollowedValue& followed, Time now, bool canTell) const;
    void chooseChanged(Time now, const Turn& turn);
    bool choose(Slot& slot, Time now);
    void chooseForbidden();
    void takeRefused();
    void learnNotices(Time now, bool isTold);
    template <class Condition>
    int countOf(Condition isIt) const;
    void learnRegular();
    Turn nextTurn(Time now);
    void take(const UnderWay& whole, Time now);
    void leaveOutExcess(Time now);
    void publish(Time now, bool isEmpty);
    void withdraw();

    FollowedValues& fValues;
    std::vector<Slot> fSlots; ///< one for each key
    std::vector<int> fSlotOf; ///< each element of the request; -1: it can be no key
    Pace fPace;
    NoticeUse fNotices;

    int fCredit = 0; ///< rounds that may begin
    Time fBeginAt = Time::max();
    bool fIsUrgent = false;
    std::deque<UnderWay> fUnderWay;
    std::uint64_t fLastRound = 0;
    int fBegun = 0; ///< rounds
    int fEnded = 0;
    int fEndedAtPlan = 0; ///< when the last round was made
    Place fPlannedAt = 0; ///< the newest thing when the last round was made
    Version fPlannedVersion = 0;
    int fTurn = 0;         ///< the first slot of the next round's turn
    RoundPlan::Keys fKeys; ///< of the round that is made
    RoundPlan::Keys fSingles;
    std::vector<Slot*> fForbidden; ///< that may be tried in it
    RoundPlan::Keys fRefused;      ///< to be asked one by one before there is an answer
    std::shared_ptr<const RoundPlan> fPlan;

    ZoValue::Elements fAnswer;
    bool fHasAnswer = false;
    bool fIsGiven = false;
    std::string fFailure;
    Time fAsked{}; ///< when the newest round began that has been answered
    Time fMade;    ///< when the answer was
    Time fArrived; ///< when a robot's reply last made one
    Version fAnsweredAt = 0;
    OwnWrite::Behind fBehind; ///< of the answer
    OwnWrite::Behind fNext;   ///< of the next one
};

} // namespace zo
