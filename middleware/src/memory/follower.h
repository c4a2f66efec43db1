// SPDX-License-Identifier: MIT
#pragma once

#include "memory/followed_list.h"

#include <zo/link_status.h>

#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace zo {

/// Who asks for a list: each has its own rhythm, and takes its own answers.
struct FollowingCaller
{
    const void* proxy;
    std::thread::id thread;

    bool operator==(const FollowingCaller& other) const
    {
        return proxy == other.proxy && thread == other.thread;
    }
};

/// All that decides about followed lists: which there are, when a round begins for which, what it
/// asks for, and what a call may return. Has no lock, thread or clock of its own, and sends
/// nothing: whoever drives it tells it what happens, with the time, and sends the rounds that it
/// begins.
class Follower
{
public:
    using Time = SteadyClock::time_point;
    using List = std::shared_ptr<FollowedList>;

    /// Lists that are followed. Another one is not, as long as they are: each of its calls has a
    /// round of its own, for which it waits.
    static constexpr int fMostLists = 16;

    /// How long a call waits at most whose list is followed: more would be seen in a window.
    static constexpr std::chrono::milliseconds fMoment{5};

    /// How long a call waits that found no answer, or one that was returned before.
    enum class Patience
    {
        None,   ///< not at all
        Brief,  ///< a moment
        OneWay, ///< a round trip and a little: the link has most of the list
        Full    ///< as for any call
    };
    struct Asked
    {
        std::optional<ZoValue::Elements> values; ///< none: it is worth waiting
        List list;
        Patience patience;
    };
    struct Begun
    {
        List list;
        std::shared_ptr<Round> round;
        bool isMore; ///< the end of the one before it: asks again, key by key
    };

    /// On the server the keys are behind `prefix`.
    explicit Follower(std::string prefix = {}) : fValues(std::move(prefix)) {}

    /// A call of getListData. Throws ZoError when `request` is malformed, and ServerRefusal.
    Asked ask(Time now, const FollowingCaller& caller, const ZoValue& request);
    /// A call that fails, as the link is down: its caller goes on, and keeps his list.
    void askedInVain(Time now, const FollowingCaller& caller, const ZoValue& request);
    /// Looks again, for a call that waits: for an answer that was not returned yet.
    std::optional<ZoValue::Elements> news(Time now, const List& list);
    /// The same at its end: for any that may be returned.
    std::optional<ZoValue::Elements> answer(Time now, const List& list);

    /// The link is up. `canTell`: its server sends notices.
    void cameUp(bool canTell);
    void wentDown();
    /// `whole` is what the server calls the key.
    void noticed(const std::string& whole) { fValues.noticed(whole, fPlaces.next()); }
    void noticedAll() { fValues.noticedAll(fPlaces.next()); }

    /// When `begin` is due.
    Time wakeAt() const;
    /// The next round that begins now, if any does; to be repeated until none does.
    std::optional<Begun> begin(Time now);
    /// It is over; without an answer when the link was lost. Its first slice was number `order` of
    /// all that was sent. The link's shortest round trip is about `trip`.
    void ended(const Begun& begun, bool isAnswered, std::uint64_t order, Time now,
               Pace::Duration trip);
    /// It asks for nothing: what could be asked for is refused for a while, or no key at all.
    void answeredAtOnce(const Begun& begun, Time now)
    {
        ended(begun, true, fLastWrite.order + 1, now, Pace::Duration(0));
    }
    /// The link is about to write values of its own, which a call behind it shall see. Returns the
    /// number of this write.
    std::uint64_t writes(const std::vector<std::string>& keys);
    /// It has, or may have: as number `order` of all that was sent, 0 when it was not. What was
    /// asked for before is not returned any more.
    void wrote(const std::vector<std::string>& keys, const OwnWrite& write);

    /// How the lists are kept up to date that are followed now.
    ZoLinkStatus::Following following(Time now) const;
    std::size_t memory() const { return fValues.memory(); }
    std::size_t lists() const { return fLists.size(); }

private:
    struct Followed
    {
        FollowingCaller caller;
        List list;
        std::shared_ptr<Version> seen; ///< of the caller's newest answer, whichever list's it was
    };

    List find(const FollowingCaller& caller, const ZoValue& request) const;
    List used(const List& list);
    std::shared_ptr<Version> seenBy(const FollowingCaller& caller) const;
    List add(const FollowingCaller& caller, const ZoValue& request);
    bool hasRoom() const;
    bool hasWay() const;
    List nextToBegin(Time now) const;
    void forgetLeft(Time now);
    void forgetExcess();
    void forget(std::vector<Followed>::iterator one);
    void leave(const List& list);

    FollowedValues fValues;
    Places fPlaces;
    std::vector<Followed> fLists; ///< the one that was asked for last is the last
    std::vector<List> fLeaving;   ///< rounds of theirs are under way
    bool fIsUp = false;
    bool fCanTell = false;
    std::uint64_t fRounds = 0; ///< that have begun
    std::uint64_t fWrites = 0; ///< that have begun
    OwnWrite fLastWrite;       ///< of those that are over
};

} // namespace zo
