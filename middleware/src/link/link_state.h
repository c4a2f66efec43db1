// SPDX-License-Identifier: MIT
#pragma once

#include "link/link_actions.h"

#include <zo/link_status.h>

#include <condition_variable>
#include <mutex>

namespace zo {

/// Whether the link is up, as the I/O thread tells and everyone else reads.
class LinkState
{
public:
    /// Before the first attempt has ended, because of `cause`.
    explicit LinkState(SharedText cause);

    void set(const LinkCondition& condition) noexcept;

    ZoLinkStatus status() const;
    /// Counts how often the link has come up.
    int connections() const;
    NodePtr node() const;
    /// Throws ZoError with the cause and the time of the loss while the link is down.
    void throwIfDown() const;
    bool isUp() const;
    /// Whether its first attempt is under way.
    bool isOpening() const;
    /// Whether the link is down, and its first attempt over.
    bool hasFailed() const;
    /// Waits until the first attempt has ended. Throws ZoError when it failed, and at `deadline`.
    void waitForFirstAttempt(SteadyClock::time_point deadline);

private:
    mutable std::mutex fMutex;
    std::condition_variable fChanged;
    LinkCondition fCondition;
    std::chrono::system_clock::time_point fSince = std::chrono::system_clock::now();
    int fConnections = 0;
};

} // namespace zo
