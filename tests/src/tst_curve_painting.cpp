// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/patience.h"
#include "support/register_test.h"

#include "column_blender.h"
#include "curve_painter.h"

#include <QBackingStore>
#include <QPainter>
#include <QPainterPath>
#include <QPicture>
#include <QPixmap>
#include <QWidget>
#include <QtTest>

#include <cmath>
#include <functional>
#include <limits>
#include <random>

namespace {

using Samples = QList<TimeValue>;
using Random = std::mt19937;

constexpr int width = 160;
constexpr int height = 120;
const double infinity = std::numeric_limits<double>::infinity();

int between(Random& random, int lowest, int highest)
{
    return std::uniform_int_distribution<int>(lowest, highest)(random);
}

bool happens(Random& random, double probability)
{
    return std::bernoulli_distribution(probability)(random);
}

/// Noise, a random walk, steps or spikes about the middle of the rows: values are rows.
double nextValue(Random& random, int kind, double last)
{
    std::normal_distribution<double> normal(0, 1);
    switch (kind) {
    case 0:
        return height / 2.0 + 8 * normal(random);
    case 1:
        return last + 2 * normal(random);
    case 2:
        return happens(random, 0.2) ? between(random, -height, 2 * height) : last;
    default:
        return happens(random, 0.05) ? 1000 * normal(random) : height / 2.0 + normal(random);
    }
}

double oddValue(Random& random)
{
    const double odd[] = {std::nan(""), infinity, -infinity, 1e300, -1e300, 2147483647.0, -5e9};
    return odd[between(random, 0, 6)];
}

/// `perColumn` samples in each column and some columns more on both sides, at 1 px/s; now and
/// then a burst, a column without any, and now and then a sample that is out of the ordinary.
Samples randomSamples(Random& random, double perColumn, double odd)
{
    Samples samples;
    const int kind = between(random, 0, 3);
    double value = height / 2.0;
    for (double age = width + 10; age > -10; age -= 1 / perColumn) {
        value = nextValue(random, kind, value);
        samples.append({-std::floor(age) - 0.5, happens(random, odd) ? oddValue(random) : value});
        if (happens(random, 0.01))
            age -= between(random, 0, 12);
        else if (happens(random, 0.01))
            age += 40 / perColumn;
    }
    return samples;
}

PlotScale scaleOfRows()
{
    return {width, 0, 1, 0, -1};
}

void paintPlainly(QPainter& painter, const Samples& samples)
{
    QPainterPath path;
    for (const TimeValue& sample : samples) {
        if (std::isnan(sample.second)) {
            painter.drawPath(path);
            path = QPainterPath();
        } else if (path.elementCount() == 0) {
            path.moveTo(scaleOfRows().position(sample));
        } else {
            path.lineTo(scaleOfRows().position(sample));
        }
    }
    painter.drawPath(path);
}

struct Curve
{
    Samples samples;
    QPen pen;
};

QPen plainPen(const QColor& color)
{
    return {color, 1.0, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
}

/// Curves in colours of all kinds, one above the other.
QVector<Curve> randomCurves(Random& random, int most = 4, double seeThrough = 0.3)
{
    QVector<Curve> curves;
    const int count = between(random, 1, most);
    for (int i = 0; i < count; ++i) {
        const QColor color(between(random, 0, 255), between(random, 0, 255),
                           between(random, 0, 255),
                           happens(random, seeThrough) ? between(random, 0, 255) : 255);
        const double perColumn[] = {0.3, 2, 12, 40};
        curves.append({randomSamples(random, perColumn[between(random, 0, 3)],
                                     happens(random, 0.5) ? 0.002 : 0),
                       plainPen(color)});
    }
    return curves;
}

using Painting = std::function<void(QPainter&)>;

void paintCurves(QPainter& painter, const QVector<Curve>& curves, bool plainly)
{
    painter.setRenderHint(QPainter::Antialiasing);
    for (const Curve& curve : curves) {
        painter.setPen(curve.pen);
        if (plainly)
            paintPlainly(painter, curve.samples);
        else
            paintCurve(painter, curve.samples, scaleOfRows());
    }
}

/// Premultiplied, so that it is valid in every format.
QImage randomBackground(Random& random, QImage::Format format)
{
    QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
    const bool opaque = happens(random, 0.5);
    for (int y = 0; y < height; ++y) {
        auto* pixels = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < width; ++x) {
            const auto color = static_cast<QRgb>(random());
            pixels[x] = qPremultiply(opaque ? color | 0xff000000 : color);
        }
    }
    return image.convertToFormat(format);
}

/// How many pixels differ.
int differences(const QImage& one, const QImage& other)
{
    int count = 0;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x)
            count += one.pixel(x, y) == other.pixel(x, y) ? 0 : 1;
    }
    return count;
}

