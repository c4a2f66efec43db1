// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <chrono>

namespace zo {

/// The time from a request to the first byte of its reply, smoothed over the last eight or so.
class RoundTrip
{
public:
    using Duration = std::chrono::microseconds;

    /// A longer one is a pause of the robot or the network, and no measure of the way.
    static constexpr Duration fLongest = std::chrono::seconds(1);

    /// So many are looked back upon for the shortest one, at least.
    static constexpr int fMemory = 64;

    void add(std::chrono::nanoseconds sample)
    {
        const Duration bounded =
            std::min(std::chrono::duration_cast<Duration>(sample), Duration(fLongest));
        fValue = fIsKnown ? fValue + (bounded - fValue) / 8 : bounded;
        fIsKnown = true;
        if (++fCount % fMemory == 0) {
            fShortestBefore = fShortestNow;
            fShortestNow = fLongest;
        }
        fShortestNow = std::min(fShortestNow, bounded);
    }
    bool isKnown() const { return fIsKnown; }
    /// 0 before the first.
    Duration value() const { return fValue; }
    /// Of the last ones: what the way itself takes.
    Duration shortest() const { return std::min(fShortestNow, fShortestBefore); }

private:
    bool fIsKnown = false;
    Duration fValue{0};
    int fCount = 0;
    Duration fShortestNow = fLongest;
    Duration fShortestBefore = fLongest;
};

} // namespace zo
