// SPDX-License-Identifier: MIT
#include "row_clock.h"

#include <kit/quantity.h>

#include <algorithm>

namespace {

using std::chrono::duration_cast;
using std::chrono::milliseconds;
using std::chrono::nanoseconds;

nanoseconds distanceOf(const ClockReading& clocks)
{
    return duration_cast<nanoseconds>(clocks.wall.time_since_epoch()) -
           duration_cast<nanoseconds>(clocks.steady.time_since_epoch());
}

} // namespace

ClockReading readClocks()
{
    using Steady = std::chrono::steady_clock;
    while (true) {
        const auto before = Steady::now();
        const auto wall = std::chrono::system_clock::now();
        const auto after = Steady::now();
        if (after - before < milliseconds(1)) // else the process was held up between the two
            return {before, wall};
    }
}

RowClock::RowClock(const ClockReading& now)
    : fDistance(distanceOf(now)), fToldDistance(distanceOf(now))
{
}

RowClock::Time RowClock::timeOf(std::chrono::steady_clock::time_point moment,
                                const ClockReading& now, const Tell& tell)
{
    follow(distanceOf(now), tell);
    const auto time = duration_cast<Time>(moment.time_since_epoch() + fDistance);
    fLast = std::max(fLast, time);
    return fLast;
}

void RowClock::follow(Distance distance, const Tell& tell)
{
    const Distance step = distance - fToldDistance;
    if (step > fSlack)
        tell("this machine's clock was set ahead by " +
             kit::secondsText(duration_cast<milliseconds>(step)) + " s");
    else if (step < -fSlack)
        tell("this machine's clock was set back by " +
             kit::secondsText(duration_cast<milliseconds>(-step)) +
             " s: times go on as if it had not been");
    else
        return;
    fToldDistance = distance;
    fDistance = std::max(fDistance, distance);
}
