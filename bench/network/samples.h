// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <optional>
#include <vector>

/// Times that were measured, in ms.
class Samples
{
public:
    void add(std::chrono::nanoseconds time)
    {
        fTimes.push_back(std::chrono::duration<double, std::milli>(time).count());
    }
    void clear() { fTimes.clear(); }
    int count() const { return static_cast<int>(fTimes.size()); }

    // None when there are no samples.
    std::optional<double> longest() const { return quantile(1); }
    /// The one that so many of all do not exceed: 0.5, the median; 0.99; ...
    std::optional<double> quantile(double share) const;

private:
    std::vector<double> fTimes;
};