/// Paints random curves upon random backgrounds, prepared by `setUp`, by and by in both ways.
void compareOnImages(QImage::Format format, const Painting& setUp, unsigned seed, int rounds)
{
    Random random(seed);
    for (int round = 0; round < rounds; ++round) {
        const QVector<Curve> curves = randomCurves(random);
        QImage plain = randomBackground(random, format);
        QImage quick = plain;
        for (QImage* image : {&plain, &quick}) {
            QPainter painter(image);
            setUp(painter);
            paintCurves(painter, curves, image == &plain);
        }
        QVERIFY2(
            quick == plain,
            qPrintable(
                QString("round %1: %2 pixels differ").arg(round).arg(differences(quick, plain))));
    }
}

/// Paints curves when told to, and keeps the picture that its window then has.
class CurveWidget : public QWidget
{
public:
    using QWidget::QWidget;

    QImage painted(const QVector<Curve>& curves, const QRegion& region, bool plainly)
    {
        fCurves = curves;
        fPlainly = plainly;
        fPainted = QImage();
        repaint(region);
        return fPainted;
    }

    bool fBlends = false; ///< whether the last painting could blend columns

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.setClipRect(rect());
        painter.translate(0, 1);
        paintCurves(painter, fCurves, fPlainly);
        fBlends = ColumnBlender::forPainter(painter).has_value();
        painter.end();
        fPainted = dynamic_cast<QImage&>(*backingStore()->paintDevice()).copy();
    }

private:
    QVector<Curve> fCurves;
    bool fPlainly = false;
    QImage fPainted;
};

} // namespace

Q_DECLARE_METATYPE(Painting)

/// The pixels of single curves, beside those of one plain path for each.
class TestCurvePainting : public GuardedTest
{
    Q_OBJECT

private slots:
    void randomCurvesAreThePlainOnes_data();
    void randomCurvesAreThePlainOnes();
    void openAndClosedColumnsAreThePlainOnes();
    void paintersOfAllKindsGiveThePlainCurves_data();
    void paintersOfAllKindsGiveThePlainCurves();
    void pixmapsShowThePlainCurves();
    void shownWidgetsShowThePlainCurves();
    void fewPixelsDifferOnDenseScreens();
    void columnsAreBlendedOn32BitRastersOnly();
};

void TestCurvePainting::randomCurvesAreThePlainOnes_data()
{
    QTest::addColumn<QImage::Format>("format");
    QTest::newRow("RGB32") << QImage::Format_RGB32;
    QTest::newRow("premultiplied ARGB32") << QImage::Format_ARGB32_Premultiplied;
    QTest::newRow("ARGB32") << QImage::Format_ARGB32;
    QTest::newRow("RGB16") << QImage::Format_RGB16;
}

void TestCurvePainting::randomCurvesAreThePlainOnes()
{
    QFETCH(QImage::Format, format);
    compareOnImages(
        format, [](QPainter& painter) { painter.setClipRect(painter.viewport()); }, 1, 150);
}

void TestCurvePainting::openAndClosedColumnsAreThePlainOnes()
{
    Random random(7);
    for (int round = 0; round < 500; ++round) {
        // So few rows that lines often end where they began, and begin or end with repetitions.
        Curve curve{{}, plainPen(Qt::red)};
        const int count = between(random, 1, 40);
        for (int i = 0; i < count; ++i) {
            const int column = happens(random, 0.03) ? 21 : 20;
            curve.samples.append({-column - 0.5, static_cast<double>(between(random, 50, 53))});
        }
        QImage plain = randomBackground(random, QImage::Format_RGB32);
        QImage quick = plain;
        for (QImage* image : {&plain, &quick}) {
            QPainter painter(image);
            paintCurves(painter, {curve}, image == &plain);
        }
        QVERIFY2(quick == plain, qPrintable(QString("round %1").arg(round)));
    }
}

void TestCurvePainting::paintersOfAllKindsGiveThePlainCurves_data()
{
    QTest::addColumn<Painting>("setUp");
    const auto row = [](const char* name, const Painting& setUp) { QTest::newRow(name) << setUp; };
    row("as it is", [](QPainter&) {});
    row("moved", [](QPainter& painter) { painter.translate(-7, 11); });
    row("moved far away", [](QPainter& painter) { painter.translate(0, 1e9); });
    row("moved out of the range of pixels", [](QPainter& painter) { painter.translate(0, 1e10); });
    row("moved by half a pixel", [](QPainter& painter) { painter.translate(0.5, 0); });
    row("turned over", [](QPainter& painter) {
        painter.translate(0, height);
        painter.scale(1, -1);
    });
    row("turned", [](QPainter& painter) { painter.rotate(20); });
    row("smaller", [](QPainter& painter) { painter.scale(0.5, 0.5); });
    row("a clip", [](QPainter& painter) { painter.setClipRect(30, 20, 50, 60); });
    row("a clip of one column", [](QPainter& painter) { painter.setClipRect(30, 20, 1, 60); });
    row("a clip of one row", [](QPainter& painter) { painter.setClipRect(30, 60, 90, 1); });
    row("a clip, moved", [](QPainter& painter) {
        painter.setClipRect(30, 20, 50, 60);
        painter.translate(9, -8);
    });
    row("a clip out of sight", [](QPainter& painter) { painter.setClipRect(-90, 0, 50, 60); });
    row("an empty clip", [](QPainter& painter) { painter.setClipRegion(QRegion()); });
    row("a clip of two rectangles", [](QPainter& painter) {
        painter.setClipRegion(QRegion(10, 10, 60, 60) + QRegion(50, 40, 60, 60));
    });
    row("a clip within pixels",
        [](QPainter& painter) { painter.setClipRect(QRectF(10.5, 10.5, 60, 60)); });
    row("a round clip", [](QPainter& painter) {
        QPainterPath path;
        path.addEllipse(10, 10, 100, 90);
        painter.setClipPath(path);
    });
    row("see-through", [](QPainter& painter) { painter.setOpacity(0.5); });
    row("another composition",
        [](QPainter& painter) { painter.setCompositionMode(QPainter::CompositionMode_Multiply); });
}

