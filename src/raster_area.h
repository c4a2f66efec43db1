// SPDX-License-Identifier: MIT
#pragma once

#include <QPoint>
#include <QRect>

#include <optional>

class QImage;
class QPainter;

/// The part of a 32-bit raster that a painter reaches, for changing its pixels between the
/// painter's own calls.
struct RasterArea
{
    QImage* image; ///< RGB32 or premultiplied ARGB32; the painter's device holds it
    QPoint origin; ///< px of the image, where the painter's (0, 0) lies
    QRect visible; ///< px of the painter; what its clips leave of the image, maybe nothing
};

/// None where the painter's pixels are others than the image's, moved by whole pixels, and where
/// its clips are more than one rectangle.
std::optional<RasterArea> rasterArea(const QPainter& painter);
