#include "curve_painter.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

using Rows = std::vector<int>;

/// Drops each row on the way from its predecessor to its successor, and each equal to its
/// predecessor. Up and down one upright line at width 1, every leg blends its rows once more;
/// the legs that remain blend the same rows as often.
void keepTurns(Rows& rows)
{
    std::size_t kept = 0;
    for (const int row : rows) {
        if (kept > 0 && rows[kept - 1] == row)
            continue;
        const bool onTheWay =
            kept > 1 && (rows[kept - 2] < rows[kept - 1]) == (rows[kept - 1] < row);
        rows[onTheWay ? kept - 1 : kept++] = row;
    }
    rows.resize(kept);
}

/// Drops all but the first, the last and the two outermost rows: enough where a line is filled
/// as one area, in which nothing shows how often it was passed.
void keepExtent(Rows& rows)
{
    const auto [lowest, highest] = std::minmax_element(rows.cbegin(), rows.cend());
    if (rows.front() < rows.back())
        rows = {rows.front(), *lowest, *highest, rows.back()};
    else
        rows = {rows.front(), *highest, *lowest, rows.back()};
    keepTurns(rows);
}

/// The points of one line, gathered column by column so that the many samples of a dense curve
/// become a few points each column.
class Polyline
{
public:
    explicit Polyline(QPainter& painter)
        : fPainter(painter),
          // A pen wider than one device pixel is filled as the outline of the whole line.
          fFillsOutline(painter.deviceTransform().m11() > 1)
    {
    }

    void add(const QPoint& point)
    {
        if (point.x() != fColumn)
            xEndColumn();
        fColumn = point.x();
        fRows.push_back(point.y());
    }

    void paint()
    {
        xEndColumn();
        if (fPoints.size() > 1)
            fPainter.drawPolyline(fPoints.data(), static_cast<int>(fPoints.size()));
        fPoints.clear();
    }

private:
    void xEndColumn()
    {
        if (fRows.size() > 1)
            fFillsOutline ? keepExtent(fRows) : keepTurns(fRows);
        for (const int row : fRows)
            fPoints.emplace_back(fColumn, row);
        fRows.clear();
        if (fFillsOutline && fPoints.size() >= fMaxPiece) {
            fPainter.drawPolyline(fPoints.data(), static_cast<int>(fPoints.size()));
            fPoints = {fPoints.back()};
        }
    }

    /// Filling an outline takes more than linear time, so that a line is cut after some points.
    static constexpr std::size_t fMaxPiece = 32;

    QPainter& fPainter;
    bool fFillsOutline;
    int fColumn = 0;
    Rows fRows;
    std::vector<QPointF> fPoints;
};

} // namespace

void paintCurve(QPainter& painter, const QList<TimeValue>& samples, const PlotScale& scale)
{
    Polyline line(painter);
    for (const TimeValue& sample : samples) {
        if (std::isnan(sample.second))
            line.paint();
        else
            line.add(scale.position(sample));
    }
    line.paint();
}
