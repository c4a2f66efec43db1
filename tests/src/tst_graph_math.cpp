// SPDX-License-Identifier: MIT
#include "support/growth.h"
#include "support/guarded_test.h"
#include "support/register_test.h"
#include "support/sampled_graph.h"

#include "graph_math.h"

#include <QtTest>

#include <climits>
#include <limits>

namespace {

const double infinity = std::numeric_limits<double>::infinity();
const double notANumber = std::numeric_limits<double>::quiet_NaN();

QList<TimeValue> samplesAt(const QList<double>& times)
{
    QList<TimeValue> samples;
    for (const double time : times)
        samples.append({time, 10 * time});
    return samples;
}

double secondsToPruneHalf(int count)
{
    QList<TimeValue> samples;
    for (int i = 0; i < count; ++i)
        samples.append({static_cast<double>(i), 0.0});
    const double start = processorSeconds();
    pruneSamples(samples, count / 2.0);
    return processorSeconds() - start;
}

} // namespace

/// The arithmetic of the graph, its degenerate cases included.
class TestGraphMath : public GuardedTest
{
    Q_OBJECT

private slots:
    void numbersAreCutTowardZeroAndStayInts_data();
    void numbersAreCutTowardZeroAndStayInts();
    void timeStampsAreOfSinglePrecision();
    void theSpanIsWidthBySpeed();
    void unitsPerPixelAreNeverZero_data();
    void unitsPerPixelAreNeverZero();
    void valuesFallOnRows_data();
    void valuesFallOnRows();
    void samplesFallOnColumns_data();
    void samplesFallOnColumns();
    void pruningRemovesOldAndUnorderedSamples_data();
    void pruningRemovesOldAndUnorderedSamples();
    void pruningKeepsValuesWithTheirTimes();
    void aTimeStampThatIsNoNumberIsKept();
    void pruningCostsGrowWithTheSamples();
    void theRangeHoldsAllFiniteSamples();
    void samplesAreSetBackExactly();
};

void TestGraphMath::numbersAreCutTowardZeroAndStayInts_data()
{
    QTest::addColumn<double>("number");
    QTest::addColumn<int>("whole");
    QTest::newRow("zero") << 0.0 << 0;
    QTest::newRow("positive") << 2.9 << 2;
    QTest::newRow("negative") << -2.9 << -2;
    QTest::newRow("greatest") << 2147483647.0 << INT_MAX;
    QTest::newRow("too great") << 2147483648.0 << INT_MAX;
    QTest::newRow("least") << -2147483648.0 << INT_MIN;
    QTest::newRow("too low") << -1e300 << INT_MIN;
    QTest::newRow("infinity") << infinity << INT_MAX;
    QTest::newRow("-infinity") << -infinity << INT_MIN;
    QTest::newRow("NaN") << notANumber << INT_MIN;
}

void TestGraphMath::numbersAreCutTowardZeroAndStayInts()
{
    QFETCH(double, number);
    QFETCH(int, whole);
    QCOMPARE(truncated(number), whole);
}

void TestGraphMath::timeStampsAreOfSinglePrecision()
{
    QCOMPARE(secondsOf(0), 0.0);
    QCOMPARE(secondsOf(1500), 1.5);
    QVERIFY(secondsOf(100) == static_cast<double>(0.1F));
    QVERIFY(secondsOf(100) != 0.1);
    QVERIFY(secondsOf(86400001) == static_cast<double>(86400.0F));
}

void TestGraphMath::theSpanIsWidthBySpeed()
{
    QCOMPARE(visibleSpan(800, 100), 8.0);
    QCOMPARE(visibleSpan(800, 0), infinity);
    QVERIFY(qIsNaN(visibleSpan(0, 0)));
}

