// SPDX-License-Identifier: MIT
#include "network/samples.h"

#include <algorithm>
#include <cmath>

std::optional<double> Samples::quantile(double share) const
{
    if (fTimes.empty())
        return {};
    std::vector<double> sorted = fTimes;
    std::sort(sorted.begin(), sorted.end());
    const auto rank = static_cast<std::size_t>(std::ceil(share * static_cast<double>(count())));
    return sorted[std::max<std::size_t>(rank, 1) - 1];
}
