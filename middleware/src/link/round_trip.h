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

    void add(std::chrono::nanoseconds sample)
    {
        const Duration bounded =
            std::min(std::chrono::duration_cast<Duration>(sample), Duration(fLongest));
        fValue = fIsKnown ? fValue + (bounded - fValue) / 8 : bounded;
        fIsKnown = true;
    }
    /// 0 before the first.
    Duration value() const { return fValue; }

private:
    bool fIsKnown = false;
    Duration fValue{0};
};

} // namespace zo
