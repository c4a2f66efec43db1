// SPDX-License-Identifier: MIT
#pragma once

#include "link/exchange.h"
#include "link/link_actions.h"

#include <zo/link_status.h>

#include <memory>

namespace zo {

/// Who decides what else a link sends, beside the calls of other threads. It is asked on the I/O
/// thread only, but for `following`, and told what happens.
class LinkCompanion
{
public:
    using Time = SteadyClock::time_point;

    LinkCompanion() = default;
    virtual ~LinkCompanion() = default;
    LinkCompanion(const LinkCompanion&) = delete;
    LinkCompanion& operator=(const LinkCompanion&) = delete;

    /// The state of the link has changed. Comes before the end of the exchanges that a loss takes
    /// along.
    virtual void told(const LinkCondition& condition) = 0;
    /// When `due` is to be asked; Time::max(): not before something else happens.
    virtual Time wakeAt() = 0;
    /// What is to be sent now, one at a time; null: nothing more. Only while the link is up.
    virtual std::shared_ptr<Exchange> due(Time now) = 0;
    /// How it keeps its lists up to date. From any thread.
    virtual ZoLinkStatus::Following following(Time now) const = 0;
    /// Takes what the server sends unasked, as long as this lives.
    virtual ReplySink* pushes() = 0;
};

} // namespace zo
