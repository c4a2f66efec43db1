// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/register_test.h"

#include "graph.h"
#include "model.h"

#include <QPainter>
#include <QPainterPath>
#include <QtTest>

#include <limits>
#include <random>

namespace {

using Values = QList<double>;

const double notANumber = std::numeric_limits<double>::quiet_NaN();
const double infinity = std::numeric_limits<double>::infinity();

/// So slow that the seconds of a test move no sample to another column: see `age`.
const double slowest = 0.001;

/// How long ago, s, a sample was taken that stands `column` pixels left of the right edge, in
/// the middle of the time that it stands there.
double age(double column)
{
    return (column + 0.5) / slowest;
}

/// A sample every `step` pixels, the last one at the right edge.
QList<TimeValue> spread(const Values& values, double step = 1)
{
    QList<TimeValue> samples;
    const int last = static_cast<int>(values.size()) - 1;
    for (int i = 0; i <= last; ++i)
        samples.append({-age(qFloor((last - i) * step)), values.at(i)});
    return samples;
}

QPen plainPen(const QColor& color)
{
    return {QBrush(color), 1.0, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
}

/// Counts its samples in `seconds` back from 0, like the graph just started.
QPainterPath plainPath(const Graph& graph, const QList<TimeValue>& samples, double units)
{
    QPainterPath path;
    for (const TimeValue& sample : samples) {
        const double x = graph.width() - static_cast<int>(-sample.first * graph.fSpeed);
        const double y = static_cast<int>((graph.fMaxY - sample.second) / units);
        if (path.elementCount() == 0)
            path.moveTo(x, y);
        else
            path.lineTo(x, y);
    }
    return path;
}

void paintPlainFrame(QPainter& painter, const Graph& graph, double units)
{
    const int width = graph.width();
    const int height = graph.height();
    painter.setPen(plainPen(Qt::black));
    const int p = painter.font().pointSize();
    const QString top = QString().setNum(graph.fMaxY, 'g', 3);
    const QString bottom = QString().setNum(graph.fMinY, 'g', 3);
    painter.drawText(QRect(2, 2, width - 2, 2 * p), Qt::AlignLeft, top);
    painter.drawText(QRect(2, height - 2 - 2 * p, width - 2, 2 * p), Qt::AlignLeft, bottom);
    const int zero = static_cast<int>(graph.fMaxY / units);
    if (zero == 0)
        return;
    painter.drawText(QRect(2, zero - 2 * p, width - 2, 2 * p), Qt::AlignLeft, "0");
    QPainterPath frame;
    frame.lineTo(0, height - 2);
    frame.moveTo(0, zero);
    frame.lineTo(width, zero);
    painter.drawPath(frame);
}

QImage blank(const Graph& graph, int ratio, const QColor& background)
{
    QImage picture(graph.size() * ratio, QImage::Format_ARGB32_Premultiplied);
    picture.setDevicePixelRatio(ratio);
    picture.setDotsPerMeterX(qRound(graph.logicalDpiX() / 0.0254));
    picture.setDotsPerMeterY(qRound(graph.logicalDpiY() / 0.0254));
    picture.fill(background);
    return picture;
}

/// The picture of the graph as one plain path per curve gives it. The range must be set.
QImage plainPicture(const Graph& graph, int ratio, const QColor& background)
{
    QImage picture = blank(graph, ratio, background);
    QPainter painter(&picture);
    painter.setFont(graph.font());
    painter.translate(0, 1);
    painter.setRenderHint(QPainter::Antialiasing);
    const double exact = (graph.fMaxY - graph.fMinY) / (graph.height() - 2);
    const double units = exact == 0.0 ? 1.0 : exact;
    for (const auto& series : graph.fSeries) {
        const Color* color = series.first;
        painter.setPen(
            plainPen(color ? QColor(color->red, color->green, color->blue) : QColor(70, 188, 236)));
        painter.drawPath(plainPath(graph, series.second, units));
    }
    paintPlainFrame(painter, graph, units);
    return picture;
}

QImage pictureOf(Graph& graph, int ratio = 1, const QColor& background = Qt::white)
{
    QImage picture = blank(graph, ratio, background);
    graph.render(&picture, QPoint(), QRegion(), QWidget::RenderFlags());
    return picture;
}

bool isBlank(const QImage& picture, const Graph& graph)
{
    return picture == blank(graph, 1, Qt::white);
}

/// The greatest difference of any colour channel of any pixel.
int difference(const QImage& one, const QImage& other)
{
    int greatest = 0;
    for (int y = 0; y < one.height(); ++y) {
        const uchar* a = one.constScanLine(y);
        const uchar* b = other.constScanLine(y);
        for (int i = 0; i < 4 * one.width(); ++i)
            greatest = qMax(greatest, qAbs(a[i] - b[i]));
    }
    return greatest;
}

/// Empty when the graph's picture is the plain one on light and on dark backgrounds: exactly at
/// ratio 1, and but for a shade at the tips of turns at ratio 2.
QString differenceFromPlain(Graph& graph)
{
    for (const int ratio : {1, 2}) {
        for (const QColor& background : {QColor(Qt::white), QColor(43, 43, 43)}) {
            const QImage picture = pictureOf(graph, ratio, background);
            const int found = difference(picture, plainPicture(graph, ratio, background));
            if (found > (ratio == 1 ? 0 : 64)) {
                return QString("%1 off at ratio %2 on %3")
                    .arg(found)
                    .arg(ratio)
                    .arg(background.name());
            }
        }
    }
    return {};
}

/// A graph that runs, but does not sample: it has no model.
class StillGraph : public Graph
{
public:
    StillGraph() : Graph({}, nullptr)
    {
        resize(400, 200);
        init();
        fSpeed = slowest;
    }

    void addCurve(const QString& name, const QList<TimeValue>& samples, Color* color = nullptr)
    {
        addSTMValue(name, color);
        fSeries[name].second = samples;
    }

    void setRange(double bottom, double top)
    {
        fAutoscale = false;
        fMinY = bottom;
        fMaxY = top;
    }
};

Values noise(int count, double width, unsigned seed)
{
    std::mt19937 generator(seed);
    std::normal_distribution<double> spreadOut(0, 1); // none has the width 0
    Values values;
    for (int i = 0; i < count; ++i)
        values.append(40 * qSin(i * 12.0 / count) + width * spreadOut(generator));
    return values;
}

/// No row of the image within `rows` has a pixel other than white.
bool rowsAreWhite(const QImage& picture, int first, int last)
{
    for (int y = first; y <= last; ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (picture.pixelColor(x, y) != QColor(Qt::white))
                return false;
        }
    }
    return true;
}

} // namespace

