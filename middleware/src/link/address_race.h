// SPDX-License-Identifier: MIT
#pragma once

#include "link/link_actions.h"

#include <optional>
#include <vector>

namespace zo {

/// The race of the addresses of a robot, or of several nodes (RFC 8305): they are tried one after
/// the other, the two families in turn, without waiting for the end of the attempt before. So an
/// address that leads nowhere costs a moment and not the whole attempt.
class AddressRace
{
public:
    using Time = SteadyClock::time_point;

    /// How long one has the course for itself at most, unless it fails earlier.
    static constexpr std::chrono::milliseconds fLead{250};
    static constexpr std::size_t fMostAddresses = 16;

    struct Entry
    {
        NodePtr node;
        LinkAddress address;
        std::size_t turn; ///< among those of its node
    };
    struct Running
    {
        ConnectionId connection;
        NodePtr node;
    };

    /// In `time` all have their turn.
    explicit AddressRace(std::chrono::nanoseconds time) : fTime(time) {}

    /// Of the first of `addresses`, all of `node`. The one at their front goes first. Those of
    /// several nodes take turns, so that one with many leaves the others room.
    void add(const NodePtr& node, const std::vector<LinkAddress>& addresses);

    /// The one whose turn it is, if that has come at `now`. `started` must follow.
    std::optional<Entry> next(Time now);
    void started(ConnectionId connection, const NodePtr& node)
    {
        fRunning.push_back({connection, node});
    }

    /// The node of `connection`, if it was running. It is out now, and another may start at once.
    NodePtr leave(ConnectionId connection);

    const std::vector<Running>& running() const { return fRunning; }
    bool isOver() const { return fRunning.empty() && fNext == fEntries.size(); }
    /// When the next may start: Time::max() after the last.
    Time nextAt() const { return fNext < fEntries.size() ? fNextAt : Time::max(); }

private:
    const std::chrono::nanoseconds fTime;
    std::vector<Entry> fEntries;
    std::size_t fNext = 0;
    Time fNextAt = Time::min();
    std::vector<Running> fRunning; ///< has room for all: `started` cannot fail
};

} // namespace zo
