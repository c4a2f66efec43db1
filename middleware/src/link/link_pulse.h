// SPDX-License-Identifier: MIT
#pragma once

#include "link/deadline.h"
#include "link/recent_traffic.h"
#include "link/round_trip.h"

#include <zo/link_status.h>

#include <algorithm>
#include <atomic>
#include <mutex>
#include <optional>

namespace zo {

/// How a link is doing, as its I/O thread tells and every other thread may read at any time.
class LinkPulse
{
public:
    using Time = SteadyClock::time_point;

    void set(ZoLinkStatus::Step step, Time lastHeard, const RoundTrip& roundTrip)
    {
        fStep = step;
        fLastHeard = lastHeard;
        fRoundTrip = roundTrip.value();
        fIsRoundTripKnown = roundTrip.isKnown();
        fShortestRoundTrip = roundTrip.shortest();
    }

    /// All that has gone over the link until `now`.
    void note(Time now, const TrafficTally& tally)
    {
        const std::lock_guard<std::mutex> lock(fMutex);
        fTraffic.note(now, tally);
    }

    /// What an attempt to connect is at.
    ZoLinkStatus::Step step() const { return fStep; }
    /// When the last byte came.
    Time lastHeard() const { return fLastHeard; }
    /// 0 before the first.
    RoundTrip::Duration roundTrip() const { return fRoundTrip; }
    /// At least a microsecond: a thread that sleeps between sending and looking at the clock
    /// measures none at all.
    std::optional<RoundTrip::Duration> knownRoundTrip() const
    {
        if (!fIsRoundTripKnown)
            return std::nullopt;
        return std::max(fRoundTrip.load(), RoundTrip::Duration(1));
    }
    RoundTrip::Duration shortestRoundTrip() const { return fShortestRoundTrip; }
    RecentTraffic traffic() const
    {
        const std::lock_guard<std::mutex> lock(fMutex);
        return fTraffic;
    }

private:
    std::atomic<ZoLinkStatus::Step> fStep{ZoLinkStatus::Step::None};
    std::atomic<Time> fLastHeard{Time::min()};
    std::atomic<RoundTrip::Duration> fRoundTrip{RoundTrip::Duration(0)};
    std::atomic<bool> fIsRoundTripKnown{false};
    std::atomic<RoundTrip::Duration> fShortestRoundTrip{RoundTrip::Duration(0)};
    mutable std::mutex fMutex; ///< guards fTraffic
    RecentTraffic fTraffic;
};

} // namespace zo