/// The plot's pixels, beside those of a plain renderer.
class TestGraphPainting : public GuardedTest
{
    Q_OBJECT

private slots:
    void aGraphThatDoesNotRunPaintsNothing();
    void aHeightOfTheMarginPaintsNothing();
    void equalManualBoundsPaintNothing();
    void curvesAreThePlainOnes_data();
    void curvesAreThePlainOnes();
    void manualRangesCutCurves_data();
    void manualRangesCutCurves();
    void theEmptyGraphShowsTheInvertedRange();
    void aRangeThatEndsAtZeroHasNoFrame();
    void aFlatCurveLiesInTheMiddle();
    void speedZeroPutsEverySampleAtTheRightEdge();
    void colorsAreReadAtEachPaint();
    void colorsBeyondTheirRangeAreShownAsTheNearest();
    void aNotANumberLeavesAGapAndOtherCurvesAlone();
    void infinitiesLeadOutOfSight();
    void hugeValuesAndOldTimesAreHarmless();
    void tinySizesAreHarmless();
    void aFontInPixelsKeepsItsLabels();
};

void TestGraphPainting::aGraphThatDoesNotRunPaintsNothing()
{
    Graph never({}, nullptr);
    never.resize(400, 200);
    QVERIFY(isBlank(pictureOf(never), never));
    StillGraph graph;
    graph.addCurve("a", spread({1, 2, 3}));
    QVERIFY(!isBlank(pictureOf(graph), graph));
    graph.setPlay(false);
    QVERIFY(isBlank(pictureOf(graph), graph));
}

void TestGraphPainting::aHeightOfTheMarginPaintsNothing()
{
    StillGraph graph;
    graph.addCurve("a", spread({1, 2, 3}));
    graph.resize(400, 2);
    QVERIFY(isBlank(pictureOf(graph), graph));
    QCOMPARE(graph.fMaxY, 0.0);
}

void TestGraphPainting::equalManualBoundsPaintNothing()
{
    StillGraph graph;
    graph.addCurve("a", spread({1, 2, 3}));
    graph.setRange(2, 2);
    QVERIFY(isBlank(pictureOf(graph), graph));
    graph.setRange(2, 3);
    QVERIFY(!isBlank(pictureOf(graph), graph));
}

