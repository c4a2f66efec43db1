// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/patience.h"
#include "support/register_test.h"

#include "graph_clock.h"

#include <QElapsedTimer>
#include <QtTest>

#include <cmath>
#include <limits>

/// The clock of a graph, and when it is set back.
class TestGraphClock : public GuardedTest
{
    Q_OBJECT

private slots:
    void init();
    void itGoesWithTheMachine();
    void itStartsAtZeroAndFollowsItsSource();
    void belowItsLimitItIsLeftAlone();
    void itIsSetBackByWholeSecondsBelowItsLimit_data();
    void itIsSetBackByWholeSecondsBelowItsLimit();
    void aCopyGoesOnByItself();
    void whereItIsSetBackAllReadingsAreRoundedAlike();

private:
    GraphClock xClock() const
    {
        return GraphClock([this] { return fTime; });
    }

    qint64 fTime = 0;
};

void TestGraphClock::init()
{
    fTime = 5000;
}

void TestGraphClock::itGoesWithTheMachine()
{
    QElapsedTimer longer;
    longer.start();
    const GraphClock clock;
    QElapsedTimer shorter;
    shorter.start();
    TRY_VERIFY(shorter.elapsed() >= 50);
    const qint64 least = shorter.elapsed() - 1; // both are cut to whole ms
    const qint64 reading = clock.elapsed();
    QVERIFY(reading >= least);
    QVERIFY(reading <= longer.elapsed() + 1);
}

void TestGraphClock::itStartsAtZeroAndFollowsItsSource()
{
    const GraphClock clock = xClock();
    QCOMPARE(clock.elapsed(), 0);
    fTime += 1;
    QCOMPARE(clock.elapsed(), 1);
    fTime += Q_INT64_C(100) * 86400 * 1000;
    QCOMPARE(clock.elapsed(), Q_INT64_C(8640000001));
}

void TestGraphClock::belowItsLimitItIsLeftAlone()
{
    GraphClock clock = xClock();
    QCOMPARE(clock.setBack(), 0);
    fTime += GraphClock::fLimit - 1;
    QCOMPARE(clock.setBack(), 0);
    QCOMPARE(clock.elapsed(), 999999);
}

void TestGraphClock::itIsSetBackByWholeSecondsBelowItsLimit_data()
{
    QTest::addColumn<qint64>("before");
    QTest::addColumn<qint64>("seconds");
    QTest::addColumn<qint64>("after");
    QTest::newRow("at its limit") << Q_INT64_C(1000000) << Q_INT64_C(400) << Q_INT64_C(600000);
    QTest::newRow("some steps late") << Q_INT64_C(1000123) << Q_INT64_C(400) << Q_INT64_C(600123);
    QTest::newRow("one turn late") << Q_INT64_C(1399999) << Q_INT64_C(400) << Q_INT64_C(999999);
    QTest::newRow("two turns") << Q_INT64_C(1400000) << Q_INT64_C(800) << Q_INT64_C(600000);
    QTest::newRow("days late") << Q_INT64_C(8640000007) << Q_INT64_C(8639200) << Q_INT64_C(800007);
}

void TestGraphClock::itIsSetBackByWholeSecondsBelowItsLimit()
{
    QFETCH(qint64, before);
    GraphClock clock = xClock();
    fTime += before;
    QTEST(clock.setBack(), "seconds");
    QTEST(clock.elapsed(), "after");
    QCOMPARE(clock.setBack(), 0);
    fTime += 40;
    QFETCH(qint64, after);
    QCOMPARE(clock.elapsed(), after + 40);
}

void TestGraphClock::aCopyGoesOnByItself()
{
    GraphClock clock = xClock();
    fTime += GraphClock::fLimit;
    const GraphClock copy = clock;
    clock.setBack();
    QCOMPARE(copy.elapsed(), 1000000);
    fTime += 1;
    QCOMPARE(clock.elapsed(), 600001);
}

void TestGraphClock::whereItIsSetBackAllReadingsAreRoundedAlike()
{
    const auto step = [](qint64 milliseconds) {
        const float seconds = static_cast<float>(milliseconds) / 1000.0F;
        return std::nextafter(seconds, std::numeric_limits<float>::infinity()) - seconds;
    };
    const float atLimit = step(GraphClock::fLimit);
    QCOMPARE(step(GraphClock::fLimit - GraphClock::fTurn), atLimit);
    QVERIFY2(step(GraphClock::fLimit + 20000) == atLimit, "a step that takes some seconds");
    QVERIFY2(atLimit < 0.0001F, "a tenth of a pixel at top speed");
}

REGISTER_TEST(TestGraphClock, NoApplication)
#include "tst_graph_clock.moc"
