// SPDX-License-Identifier: MIT
#pragma once

#include "link/link_companion.h"
#include "memory/follower.h"

#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace zo {

class Link;

/// The lists of a link that are followed: kept up to date on its I/O thread, and read by callers of
/// any thread, who wait a moment at most.
class Following : public LinkCompanion
{
public:
    /// The values that `request`, the argument of getListData, asks for, for the caller that the
    /// proxy and the calling thread are. Throws ZoError when the request is malformed, the robot
    /// refuses, the link is down, or the answer is still under way.
    ZoValue values(Link& link, const void* proxy, const ZoValue& request);

    /// A write of `keys` over the link begins, and ends; `order` is the number of its last slice.
    void writes(const std::vector<std::string>& keys);
    void wrote(const std::vector<std::string>& keys, std::uint64_t order);

    // On the I/O thread:
    void told(const LinkCondition& condition) override;
    Time wakeAt() override;
    std::shared_ptr<Exchange> due(Time now) override;
    void ended(const Follower::Begun& begun, bool isAnswered, std::uint64_t order) noexcept;

private:
    using Lock = std::unique_lock<std::mutex>;
    using Values = std::optional<ZoValue::Elements>;

    Values await(Lock& lock, Link& link, const Follower::Asked& asked, Time now);
    Values awaitUntil(Lock& lock, const Follower::List& list, Time until);
    Values awaitBytes(Lock& lock, Link& link, const Follower::List& list, Time now);

    std::mutex fMutex; ///< guards all below
    std::condition_variable fChanged;
    Follower fFollower;
    bool fIsUp = false;
    bool fHasFailed = false; ///< memory ran out where nothing may fail: the link has to
    Pace::Duration fTrip{0}; ///< the shortest round trip, about
};

} // namespace zo
