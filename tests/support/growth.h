// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <ctime>

/// How the cost of work grows with its size, for tests of work that is to stay linear. Not by a
/// limit of time, which a slow machine misses and a fast one always meets.

/// Processor time of the program since its start, in seconds.
inline double processorSeconds()
{
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

/// The same of this thread alone.
inline double secondsOfThisThread()
{
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

/// How many times as much four times the work costs: about 4 when it is linear, about 16 when it
/// is quadratic. `secondsFor(size)` does the work once and returns what it took; the least of
/// several tries counts, as other work on the machine only ever makes one slower.
template <class SecondsFor>
double growthAtFourTimes(int size, SecondsFor secondsFor)
{
    const auto least = [&](int of) {
        double seconds = secondsFor(of);
        for (int more = 0; more < 4; ++more)
            seconds = std::min(seconds, secondsFor(of));
        return seconds;
    };
    const double once = least(size);
    return least(4 * size) / std::max(once, 1e-4);
}

/// Between linear, with some extra for caches, and quadratic.
constexpr double mostLinearGrowth = 9;
