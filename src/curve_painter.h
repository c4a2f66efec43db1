#pragma once

#include "graph_math.h"

class QPainter;

/// Draws the samples as one line with the painter's pen, in the pixels that a path through all
/// their positions would give. A NaN parts the line.
void paintCurve(QPainter& painter, const QList<TimeValue>& samples, const PlotScale& scale);
