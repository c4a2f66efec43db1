// SPDX-License-Identifier: MIT
#include "curve_painter.h"

#include "polyline.h"
#include "vector_registers.h"

#include <cmath>

void paintCurve(QPainter& painter, const QList<TimeValue>& samples, const PlotScale& scale)
{
    Polyline line(painter, static_cast<std::size_t>(samples.size()));
    releaseUpperHalves();
    for (const TimeValue& sample : samples) {
        if (std::isnan(sample.second))
            line.paint();
        else
            line.add(scale.position(sample));
    }
    line.paint();
}