void TestGraphMath::unitsPerPixelAreNeverZero_data()
{
    QTest::addColumn<double>("bottom");
    QTest::addColumn<double>("top");
    QTest::addColumn<int>("rows");
    QTest::addColumn<double>("units");
    QTest::newRow("plain") << -100.0 << 100.0 << 400 << 0.5;
    QTest::newRow("inverted") << 100.0 << -100.0 << 400 << -0.5;
    QTest::newRow("equal bounds") << 5.0 << 5.0 << 400 << 1.0;
    QTest::newRow("no rows") << -1.0 << 1.0 << 0 << infinity;
    QTest::newRow("fewer than no rows") << 0.0 << 4.0 << -2 << -2.0;
    QTest::newRow("all doubles") << -1.7e308 << 1.7e308 << 400 << infinity;
}

void TestGraphMath::unitsPerPixelAreNeverZero()
{
    QFETCH(double, bottom);
    QFETCH(double, top);
    QFETCH(int, rows);
    QFETCH(double, units);
    QCOMPARE(unitsPerPixel({bottom, top}, rows), units);
}

void TestGraphMath::valuesFallOnRows_data()
{
    QTest::addColumn<double>("top");
    QTest::addColumn<double>("unitsPerRow");
    QTest::addColumn<double>("value");
    QTest::addColumn<int>("row");
    QTest::newRow("top") << 100.0 << 0.5 << 100.0 << 0;
    QTest::newRow("middle") << 100.0 << 0.5 << 0.0 << 200;
    QTest::newRow("cut, not rounded") << 100.0 << 0.5 << 99.1 << 1;
    QTest::newRow("above the top, cut toward zero") << 100.0 << 0.5 << 100.4 << 0;
    QTest::newRow("far above") << 100.0 << 0.5 << 101.0 << -2;
    QTest::newRow("inverted range") << -100.0 << -0.5 << 0.0 << 200;
    QTest::newRow("infinity") << 100.0 << 0.5 << infinity << INT_MIN;
    QTest::newRow("-infinity") << 100.0 << 0.5 << -infinity << INT_MAX;
    QTest::newRow("infinite units") << 100.0 << infinity << 5.0 << 0;
    QTest::newRow("tiny units") << 100.0 << 5e-324 << 5.0 << INT_MAX;
}

void TestGraphMath::valuesFallOnRows()
{
    QFETCH(double, top);
    QFETCH(double, unitsPerRow);
    QFETCH(double, value);
    QFETCH(int, row);
    const PlotScale scale{800, 0.0, 100.0, top, unitsPerRow};
    QCOMPARE(scale.row(value), row);
    QCOMPARE(scale.position({0.0, value}), QPoint(800, row));
}

void TestGraphMath::samplesFallOnColumns_data()
{
    QTest::addColumn<double>("speed");
    QTest::addColumn<double>("time");
    QTest::addColumn<int>("column");
    QTest::newRow("now") << 100.0 << 10.0 << 800;
    QTest::newRow("one second ago") << 100.0 << 9.0 << 700;
    QTest::newRow("less than a pixel ago") << 100.0 << 9.9921 << 800;
    QTest::newRow("scrolled off") << 100.0 << 1.0 << -100;
    QTest::newRow("later than now") << 100.0 << 10.5 << 850;
    QTest::newRow("no speed") << 0.0 << -1e9 << 800;
    QTest::newRow("very old") << 1000.0 << -1e300 << INT_MIN + 801;
    QTest::newRow("very late") << 1000.0 << 1e300 << INT_MAX;
    QTest::newRow("time NaN") << 100.0 << notANumber << INT_MAX;
}

void TestGraphMath::samplesFallOnColumns()
{
    QFETCH(double, speed);
    QFETCH(double, time);
    QFETCH(int, column);
    const PlotScale scale{800, 10.0, speed, 0.0, 1.0};
    QCOMPARE(scale.position({time, 0.0}).x(), column);
}

