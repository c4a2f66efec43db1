// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>

namespace zo {

/// A time that varies, and by how much: both smoothed over the last eight samples or so, as the
/// senders of TCP do it (RFC 6298).
class SmoothedTime
{
public:
    using Duration = std::chrono::nanoseconds;

    void add(Duration sample)
    {
        if (!fIsKnown) {
            fIsKnown = true;
            fMean = sample;
            fDeviation = sample / 4;
            return;
        }
        const Duration error = sample - fMean;
        fMean += error / 8;
        fDeviation += (std::chrono::abs(error) - fDeviation) / 4;
    }

    bool isKnown() const { return fIsKnown; }
    /// 0 before the first sample, as the deviation is.
    Duration mean() const { return fMean; }
    /// From the mean, in the mean.
    Duration deviation() const { return fDeviation; }

private:
    bool fIsKnown = false;
    Duration fMean{0};
    Duration fDeviation{0};
};

} // namespace zo
