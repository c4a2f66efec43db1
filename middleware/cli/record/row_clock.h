// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>
#include <string>

/// What the clocks of this machine show at one moment.
struct ClockReading
{
    std::chrono::steady_clock::time_point steady;
    std::chrono::system_clock::time_point wall;
};

/// That of now; the two are read within a millisecond.
ClockReading readClocks();

/// Wall clock times of moments that the steady clock knows. The distance between the two clocks is
/// kept, so that times of rows are as far apart as the answers were. When somebody sets the wall
/// clock ahead, or the machine has slept, times go with it; when it is set back, they go on as if
/// it had not been: no row is older than the one before it. Either is told.
class RowClock
{
public:
    using Time = std::chrono::milliseconds; ///< since the epoch
    using Tell = std::function<void(const std::string&)>;

    explicit RowClock(const ClockReading& now);

    /// The time of `moment`, never before one that was given here.
    Time timeOf(std::chrono::steady_clock::time_point moment, const ClockReading& now,
                const Tell& tell);

    /// What the clocks may differ by without anybody having set one.
    static constexpr std::chrono::milliseconds fSlack{20};

private:
    using Distance = std::chrono::nanoseconds;

    void follow(Distance distance, const Tell& tell);

    Distance fDistance;     ///< from the steady clock to times
    Distance fToldDistance; ///< of the wall clock when it was looked at last
    Time fLast{0};
};
