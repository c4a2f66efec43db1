// SPDX-License-Identifier: MIT
#pragma once

#include "column_blender.h"

#include <QPoint>
#include <QPointF>

#include <cstddef>
#include <optional>
#include <vector>

class QPainter;

/// A line through whole pixels, drawn with a painter's pen, 1 px wide: the pixels are those of
/// one path through all its points, but for a few at the tips of turns where the pen is wider
/// than one device pixel. Made for lines with many points in each column.
class Polyline
{
public:
    /// `points` is how many points to expect.
    Polyline(QPainter& painter, std::size_t points);

    void add(const QPoint& point)
    {
        if (fColumns.empty() || fColumns.back().x != point.x())
            fColumns.push_back({point.x(), fRows.size()});
        fRows.push_back(point.y());
    }

    /// Draws the line, and begins a new one.
    void paint();

private:
    struct Column
    {
        int x;
        std::size_t begin; ///< of its points, in fRows
    };

    bool xIsDense() const;
    bool xMakeBlender();
    void xPaintColumns();
    void xPaintBlended();
    void xPaintUncapped(std::size_t first, std::size_t end);
    QPointF xPoint(std::size_t place) const;
    std::size_t xEndOf(std::size_t column) const;
    void xAppend(int x, int* first, int* end);
    void xDraw();

    QPainter& fPainter;
    bool fFillsOutline;
    bool fIsUpright;                       ///< columns of points are columns of pixels
    std::optional<ColumnBlender> fBlender; ///< made when first needed
    bool fTriedBlender = false;
    std::vector<Column> fColumns;
    std::vector<int> fRows;      ///< of all points
    std::vector<QPointF> fDrawn; ///< what is drawn next
};