void TestGraphPainting::curvesAreThePlainOnes_data()
{
    QTest::addColumn<Values>("values");
    QTest::addColumn<double>("step");
    QTest::newRow("one sample") << Values{5} << 1.0;
    QTest::newRow("two equal samples in a column") << Values{5, 5} << 0.0;
    QTest::newRow("two samples") << Values{5, -5} << 80.0;
    QTest::newRow("steps") << Values{1, 1, 1, 4, 4, -2, -2, -2, 3} << 40.0;
    QTest::newRow("up a column in small steps") << Values{0, 1, 2, 3, 4, 5, 6, 7, 20} << 0.12;
    QTest::newRow("up and down in columns") << Values{0, 9, 3, 9, 0, 5, 5, 2, 8, 20} << 0.3;
    QTest::newRow("far apart") << noise(40, 10, 1) << 10.0;
    QTest::newRow("a sample per column") << noise(400, 3, 2) << 1.0;
    QTest::newRow("several per column") << noise(2000, 3, 3) << 0.2;
    QTest::newRow("smooth and dense") << noise(4000, 0, 4) << 0.05;
    QTest::newRow("noisy and dense") << noise(2000, 5, 5) << 0.05;
    QTest::newRow("very noisy and dense") << noise(2000, 60, 6) << 0.05;
    QTest::newRow("most of it scrolled off") << noise(1500, 10, 7) << 1.0;
}

void TestGraphPainting::curvesAreThePlainOnes()
{
    QFETCH(Values, values);
    QFETCH(double, step);
    StillGraph graph;
    Color color;
    graph.addCurve("one", spread(values, step), &color);
    graph.addCurve("two", spread(noise(50, 20, 8), 8));
    QCOMPARE(differenceFromPlain(graph), QString());
}

void TestGraphPainting::manualRangesCutCurves_data()
{
    QTest::addColumn<double>("bottom");
    QTest::addColumn<double>("top");
    QTest::newRow("below zero") << -50.0 << -10.0;
    QTest::newRow("above zero") << 10.0 << 12.0;
    QTest::newRow("wide") << -1e6 << 1e6;
    QTest::newRow("narrow") << 1.0 << 1.001;
    QTest::newRow("inverted") << 50.0 << -50.0;
}

void TestGraphPainting::manualRangesCutCurves()
{
    QFETCH(double, bottom);
    QFETCH(double, top);
    StillGraph graph;
    graph.setRange(bottom, top);
    graph.addCurve("far apart", spread(noise(40, 10, 1), 10));
    graph.addCurve("dense", spread(noise(1500, 20, 2), 0.1));
    QCOMPARE(differenceFromPlain(graph), QString());
}

void TestGraphPainting::theEmptyGraphShowsTheInvertedRange()
{
    StillGraph graph;
    QCOMPARE(differenceFromPlain(graph), QString());
    QCOMPARE(graph.fMaxY, -2147483647.0);
    QCOMPARE(graph.fMinY, 2147483647.0);
    const QImage picture = pictureOf(graph);
    QVERIFY2(!rowsAreWhite(picture, 100, 100), "the zero line is in the middle");
    QVERIFY2(picture.pixelColor(0, 50) != QColor(Qt::white), "the frame");
}

void TestGraphPainting::aRangeThatEndsAtZeroHasNoFrame()
{
    StillGraph graph;
    graph.setRange(-10, 0);
    QCOMPARE(differenceFromPlain(graph), QString());
    const QImage picture = pictureOf(graph);
    QCOMPARE(picture.pixelColor(0, 100), QColor(Qt::white));
    QVERIFY2(!rowsAreWhite(picture, 0, 30), "labels");
    QVERIFY2(rowsAreWhite(picture, 31, 160), "no line");
}

void TestGraphPainting::aFlatCurveLiesInTheMiddle()
{
    StillGraph graph;
    graph.addCurve("a", spread({500, 500}, 399));
    QCOMPARE(differenceFromPlain(graph), QString());
    QCOMPARE(graph.fMaxY, 510.0);
    QCOMPARE(graph.fMinY, 490.0);
    const QImage picture = pictureOf(graph);
    QVERIFY(picture.pixelColor(200, 100) != QColor(Qt::white));
    QCOMPARE(picture.pixelColor(200, 90), QColor(Qt::white));
}

