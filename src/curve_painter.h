// SPDX-License-Identifier: MIT
#pragma once

#include "graph_math.h"

class QPainter;

/// Draws the samples as one line with the painter's pen, 1 px wide. A NaN parts the line. The
/// pixels are those of a path through all their positions: exactly so at device pixel ratio 1;
/// on denser screens a few pixels at the tips of a dense line's turns differ by a shade.
void paintCurve(QPainter& painter, const QList<TimeValue>& samples, const PlotScale& scale);
