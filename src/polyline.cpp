// SPDX-License-Identifier: MIT
#include "polyline.h"

#include <QPainter>

#include <algorithm>

namespace {

/// Filling an outline takes more than linear time, so that a line is cut after some points.
constexpr std::size_t maxPiece = 32;

/// Points of one column from which on blending it by itself is faster than drawing it.
constexpr std::size_t denseColumn = 9;

/// Drops each row on the way from its predecessor to its successor, and each equal to its
/// predecessor. Up and down one upright line at width 1, every leg blends its rows once more;
/// the legs that remain blend the same rows as often. Returns the new end.
int* keepTurns(int* rows, const int* end)
{
    int* kept = rows;
    for (const int* next = rows; next != end; ++next) {
        const int row = *next;
        if (kept - rows > 0 && kept[-1] == row)
            continue;
        const bool onTheWay = kept - rows > 1 && (kept[-2] < kept[-1]) == (kept[-1] < row);
        *(onTheWay ? kept - 1 : kept++) = row;
    }
    return kept;
}

/// Drops all but the first, the last and the two outermost rows: enough where a line is filled
/// as one area, in which nothing shows how often it was passed. Returns the new end.
int* keepExtent(int* rows, int* end)
{
    constexpr int kept = 4;
    if (end - rows > kept) {
        const auto [lowest, highest] = std::minmax_element(rows, end);
        const bool rises = rows[0] < end[-1];
        const int outermost[] = {*lowest, *highest};
        rows[3] = end[-1];
        rows[1] = outermost[rises ? 0 : 1];
        rows[2] = outermost[rises ? 1 : 0];
        end = rows + kept;
    }
    return keepTurns(rows, end);
}

} // namespace

Polyline::Polyline(QPainter& painter, std::size_t points)
    : fPainter(painter),
      // A pen wider than one device pixel is filled as the outline of the whole line.
      fFillsOutline(painter.deviceTransform().m11() > 1),
      fIsUpright(painter.deviceTransform().type() <= QTransform::TxTranslate)
{
    fRows.reserve(points);
}

void Polyline::paint()
{
    if (fRows.size() > 1) {
        if (!fFillsOutline && xIsDense() && xMakeBlender())
            xPaintBlended();
        else
            xPaintColumns();
    }
    fColumns.clear();
    fRows.clear();
}

bool Polyline::xIsDense() const
{
    for (std::size_t column = 0; column < fColumns.size(); ++column) {
        if (xEndOf(column) - fColumns[column].begin >= denseColumn)
            return true;
    }
    return false;
}

/// Makes it the first time. Tells whether there is one for this painter.
bool Polyline::xMakeBlender()
{
    if (!fTriedBlender)
        fBlender = ColumnBlender::forPainter(fPainter);
    fTriedBlender = true;
    return fBlender.has_value();
}

void Polyline::xPaintColumns()
{
    for (std::size_t column = 0; column < fColumns.size(); ++column) {
        xAppend(fColumns[column].x, &fRows[fColumns[column].begin], fRows.data() + xEndOf(column));
        if (fFillsOutline && fDrawn.size() >= maxPiece) {
            const QPointF last = fDrawn.back();
            xDraw();
            fDrawn.push_back(last);
        }
    }
    xDraw();
}

/// The first and the last leg have a cap each, unless the line is closed, and are drawn by
/// themselves. A last leg without length has the cap there, and shows nothing.
void Polyline::xPaintBlended()
{
    std::size_t second = 0;
    std::size_t end = fRows.size();
    const QPointF first = xPoint(0);
    const QPointF last = xPoint(end - 1);
    const bool closed = first == last;
    if (!closed) {
        while (xPoint(second) == first)
            ++second;
        while (xPoint(end - 1) == last)
            --end;
        if (second >= end) { // one leg
            xPaintColumns();
            return;
        }
        fDrawn = {first, xPoint(second), xPoint(second)};
        xDraw();
    }
    const QPointF lastButOne = xPoint(end - 1);
    const QPen pen = fPainter.pen();
    QPen uncapped = pen;
    uncapped.setCapStyle(Qt::FlatCap);
    fPainter.setPen(uncapped);
    xPaintUncapped(second, end);
    fPainter.setPen(pen);
    if (!closed) {
        fDrawn = {lastButOne, lastButOne, last};
        xDraw();
    }
}

/// The points of `fRows` from `first` up to `end`.
void Polyline::xPaintUncapped(std::size_t first, std::size_t end)
{
    for (std::size_t column = 0; column < fColumns.size(); ++column) {
        const int x = fColumns[column].x;
        int* const rows = fRows.data() + std::max(first, fColumns[column].begin);
        int* const rowsEnd = fRows.data() + std::min(end, xEndOf(column));
        if (rowsEnd - rows < static_cast<std::ptrdiff_t>(denseColumn)) {
            if (rows < rowsEnd)
                xAppend(x, rows, rowsEnd);
            continue;
        }
        fDrawn.emplace_back(x, *rows);
        xDraw();
        fBlender->blend(x, rows, rowsEnd);
        fDrawn.emplace_back(x, rowsEnd[-1]);
    }
    xDraw();
}

QPointF Polyline::xPoint(std::size_t place) const
{
    const auto after = std::upper_bound(
        fColumns.cbegin(), fColumns.cend(), place,
        [](std::size_t wanted, const Column& column) { return wanted < column.begin; });
    return {static_cast<double>((after - 1)->x), static_cast<double>(fRows[place])};
}

std::size_t Polyline::xEndOf(std::size_t column) const
{
    return column + 1 < fColumns.size() ? fColumns[column + 1].begin : fRows.size();
}

void Polyline::xAppend(int x, int* first, int* end)
{
    int* keptEnd;
    if (fFillsOutline)
        keptEnd = keepExtent(first, end);
    else if (fIsUpright)
        keptEnd = keepTurns(first, end);
    else
        keptEnd = std::unique(first, end);
    for (const int* row = first; row != keptEnd; ++row)
        fDrawn.emplace_back(x, *row);
}

/// Draws what is to be drawn, if that is a line, and forgets it.
void Polyline::xDraw()
{
    if (fDrawn.size() > 1)
        fPainter.drawPolyline(fDrawn.data(), static_cast<int>(fDrawn.size()));
    fDrawn.clear();
}
