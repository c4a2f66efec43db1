// SPDX-License-Identifier: MIT
#pragma once

#include "link/link_companion.h"
#include "memory/follower.h"
#include "memory/notice_sink.h"
#include "memory/notices_set_up.h"

#include <zo/list_answer.h>

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
    /// `wantsNotices`: servers that can tell what was written are asked to. There the keys are
    /// behind `prefix`.
    explicit Following(bool wantsNotices, std::string prefix = {});

    /// The values that `request`, the argument of getListData, asks for, and when they came, for
    /// the caller that the proxy and the calling thread are. Throws ZoError when the request is
    /// malformed, the robot refuses, the link is down, or the answer is still under way, and
    /// ServerRefusal when keys of it are just moving to another node: they are not followed there.
    ZoListAnswer values(Link& link, const void* proxy, const ZoValue& request);

    /// A write of `keys` over the link begins, which returns its number, and ends.
    std::uint64_t writes(const std::vector<std::string>& keys);
    void wrote(const std::vector<std::string>& keys, const OwnWrite& write);

    ZoLinkStatus::Following following(Time now) const override;

    // On the I/O thread:
    void told(const LinkCondition& condition) override;
    Time wakeAt() override;
    std::shared_ptr<Exchange> due(Time now) override;
    ReplySink* pushes() override { return &fNoticeSink; }
    void ended(const Follower::Begun& begun, bool isAnswered, std::uint64_t order) noexcept;
    void setUpAnswered() noexcept;

private:
    using Lock = std::unique_lock<std::mutex>;
    using Values = std::optional<ZoValue::Elements>;

    Values await(Lock& lock, Link& link, const Follower::Asked& asked, Time now);
    Values awaitUntil(Lock& lock, const Follower::List& list, Time until);
    Values awaitBytes(Lock& lock, Link& link, const Follower::List& list, Time now);
    void noticed(const std::string* key);

    const bool fWantsNotices;
    NoticeSink fNoticeSink;

    mutable std::mutex fMutex; ///< guards all below
    std::condition_variable fChanged;
    Follower fFollower;
    NoticesSetUp fSetUp;
    bool fIsUp = false;
    bool fHasFailed = false; ///< memory ran out where nothing may fail: the link has to
    Pace::Duration fTrip{0}; ///< the shortest round trip, about
};

} // namespace zo
