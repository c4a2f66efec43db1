// SPDX-License-Identifier: MIT
#include "link/recent_traffic.h"

namespace zo {

void RecentTraffic::note(Time now, const TrafficTally& tally)
{
    const std::int64_t number = numberOf(now);
    Part& part = fParts[static_cast<std::size_t>(number) % fParts.size()];
    if (part.number != number)
        part = {number, fTally, fTally};
    part.after = tally;
    fTally = tally;
}

TrafficRates RecentTraffic::rates(Time now) const
{
    const std::int64_t oldest = numberOf(now) - fSpan / fPart;
    const std::chrono::duration<double> time = now.time_since_epoch() - oldest * fPart;
    TrafficRates rates;
    for (const Part& part : fParts) {
        if (part.number < oldest)
            continue;
        rates.answers += static_cast<double>(part.after.answers - part.before.answers);
        rates.received += static_cast<double>(part.after.received - part.before.received);
        rates.sent += static_cast<double>(part.after.sent - part.before.sent);
    }
    return {rates.answers / time.count(), rates.received / time.count(), rates.sent / time.count()};
}

} // namespace zo
