// SPDX-License-Identifier: MIT
#include "raster_area.h"

#include <QImage>
#include <QPaintEngine>
#include <QPainter>
#include <QRegion>

#include <cmath>

namespace {

/// The image that a painter of the raster engine draws into, for a widget the window's.
QImage* imageBehind(const QPainter& painter)
{
    const QPaintEngine* engine = painter.paintEngine();
    if (!engine || engine->type() != QPaintEngine::Raster)
        return nullptr;
    auto* image = dynamic_cast<QImage*>(engine->paintDevice());
    const bool is32Bit = image && (image->format() == QImage::Format_RGB32 ||
                                   image->format() == QImage::Format_ARGB32_Premultiplied);
    // Writing to a shared image would part it from the one that the painter draws into.
    return is32Bit && image->isDetached() ? image : nullptr;
}

std::optional<QPoint> wholePixels(const QTransform& transform)
{
    constexpr double highest = 1 << 20; // far beyond any window, far within int
    const double x = transform.dx();
    const double y = transform.dy();
    const bool whole = std::trunc(x) == x && std::trunc(y) == y;
    if (transform.type() > QTransform::TxTranslate || !whole || std::abs(x) > highest ||
        std::abs(y) > highest)
        return {};
    return QPoint(static_cast<int>(x), static_cast<int>(y));
}

} // namespace

std::optional<RasterArea> rasterArea(const QPainter& painter)
{
    QImage* image = imageBehind(painter);
    const std::optional<QPoint> origin = wholePixels(painter.deviceTransform());
    if (!image || !origin)
        return {};
    QRegion visible = image->rect();
    const QRegion systemClip = painter.paintEngine()->systemClip();
    if (!systemClip.isEmpty())
        visible &= systemClip;
    visible.translate(-*origin);
    if (painter.hasClipping()) {
        const QRegion clip = painter.clipRegion();
        if (painter.clipBoundingRect() != clip.boundingRect())
            return {}; // its edges lie within pixels
        visible &= clip;
    }
    if (visible.rectCount() > 1)
        return {};
    return RasterArea{image, *origin, visible.boundingRect()};
}
