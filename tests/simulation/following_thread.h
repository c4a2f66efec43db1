// SPDX-License-Identifier: MIT
#pragma once

#include "simulation/violation.h"

#include <memory/wait_budget.h>

#include <algorithm>
#include <chrono>
#include <deque>
#include <numeric>
#include <string>
#include <utility>

/// A thread of callers, which waits for one of its lists at a time, and not for long. Throws
/// Violation.
class FollowingThread
{
public:
    using Time = zo::WaitBudget::Time;
    using Duration = zo::WaitBudget::Duration;

    bool isWaiting() const { return fIsWaiting; }
    /// How much of `wanted` a brief wait may take.
    Duration left(Time now, Duration wanted) { return fBudget.left(now, wanted); }
    void beginWait(Time now)
    {
        fIsWaiting = true;
        fSince = now;
    }
    /// `isBrief`: it was one of those that must not add up.
    void endWait(Time now, bool isBrief)
    {
        if (!std::exchange(fIsWaiting, false) || !isBrief)
            return;
        fBudget.spend(fSince, now);
        while (!fWaits.empty() && fWaits.front().first <= now - fSpan)
            fWaits.pop_front();
        fWaits.emplace_back(now, now - fSince);
        const auto sum =
            std::accumulate(fWaits.begin(), fWaits.end(), Duration(0),
                            [](Duration all, const auto& one) { return all + one.second; });
        require(sum <= fMost, "a thread waits for a tenth of its time",
                [&] { return lengthText(sum); });
    }

private:
    static constexpr std::chrono::milliseconds fMost{10}; ///< in ...
    static constexpr std::chrono::milliseconds fSpan{100};

    zo::WaitBudget fBudget;
    std::deque<std::pair<Time, Duration>> fWaits; ///< ends and lengths
    bool fIsWaiting = false;
    Time fSince{};
};
