// SPDX-License-Identifier: MIT
#include "graph_math.h"

#include "vector_registers.h"

#include <algorithm>
#include <cmath>

double secondsOf(qint64 milliseconds)
{
    return static_cast<float>(static_cast<float>(milliseconds) / 1000.0);
}

double visibleSpan(int width, double speed)
{
    return static_cast<double>(width) / speed;
}

double unitsPerPixel(const ValueRange& range, int rows)
{
    const double units = (range.top - range.bottom) / rows;
    return units == 0.0 ? 1.0 : units;
}

void pruneSamples(QList<TimeValue>& samples, double cutOff)
{
    // Kept samples gather at the end, so that one cut at the front removes all the others.
    auto kept = samples.size();
    for (auto i = samples.size() - 1; i >= 0; --i) {
        const double time = samples.at(i).first;
        const bool tooOld = time < cutOff;
        const bool outOfOrder = kept < samples.size() && time > samples.at(kept).first;
        if (!tooOld && !outOfOrder)
            samples.swapItemsAt(i, --kept);
    }
    samples.erase(samples.begin(), samples.begin() + kept);
}

void setSamplesBack(QList<TimeValue>& samples, double seconds)
{
    for (TimeValue& sample : samples)
        sample.first -= seconds;
}

void includeSamples(ValueRange& range, const QList<TimeValue>& samples)
{
    releaseUpperHalves();
    ValueRange found = range; // not a reference: it need not be stored after each sample
    for (const auto& [time, value] : samples) {
        if (!std::isfinite(value))
            continue;
        found.bottom = std::min(value, found.bottom);
        found.top = std::max(value, found.top);
    }
    range = found;
}
