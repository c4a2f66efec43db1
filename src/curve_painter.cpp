#include "curve_painter.h"

#include <QPainter>
#include <QVector>

#include <cmath>

namespace {

/// Whether b lies between a and c on one upright line: drawing a to b to c blends the same rows
/// as drawing a to c.
bool isOnTheWay(const QPointF& a, const QPointF& b, const QPointF& c)
{
    return a.x() == b.x() && b.x() == c.x() && (a.y() < b.y()) == (b.y() < c.y());
}

/// The points of one line, without those that change nothing.
class Polyline
{
public:
    explicit Polyline(int expectedPoints) { fPoints.reserve(expectedPoints); }

    void add(const QPointF& point)
    {
        const int count = fPoints.size();
        if (count > 0 && fPoints.at(count - 1) == point)
            return;
        if (count > 1 && isOnTheWay(fPoints.at(count - 2), fPoints.at(count - 1), point))
            fPoints[count - 1] = point;
        else
            fPoints.append(point);
    }

    void paint(QPainter& painter)
    {
        if (fPoints.size() > 1)
            painter.drawPolyline(fPoints.constData(), fPoints.size());
        fPoints.clear();
    }

private:
    QVector<QPointF> fPoints;
};

} // namespace

void paintCurve(QPainter& painter, const QList<TimeValue>& samples, const PlotScale& scale)
{
    Polyline line(samples.size());
    for (const TimeValue& sample : samples) {
        if (std::isnan(sample.value))
            line.paint(painter);
        else
            line.add(scale.position(sample));
    }
    line.paint(painter);
}