void TestGraphPainting::speedZeroPutsEverySampleAtTheRightEdge()
{
    StillGraph graph;
    graph.fSpeed = 0;
    graph.setRange(-1, 1);
    graph.addCurve("a", {{-100, 0.5}, {-1, -0.5}, {0, 0.5}});
    QCOMPARE(differenceFromPlain(graph), QString());
    const QImage picture = pictureOf(graph);
    QVERIFY(picture.pixelColor(399, 80) != QColor(Qt::white));
    QCOMPARE(picture.pixelColor(398, 80), QColor(Qt::white));
}

void TestGraphPainting::colorsAreReadAtEachPaint()
{
    StillGraph graph;
    Color color;
    color.red = 255;
    color.green = color.blue = 0;
    graph.addCurve("a", spread({1, 2, 1, 2}, 90), &color);
    const QImage red = pictureOf(graph);
    color.blue = 255;
    QCOMPARE(differenceFromPlain(graph), QString());
    QVERIFY(pictureOf(graph) != red);
}

void TestGraphPainting::colorsBeyondTheirRangeAreShownAsTheNearest()
{
    StillGraph graph;
    Color color;
    color.red = 100000;
    color.green = -100000;
    color.blue = 0;
    graph.addCurve("a", spread({1, 2, 1, 2}, 90), &color);
    const QImage picture = pictureOf(graph);
    color.red = 255;
    color.green = 0;
    QCOMPARE(picture, pictureOf(graph));
}

void TestGraphPainting::aNotANumberLeavesAGapAndOtherCurvesAlone()
{
    StillGraph graph;
    graph.addCurve("a", spread({0, 1, 2, notANumber, 2, 1, 0}, 20));
    graph.addCurve("b", spread(noise(300, 10, 1)));
    const QImage picture = pictureOf(graph);
    graph.deleteSTMValue("a");
    graph.addCurve("a", spread({0, 1, 2, 2, 1, 0}, 20));
    QVERIFY2(picture != pictureOf(graph), "a gap is no straight line");

    // The same in two pieces: their names keep their place in the order of painting.
    graph.deleteSTMValue("a");
    QList<TimeValue> pieces = spread({0, 1, 2, 0, 2, 1, 0}, 20);
    graph.addCurve("a1", pieces.mid(0, 3));
    graph.addCurve("a2", pieces.mid(4));
    QCOMPARE(picture, pictureOf(graph));
    QCOMPARE(differenceFromPlain(graph), QString());
}

void TestGraphPainting::infinitiesLeadOutOfSight()
{
    StillGraph graph;
    graph.addCurve("a", spread({0, 10, 5, infinity, 5, -infinity, 0}, 20));
    const QImage picture = pictureOf(graph);
    QCOMPARE(graph.fMaxY, 10.0);
    QCOMPARE(graph.fMinY, 0.0);
    QVERIFY2(picture.pixelColor(320, 20) != QColor(Qt::white), "up from the third sample");
    QVERIFY2(picture.pixelColor(360, 180) != QColor(Qt::white), "down from the fifth");
}

void TestGraphPainting::hugeValuesAndOldTimesAreHarmless()
{
    StillGraph graph;
    graph.fSpeed = 1000;
    graph.addCurve("a", {{-1e300, 1e300}, {0, -1e300}, {1e300, 5}, {notANumber, 7}});
    graph.addCurve("b", {{0, 1.7e308}, {-1, -1.7e308}, {0, 5e-324}});
    for (const int ratio : {1, 2})
        pictureOf(graph, ratio);
    for (const double top : {1e300, infinity, notANumber}) {
        graph.setRange(-1e-300, top);
        pictureOf(graph);
        graph.setRange(-top, 1e-300);
        pictureOf(graph);
    }
}

void TestGraphPainting::tinySizesAreHarmless()
{
    StillGraph graph;
    graph.addCurve("a", spread({0, 10, 5}, 20));
    for (const QSize& size : {QSize(1, 1), QSize(1, 3), QSize(3, 1), QSize(400, 3)}) {
        graph.resize(size);
        QCOMPARE(differenceFromPlain(graph), QString());
    }
}

void TestGraphPainting::aFontInPixelsKeepsItsLabels()
{
    StillGraph graph;
    QFont font = graph.font();
    font.setPixelSize(13);
    graph.setFont(font);
    QVERIFY(!rowsAreWhite(pictureOf(graph).copy(8, 0, 392, 200), 0, 30));
}

REGISTER_TEST(TestGraphPainting, QApplication)
#include "tst_graph_painting.moc"
