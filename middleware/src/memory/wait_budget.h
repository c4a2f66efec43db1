// SPDX-License-Identifier: MIT
#pragma once

#include "link/deadline.h"

#include <algorithm>
#include <deque>

namespace zo {

/// How long one thread has waited lately, all lists together: a window's thread must not stand
/// still for more than a tenth of its time.
class WaitBudget
{
public:
    using Time = SteadyClock::time_point;
    using Duration = SteadyClock::duration;

    static constexpr std::chrono::milliseconds fMost{10}; ///< in ...
    static constexpr std::chrono::milliseconds fSpan{100};

    /// The calling thread's.
    static WaitBudget& ofThread()
    {
        thread_local WaitBudget budget;
        return budget;
    }

    /// How much of `wanted` may be waited from `now` on.
    Duration left(Time now, Duration wanted)
    {
        while (!fWaits.empty() && fWaits.front().end + fSpan <= now)
            fWaits.pop_front();
        Duration spent{0};
        for (const Wait& wait : fWaits)
            spent += wait.end - wait.begin;
        return std::clamp<Duration>(fMost - spent, Duration(0), wanted);
    }
    void spend(Time begin, Time end) { fWaits.push_back({begin, end}); }

private:
    struct Wait
    {
        Time begin;
        Time end;
    };

    std::deque<Wait> fWaits;
};

} // namespace zo
