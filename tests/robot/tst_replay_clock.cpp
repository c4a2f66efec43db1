// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <replay/replay_clock.h>

#include <QtTest>

using namespace std::chrono_literals;

/// The time of a recording that is played.
class TestReplayClock : public GuardedTest
{
    Q_OBJECT

private slots:
    void itStandsUntilItRuns();
    void momentsFallDueAtTheirDistance();
    void noErrorAddsUp();
    void itRunsOnFromWhereItStopped();
    void anotherSpeedHoldsFromNowOn();
    void itJumpsWhetherItRunsOrNot();
    void farMomentsFallDueFarAway();
};

namespace {

ReplayClock::Point at(std::chrono::nanoseconds time)
{
    return ReplayClock::Point(time);
}

} // namespace

void TestReplayClock::itStandsUntilItRuns()
{
    ReplayClock clock(100s, 1);
    QVERIFY(!clock.isRunning());
    QVERIFY(!clock.due(100s));
    QVERIFY(clock.at(at(7s)) == 100s);
    clock.run(at(10s));
    QVERIFY(clock.isRunning());
    QVERIFY(clock.at(at(10s)) == 100s);
    clock.run(at(11s));
    QVERIFY(clock.at(at(12s)) == 102s);
}

void TestReplayClock::momentsFallDueAtTheirDistance()
{
    ReplayClock clock(100s, 1);
    clock.run(at(10s));
    QVERIFY(clock.due(100s) == at(10s));
    QVERIFY(clock.due(100007ms) == at(10007ms));
    QVERIFY(clock.due(99s) == at(9s));
}

void TestReplayClock::noErrorAddsUp()
{
    ReplayClock clock(1700000000000ms, 3);
    clock.run(at(10s));
    QVERIFY(clock.due(1700000000000ms + 72h) == at(10s + 24h));
    QVERIFY(clock.due(1700000000001ms) == at(10s + 333333ns));
}

void TestReplayClock::itRunsOnFromWhereItStopped()
{
    ReplayClock clock(100s, 2);
    clock.run(at(0s));
    clock.stop(at(5s));
    QVERIFY(clock.at(at(50s)) == 110s);
    QVERIFY(!clock.due(120s));
    clock.run(at(60s));
    QVERIFY(clock.due(120s) == at(65s));
}

void TestReplayClock::anotherSpeedHoldsFromNowOn()
{
    ReplayClock clock(100s, 1);
    clock.run(at(0s));
    clock.setSpeed(at(10s), 10);
    QCOMPARE(clock.speed(), 10.0);
    QVERIFY(clock.at(at(11s)) == 120s);
    QVERIFY(clock.due(130s) == at(12s));
}

void TestReplayClock::itJumpsWhetherItRunsOrNot()
{
    ReplayClock clock(100s, 1);
    clock.jump(at(1s), 50s);
    QVERIFY(clock.at(at(9s)) == 50s);
    clock.run(at(10s));
    clock.jump(at(20s), 30s);
    QVERIFY(clock.at(at(21s)) == 31s);
    QVERIFY(clock.due(32s) == at(22s));
}

void TestReplayClock::farMomentsFallDueFarAway()
{
    ReplayClock clock(0s, 0.001);
    clock.run(at(10s));
    QVERIFY(*clock.due(std::chrono::hours(24 * 365 * 100)) > at(std::chrono::hours(24 * 365 * 99)));
}

REGISTER_TEST(TestReplayClock, NoApplication)
#include "tst_replay_clock.moc"
