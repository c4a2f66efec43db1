// SPDX-License-Identifier: MIT
#pragma once

#include "link/link_actions.h"

#include <optional>
#include <vector>

namespace zo {

/// The race of a robot's addresses (RFC 8305): they are tried one after the other, the two
/// families in turn, without waiting for the end of the attempt before. So an address that
/// leads nowhere costs a moment and not the whole attempt.
class AddressRace
{
public:
    using Time = SteadyClock::time_point;

    /// How long one has the course for itself at most, unless it fails earlier.
    static constexpr std::chrono::milliseconds fLead{250};
    static constexpr std::size_t fMostAddresses = 16;

    /// Of the first of `addresses`. The one at their front goes first. In `time` all have their
    /// turn.
    AddressRace(const std::vector<LinkAddress>& addresses, std::chrono::nanoseconds time);

    /// The address whose turn it is, if that has come at `now`. `started` must follow.
    std::optional<LinkAddress> next(Time now);
    void started(ConnectionId connection) { fRunning.push_back(connection); }

    /// Whether `connection` was running. It is out now, and another may start at once.
    bool leave(ConnectionId connection);

    const std::vector<ConnectionId>& running() const { return fRunning; }
    bool isOver() const { return fRunning.empty() && fNext == fAddresses.size(); }
    /// When the next may start: Time::max() after the last.
    Time nextAt() const { return fNext < fAddresses.size() ? fNextAt : Time::max(); }

private:
    const std::vector<LinkAddress> fAddresses;
    std::size_t fNext = 0;
    Time fNextAt = Time::min();
    const std::chrono::nanoseconds fPause; ///< between two starts
    std::vector<ConnectionId> fRunning;    ///< has room for all: `started` cannot fail
};

} // namespace zo