void TestGraphMath::pruningRemovesOldAndUnorderedSamples_data()
{
    QTest::addColumn<QList<double>>("times");
    QTest::addColumn<double>("cutOff");
    QTest::addColumn<QList<double>>("kept");
    using Times = QList<double>;
    QTest::newRow("none") << Times{} << 1.0 << Times{};
    QTest::newRow("all young") << Times{1, 2, 3} << 0.5 << Times{1, 2, 3};
    QTest::newRow("at the cut-off") << Times{1, 2, 3} << 2.0 << Times{2, 3};
    QTest::newRow("all old") << Times{1, 2, 3} << 9.0 << Times{};
    QTest::newRow("same time twice") << Times{1, 1, 2} << 0.0 << Times{1, 1, 2};
    QTest::newRow("later than its successor") << Times{1, 5, 2, 3} << 0.0 << Times{1, 2, 3};
    QTest::newRow("after a clock's restart") << Times{90, 91, 0, 1} << -8.0 << Times{0, 1};
    QTest::newRow("compared with the kept one") << Times{4, 9, 8, 3} << 0.0 << Times{3};
    QTest::newRow("successor too old") << Times{5, 1} << 3.0 << Times{5};
    QTest::newRow("old ones in between") << Times{5, 1, 6} << 3.0 << Times{5, 6};
    QTest::newRow("no cut-off") << Times{-1e300, 2, 1} << -infinity << Times{-1e300, 1};
    QTest::newRow("cut-off NaN") << Times{1, 2} << notANumber << Times{1, 2};
}

void TestGraphMath::pruningRemovesOldAndUnorderedSamples()
{
    QFETCH(QList<double>, times);
    QFETCH(double, cutOff);
    QFETCH(QList<double>, kept);
    QList<TimeValue> samples = samplesAt(times);
    pruneSamples(samples, cutOff);
    QCOMPARE(timesOf(samples), kept);
}

void TestGraphMath::pruningKeepsValuesWithTheirTimes()
{
    QList<TimeValue> samples = samplesAt({1, 7, 2, 3});
    const QList<TimeValue> shared = samples;
    pruneSamples(samples, 1.5);
    QCOMPARE(timesOf(samples), (QList<double>{2, 3}));
    QCOMPARE(samples.at(0).second, 20.0);
    QCOMPARE(samples.at(1).second, 30.0);
    QCOMPARE(timesOf(shared), (QList<double>{1, 7, 2, 3}));
}

void TestGraphMath::aTimeStampThatIsNoNumberIsKept()
{
    QList<TimeValue> samples = samplesAt({1, notANumber, 2});
    pruneSamples(samples, 0.0);
    QCOMPARE(samples.size(), 3);
}

void TestGraphMath::pruningCostsGrowWithTheSamples()
{
    const double growth = growthAtFourTimes(80000, secondsToPruneHalf);
    QVERIFY2(growth < mostLinearGrowth, qPrintable(QString::number(growth)));
}

void TestGraphMath::theRangeHoldsAllFiniteSamples()
{
    ValueRange range{100.0, -100.0};
    includeSamples(range, {});
    QCOMPARE(range.bottom, 100.0);
    QCOMPARE(range.top, -100.0);
    includeSamples(range, {{0, notANumber}, {1, infinity}, {2, -infinity}});
    QCOMPARE(range.bottom, 100.0);
    QCOMPARE(range.top, -100.0);
    includeSamples(range, {{0, 7}, {1, notANumber}, {2, -3}, {3, 1e300}});
    QCOMPARE(range.bottom, -3.0);
    QCOMPARE(range.top, 1e300);
}

void TestGraphMath::samplesAreSetBackExactly()
{
    QList<TimeValue> samples{{secondsOf(40), 1}, {secondsOf(1000123), notANumber}};
    const QList<TimeValue> shared = samples;
    const double year = 365.0 * 86400;
    setSamplesBack(samples, year);
    QVERIFY(samples.at(0).first < -year + 1);
    QVERIFY2(samples.at(0).first + year == secondsOf(40), "no bit is lost in a year");
    QVERIFY(samples.at(1).first + year == secondsOf(1000123));
    QCOMPARE(samples.at(0).second, 1.0);
    QVERIFY(qIsNaN(samples.at(1).second));
    QCOMPARE(timesOf(shared), (QList<double>{secondsOf(40), secondsOf(1000123)}));
}

REGISTER_TEST(TestGraphMath, NoApplication)
#include "tst_graph_math.moc"
