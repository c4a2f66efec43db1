// SPDX-License-Identifier: MIT
#pragma once

#include "link/deadline.h"

#include <array>
#include <cstdint>
#include <limits>

namespace zo {

/// What has gone over a link since it was made.
struct TrafficTally
{
    std::uint64_t answers = 0;  ///< to getListData, whole ones
    std::uint64_t received = 0; ///< bytes
    std::uint64_t sent = 0;     ///< bytes
    SteadyClock::time_point newestAnswer = SteadyClock::time_point::min(); ///< when it came
};

/// How much goes over a link now, in units a second.
struct TrafficRates
{
    double answers = 0;
    double received = 0; ///< bytes
    double sent = 0;     ///< bytes
};

/// What has gone over a link lately, in parts of a quarter of a second. Has no lock and no clock of
/// its own.
class RecentTraffic
{
public:
    using Time = SteadyClock::time_point;

    static constexpr std::chrono::seconds fSpan{2};
    static constexpr std::chrono::milliseconds fPart{250};

    /// All that has gone until `now`.
    void note(Time now, const TrafficTally& tally);
    /// Of the last two seconds, and of the part that `now` is in.
    TrafficRates rates(Time now) const;
    /// As it was noted last.
    const TrafficTally& tally() const { return fTally; }

private:
    struct Part
    {
        std::int64_t number = std::numeric_limits<std::int64_t>::min(); ///< since the clock began
        TrafficTally before; ///< it: what had gone until then
        TrafficTally after;  ///< so far
    };

    static std::int64_t numberOf(Time now) { return now.time_since_epoch() / fPart; }

    std::array<Part, fSpan / fPart + 1> fParts;
    TrafficTally fTally;
};

} // namespace zo
