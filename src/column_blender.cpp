// SPDX-License-Identifier: MIT
#include "column_blender.h"

#include <QPainter>

#include <algorithm>
#include <utility>

namespace {

/// Whether the painter blends opaquely, one leg after the other, lines of 1 px in one colour.
bool drawsPlainLegs(const QPainter& painter)
{
    const QPen& pen = painter.pen();
    return painter.testRenderHint(QPainter::Antialiasing) && painter.opacity() == 1 &&
           painter.compositionMode() == QPainter::CompositionMode_SourceOver && pen.widthF() == 1 &&
           pen.style() == Qt::SolidLine && pen.brush().style() == Qt::SolidPattern;
}

} // namespace

std::optional<ColumnBlender> ColumnBlender::forPainter(const QPainter& painter)
{
    if (!drawsPlainLegs(painter))
        return {};
    const std::optional<RasterArea> area = rasterArea(painter);
    if (!area)
        return {};
    LegBlends blends(painter, area->image->format());
    if (!blends.areKnown())
        return {};
    return ColumnBlender(*area, std::move(blends));
}

ColumnBlender::ColumnBlender(const RasterArea& area, LegBlends blends)
    : fArea(area),
      fBlends(std::move(blends)),
      fPasses(static_cast<std::size_t>(area.visible.height()) + 1)
{
}

void ColumnBlender::blend(int column, const int* first, const int* end)
{
    if (column < fArea.visible.left() || column - 1 > fArea.visible.right())
        return;
    std::size_t row = xVisibleRow(*first);
    std::size_t top = row;
    std::size_t bottom = row;
    for (const int* point = first + 1; point != end; ++point) {
        const std::size_t next = xVisibleRow(*point);
        ++fPasses[std::min(row, next)];
        --fPasses[std::max(row, next)];
        top = std::min(top, next);
        bottom = std::max(bottom, next);
        row = next;
    }
    if (top != bottom)
        xBlendRows(column, top, bottom);
}

/// The row counted from the first visible one; rows out of sight are moved to the edges.
std::size_t ColumnBlender::xVisibleRow(int row) const
{
    const int top = fArea.visible.top();
    return static_cast<std::size_t>(std::clamp(row, top, top + fArea.visible.height()) - top);
}

/// Blends the rows from `begin` up to `end`, and forgets their passes.
void ColumnBlender::xBlendRows(int column, std::size_t begin, std::size_t end)
{
    const bool leftShows = column > fArea.visible.left();
    const bool rightShows = column <= fArea.visible.right();
    const QPoint top = fArea.origin + QPoint(column, fArea.visible.top());
    const auto stride = static_cast<std::size_t>(fArea.image->bytesPerLine());
    uchar* line = fArea.image->bits() + stride * (static_cast<std::size_t>(top.y()) + begin);
    int passes = 0;
    for (std::size_t row = begin; row < end; ++row, line += stride) {
        passes += std::exchange(fPasses[row], 0);
        quint32* right = reinterpret_cast<quint32*>(line) + top.x();
        if (passes > 0 && leftShows)
            right[-1] = fBlends.blended(right[-1], LegBlends::Left, passes);
        if (passes > 0 && rightShows)
            right[0] = fBlends.blended(right[0], LegBlends::Right, passes);
    }
    fPasses[end] = 0;
}
