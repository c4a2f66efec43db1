// SPDX-License-Identifier: MIT
#include "graph.h"

#include "curve_painter.h"
#include "graph_clock.h"
#include "model.h"
#include "shown_color.h"

#include <QFontInfo>
#include <QPainter>
#include <QPainterPath>
#include <QPen>

const QColor Graph::fDefaultColor(70, 188, 236);

namespace {

/// Counts the steps of all graphs of the process together; true on every tenth.
bool isPruningStep()
{
    static int steps = 0;
    if (++steps <= 9)
        return false;
    steps = 0;
    return true;
}

QPen penOf(const QColor& color)
{
    return {QBrush(color), 1.0, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
}

/// The painter's font size, also where the font was made by a size in pixels.
int pointSize(const QPainter& painter)
{
    const int points = painter.font().pointSize();
    return points > 0 ? points : QFontInfo(painter.font()).pointSize();
}

} // namespace

Graph::Graph(const boost::shared_ptr<const Model>& model, QWidget* parent)
    : QWidget(parent), fModel(model)
{
}

Graph::~Graph()
{
    delete fTimer;
    delete fClock;
}

void Graph::init()
{
    // The fresh clock goes on where the old one was: samples that are there keep their times.
    const GraphClock clock = fClock ? *fClock : GraphClock();
    delete fTimer;
    delete fClock;
    fTimer = new QTimer;
    fTimer->setInterval(fInterval);
    fClock = new GraphClock(clock);
    connect(fTimer, SIGNAL(timeout()), this, SLOT(xUpdateTime()));
    fTimer->start();
}

void Graph::addSTMValue(const QString& name, Color* color)
{
    if (!fSeries.contains(name))
        fSeries.insert(name, {color, {}});
}

void Graph::deleteSTMValue(const QString& name)
{
    fSeries.remove(name);
}

void Graph::clear()
{
    fSeries.clear();
}

void Graph::setPlay(bool pPlay)
{
    if (!fTimer)
        return;
    if (pPlay) {
        fTimer->start();
    } else {
        xCleanup();
        fTimer->stop();
    }
}

void Graph::xUpdateTime()
{
    const boost::shared_ptr<const Model> model = fModel.lock();
    if (!model)
        return;
    const bool pruning = isPruningStep();
    xSetTimesBack();
    const double cutOff = xNow() - visibleSpan(width(), fSpeed);
    xReadNumbers(*model);
    auto number = fNumbers.cbegin();
    for (auto series = fSeries.begin(); series != fSeries.end(); ++number) {
        if (!*number) {
            series = fSeries.erase(series);
            continue;
        }
        QList<TimeValue>& samples = series.value().second;
        if (pruning)
            pruneSamples(samples, cutOff);
        samples.append({xNow(), **number});
        ++series;
    }
    update();
}

/// The value of each curve's key, all in one batch of linear cost.
void Graph::xReadNumbers(const Model& model)
{
    fAliases.resize(static_cast<std::size_t>(fSeries.size()));
    auto alias = fAliases.begin();
    for (auto series = fSeries.keyBegin(); series != fSeries.keyEnd(); ++series) {
        const QByteArray text = series->toLatin1();
        (alias++)->assign(text.constData(), static_cast<std::size_t>(text.size()));
    }
    model.getDoubleVals(fAliases, fByAlias, fNumbers);
}

void Graph::xSetScaleFromAutoScale()
{
    ValueRange range{fMaxYPossible, fMinYPossible};
    const auto& allSeries = fSeries;
    for (const auto& series : allSeries)
        includeSamples(range, series.second);
    if (range.top == range.bottom) {
        range.top += fScaleMargin;
        range.bottom -= fScaleMargin;
    }
    fMinY = range.bottom;
    fMaxY = range.top;
}

void Graph::xCleanup()
{
    for (auto& series : fSeries)
        series.second.clear();
}

double Graph::xNow() const
{
    return secondsOf(fClock ? fClock->elapsed() : 0);
}

/// Keeps the readings of the clock small. As everything goes back together, nothing is seen of it.
void Graph::xSetTimesBack()
{
    const qint64 seconds = fClock ? fClock->setBack() : 0;
    if (seconds == 0)
        return;
    for (auto& series : fSeries)
        setSamplesBack(series.second, static_cast<double>(seconds));
}

void Graph::paintEvent(QPaintEvent*)
{
    if (!fTimer || !fTimer->isActive() || height() == fMargin)
        return;
    xSetTimesBack(); // here, too, as a graph whose model is gone is painted, but not sampled
    QPainter painter(this);
    // Changes no pixel, but tells the raster engine that the clip is one rectangle: it then
    // blends lines straight into the image, in half the time.
    painter.setClipRect(rect());
    constexpr int topMargin = fMargin / 2;
    painter.translate(0, topMargin);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(penOf(fDefaultColor));
    if (fAutoscale)
        xSetScaleFromAutoScale();
    else if (fMinY == fMaxY)
        return;
    xPaintPlot(painter);
    painter.translate(0, -topMargin);
}

void Graph::xPaintPlot(QPainter& painter) const
{
    // One moment for the whole picture: all curves are cut at the same right edge.
    const PlotScale scale{width(), xNow(), fSpeed, fMaxY,
                          unitsPerPixel({fMinY, fMaxY}, height() - fMargin)};
    for (const auto& series : fSeries) {
        painter.setPen(penOf(series.first ? shownColor(*series.first) : fDefaultColor));
        paintCurve(painter, series.second, scale);
    }
    xPaintFrame(painter, scale);
}

void Graph::xPaintFrame(QPainter& painter, const PlotScale& scale) const
{
    painter.setPen(penOf(QColor(0, 0, 0)));
    const double labelWidth = width() - fMargin;
    const double labelHeight = 2.0 * pointSize(painter);
    const auto paintLabel = [&](double top, const QString& text) {
        painter.drawText(QRectF(fMargin, top, labelWidth, labelHeight), Qt::AlignLeft, text);
    };
    paintLabel(fMargin, QString().setNum(fMaxY, 'g', fScaleAcc));
    paintLabel(height() - fMargin - labelHeight, QString().setNum(fMinY, 'g', fScaleAcc));

    const int zeroRow = scale.row(0);
    if (zeroRow == 0)
        return; // neither zero line nor frame: the look that a range ending at zero has
    paintLabel(zeroRow - labelHeight, QStringLiteral("0"));
    QPainterPath frame;
    frame.lineTo(0, height() - fMargin);
    frame.moveTo(0, zeroRow);
    frame.lineTo(width(), zeroRow);
    painter.drawPath(frame);
}
