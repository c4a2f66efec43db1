// SPDX-License-Identifier: MIT
#pragma once

#include "link/deadline.h"
#include "link/recent_traffic.h"
#include "link/round_trip.h"

#include <atomic>
#include <mutex>

namespace zo {

/// How a link is doing, as its I/O thread tells and every other thread may read at any time.
class LinkPulse
{
public:
    using Time = SteadyClock::time_point;

    void set(Time lastHeard, const RoundTrip& roundTrip)
    {
        fLastHeard = lastHeard;
        fRoundTrip = roundTrip.value();
        fShortestRoundTrip = roundTrip.shortest();
    }

    /// All that has gone over the link until `now`.
    void note(Time now, const TrafficTally& tally)
    {
        const std::lock_guard<std::mutex> lock(fMutex);
        fTraffic.note(now, tally);
    }

    /// When the last byte came.
    Time lastHeard() const { return fLastHeard; }
    RoundTrip::Duration roundTrip() const { return fRoundTrip; }
    RoundTrip::Duration shortestRoundTrip() const { return fShortestRoundTrip; }
    RecentTraffic traffic() const
    {
        const std::lock_guard<std::mutex> lock(fMutex);
        return fTraffic;
    }

private:
    std::atomic<Time> fLastHeard{Time::min()};
    std::atomic<RoundTrip::Duration> fRoundTrip{RoundTrip::Duration(0)};
    std::atomic<RoundTrip::Duration> fShortestRoundTrip{RoundTrip::Duration(0)};
    mutable std::mutex fMutex; ///< guards fTraffic
    RecentTraffic fTraffic;
};

} // namespace zo
