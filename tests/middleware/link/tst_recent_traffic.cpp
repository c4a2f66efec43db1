// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <link/recent_traffic.h>

#include <QtTest>

using namespace zo;

using std::chrono::milliseconds;

namespace {

/// Traffic in virtual time: an answer of 100 bytes to 10 bytes at each of `times`.
struct Flow
{
    void answerAt(milliseconds time)
    {
        ++tally.answers;
        tally.received += 100;
        tally.sent += 10;
        traffic.note(RecentTraffic::Time(time), tally);
    }
    TrafficRates ratesAt(milliseconds time) const
    {
        return traffic.rates(RecentTraffic::Time(time));
    }

    RecentTraffic traffic;
    TrafficTally tally;
};

constexpr milliseconds start{3600000};

} // namespace

/// How much goes over a link, in virtual time.
class TestRecentTraffic : public GuardedTest
{
    Q_OBJECT

private slots:
    void nothingIsNothing();
    void aSteadyFlowHasItsRate();
    void whatIsOverIsForgotten();
    void aPauseOfAnyLengthLeavesNothingBehind_data();
    void aPauseOfAnyLengthLeavesNothingBehind();
    void whatNobodyNotedMeanwhileCountsAtOnce();
};

void TestRecentTraffic::nothingIsNothing()
{
    const Flow flow;
    for (const milliseconds time : {milliseconds(0), milliseconds(1), start}) {
        QCOMPARE(flow.ratesAt(time).answers, 0.0);
        QCOMPARE(flow.ratesAt(time).received, 0.0);
        QCOMPARE(flow.ratesAt(time).sent, 0.0);
    }
}

void TestRecentTraffic::aSteadyFlowHasItsRate()
{
    Flow flow;
    for (milliseconds time = start; time < start + milliseconds(10000); time += milliseconds(50)) {
        flow.answerAt(time);
        if (time < start + milliseconds(2250))
            continue;
        const TrafficRates rates = flow.ratesAt(time);
        QVERIFY2(qAbs(rates.answers - 20) < 0.51, qPrintable(QString::number(rates.answers)));
        QVERIFY2(qAbs(rates.received - 2000) < 51, qPrintable(QString::number(rates.received)));
        QVERIFY2(qAbs(rates.sent - 200) < 5.1, qPrintable(QString::number(rates.sent)));
    }
}

void TestRecentTraffic::whatIsOverIsForgotten()
{
    Flow flow;
    flow.answerAt(start);
    flow.answerAt(start + milliseconds(1000));
    double last = 2;
    for (const int later : {1000, 2249, 2250, 3249, 3250}) {
        const double rate = flow.ratesAt(start + milliseconds(later)).answers;
        QVERIFY(rate < last);
        last = rate;
    }
    QCOMPARE(last, 0.0);
    QVERIFY(flow.ratesAt(start + milliseconds(3249)).answers > 0.4);
}

void TestRecentTraffic::aPauseOfAnyLengthLeavesNothingBehind_data()
{
    QTest::addColumn<int>("pause");
    for (const int pause : {2250, 2251, 2500, 4500, 4499, 60000})
        QTest::addRow("%d ms", pause) << pause;
}

void TestRecentTraffic::aPauseOfAnyLengthLeavesNothingBehind()
{
    QFETCH(int, pause);
    Flow flow;
    for (int i = 0; i < 100; ++i)
        flow.answerAt(start + milliseconds(10 * i));
    const milliseconds later = start + milliseconds(990 + pause);
    QCOMPARE(flow.ratesAt(later).answers, 0.0);
    flow.answerAt(later);
    const double rate = flow.ratesAt(later).answers;
    QVERIFY2(rate > 0.4 && rate <= 0.5, qPrintable(QString::number(rate)));
}

void TestRecentTraffic::whatNobodyNotedMeanwhileCountsAtOnce()
{
    Flow flow;
    flow.answerAt(start);
    flow.tally.received += 1000000;
    flow.answerAt(start + milliseconds(60000));
    QVERIFY(flow.ratesAt(start + milliseconds(60000)).received >= 1000000 / 2.25);
}

REGISTER_TEST(TestRecentTraffic, NoApplication)
#include "tst_recent_traffic.moc"