void TestCurvePainting::paintersOfAllKindsGiveThePlainCurves()
{
    QFETCH(Painting, setUp);
    compareOnImages(QImage::Format_RGB32, setUp, 2, 30);
    compareOnImages(QImage::Format_ARGB32_Premultiplied, setUp, 3, 30);
}

void TestCurvePainting::pixmapsShowThePlainCurves()
{
    Random random(4);
    for (int round = 0; round < 30; ++round) {
        const QVector<Curve> curves = randomCurves(random);
        QPixmap plain = QPixmap::fromImage(randomBackground(random, QImage::Format_RGB32));
        QPixmap quick = plain.copy();
        for (QPixmap* pixmap : {&plain, &quick}) {
            QPainter painter(pixmap);
            paintCurves(painter, curves, pixmap == &plain);
        }
        QCOMPARE(quick.toImage(), plain.toImage());
    }
}

void TestCurvePainting::shownWidgetsShowThePlainCurves()
{
    QWidget window;
    window.resize(width + 40, height + 40);
    CurveWidget widget(&window);
    widget.setGeometry(13, 17, width, height);
    QWidget sibling(&window);
    sibling.setAutoFillBackground(true);
    sibling.setGeometry(60, 50, 20, 20);
    sibling.hide();
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window, patience));
    Random random(5);
    for (const bool covered : {false, true}) {
        sibling.setVisible(covered);
        for (const QRegion& region : {QRegion(0, 0, width, height), QRegion(20, 30, 70, 40)}) {
            int seen = 0;
            for (int round = 0; round < 30; ++round) {
                const QVector<Curve> curves = randomCurves(random);
                const QImage blank = widget.painted({}, region, true);
                const QImage plain = widget.painted(curves, region, true);
                QCOMPARE(widget.painted(curves, region, false), plain);
                QCOMPARE(widget.fBlends, !covered);
                seen += plain != blank;
            }
            QVERIFY2(seen > 20, qPrintable(QString::number(seen)));
        }
    }
}

void TestCurvePainting::columnsAreBlendedOn32BitRastersOnly()
{
    const auto blends = [](QPaintDevice& device) {
        QPainter painter(&device);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(Qt::red, 1));
        return ColumnBlender::forPainter(painter).has_value();
    };
    for (const auto format : {QImage::Format_RGB32, QImage::Format_ARGB32_Premultiplied}) {
        QImage image(20, 20, format);
        QVERIFY(blends(image));
        image.setDevicePixelRatio(2);
        QVERIFY(!blends(image));
    }
    for (const auto format : {QImage::Format_ARGB32, QImage::Format_RGB16, QImage::Format_RGB888}) {
        QImage image(20, 20, format);
        QVERIFY(!blends(image));
    }
    QPicture picture;
    QVERIFY(!blends(picture));
}

void TestCurvePainting::fewPixelsDifferOnDenseScreens()
{
    Random random(6);
    int allDiffering = 0;
    int allPainted = 0;
    for (int round = 0; round < 60; ++round) {
        const QVector<Curve> curves = randomCurves(random, 1, 0);
        QImage blank(2 * width, 2 * height, QImage::Format_RGB32);
        blank.setDevicePixelRatio(2);
        blank.fill(Qt::white);
        QImage plain = blank;
        QImage quick = blank;
        for (QImage* image : {&plain, &quick}) {
            QPainter painter(image);
            paintCurves(painter, curves, image == &plain);
        }
        const int differing = differences(quick, plain);
        const int painted = differences(plain, blank);
        QVERIFY2(25 * differing <= painted, qPrintable(QString("round %1: %2 of %3 pixels differ")
                                                           .arg(round)
                                                           .arg(differing)
                                                           .arg(painted)));
        allDiffering += differing;
        allPainted += painted;
    }
    QVERIFY2(100 * allDiffering <= allPainted,
             qPrintable(QString("%1 of %2 pixels differ").arg(allDiffering).arg(allPainted)));
}

REGISTER_TEST(TestCurvePainting, QApplication)
#include "tst_curve_painting.moc"
