// SPDX-License-Identifier: MIT
#pragma once

#include "link/deadline.h"

#include <zo/value.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace zo {

/// A place in the stream of what the robot sends on one connection: replies and notices, in the
/// order in which it did what they tell of. 0: before all of them.
using Place = std::uint64_t;

/// Counts what has become the value of any key, in that order: a reply is here before its values
/// are known.
using Version = std::uint64_t;

/// A key that lists follow, and what the link knows of it.
struct FollowedValue
{
    using Time = SteadyClock::time_point;

    ZoValue value;
    Place readAt = 0;    ///< the reply that brought the value; 0: not read on this connection
    Time askedAt{};      ///< when the round that brought it began
    Time arrivedAt{};    ///< when it had brought it
    Place armedAt = 0;   ///< the newest reply after which the robot tells of changes
    Place noticedAt = 0; ///< the newest notice of a change
    Place changedAt = 0; ///< the newest reply that brought another value than the one before
    bool isForbidden = false;
    SteadyClock::duration pause{0}; ///< before it is asked for again, when it is too large
    Time notBefore{};               ///< of a forbidden or too large one
    bool isLeftOut = false;         ///< the value was read, but not kept
    int lists = 0;
    int writes = 0;        ///< of this link's own, under way
    Place writtenAt = 0;   ///< the end of the last one
    Version version = 0;   ///< of the value
    std::size_t bytes = 0; ///< that it takes

    /// Whether the robot would have told if it had changed since it was read.
    bool isTold() const { return armedAt > noticedAt; }
    bool isWrittenSince(Place place) const { return noticedAt > place || changedAt > place; }
    /// Whether it is left alone; not when the link itself has written it since it was read.
    bool isPaused(Time now) const { return writes == 0 && readAt > writtenAt && now < notBefore; }
};

/// The values of a link, one for each key that any list follows. Has no lock of its own.
class FollowedValues
{
public:
    using Time = FollowedValue::Time;
    using Entry = std::pair<const std::string, FollowedValue>;

    /// The first pause of a key whose value is too large; it doubles up to the longest one.
    static constexpr std::chrono::seconds fShortestPause{1};
    static constexpr std::chrono::seconds fLongestPause{10};

    /// What values and keys may take, in bytes, before something is left out.
    static constexpr std::size_t fMostMemory = std::size_t{64} << 20;

    /// On the server the keys are behind `prefix`.
    explicit FollowedValues(std::string prefix = {}) : fPrefix(std::move(prefix)) {}
    const std::string& prefix() const { return fPrefix; }

    /// The entry of `key`, for one more list: stays where it is until that list has released it.
    Entry* acquire(const std::string& key);
    void release(Entry* entry);

    /// A reply that tells of a key.
    struct Reading
    {
        Place place;
        bool isArmed; ///< the robot tells of changes from then on
        Time askedAt;
        Time arrivedAt{};
    };

    // A reading that is older than what is here changes nothing: false.
    /// It brought `value`.
    bool read(Entry& entry, ZoValue value, const Reading& reading);
    /// It had a value that is too large.
    bool readTooLarge(Entry& entry, const Reading& reading, Time now);
    /// Its value is not kept: there are too many others.
    void leaveOut(Entry& entry, Time now);
    /// The robot refuses the key.
    bool refused(Entry& entry, const Reading& reading, Time now);

    /// The server tells of the key that it calls `whole`.
    void noticed(const std::string& whole, Place place);
    /// Any key may have changed.
    void noticedAll(Place place);
    /// A write of this link's own is under way. It ends once, whatever becomes of it, unless the
    /// connection is gone before: at `place`, which may be before its notices.
    void beginWrite(const std::vector<std::string>& keys);
    void endWrite(const std::vector<std::string>& keys, Place place);

    /// The connection is gone, and what is known with it.
    void forget();

    /// Of the newest value of all.
    Version version() const { return fVersion; }
    /// What values and keys take, in bytes.
    std::size_t memory() const { return fMemory; }

private:
    void set(FollowedValue& followed, ZoValue value);
    bool put(Entry& entry, ZoValue value, const Reading& reading);

    const std::string fPrefix;
    std::unordered_map<std::string, FollowedValue> fEntries;
    std::unordered_map<std::string, int> fWritten; ///< so many writes under way, of any key
    std::size_t fMemory = 0;
    Version fVersion = 0;
};

} // namespace zo
