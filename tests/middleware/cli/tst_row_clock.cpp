// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <row_clock.h>

#include <QtTest>

#include <optional>

using namespace std::chrono_literals;

/// The times of a recording's rows.
class TestRowClock : public GuardedTest
{
    Q_OBJECT

private slots:
    void init();
    void aTimeIsThatOfTheWallClockAtTheMoment();
    void smallDifferencesOfTheClocksAreNoise();
    void aClockSetAheadIsFollowedAndTold();
    void aClockSetBackIsToldAndNotFollowed();
    void aClockSetRightAgainIsFollowedFromThere();
    void noTimeIsBeforeTheOneBefore();
    void theClocksOfTheMachineAreReadTogether();

private:
    std::int64_t timeAt(std::chrono::milliseconds steady, std::chrono::milliseconds wall)
    {
        return fClock
            ->timeOf(reading(steady, wall).steady, reading(steady, wall),
                     [this](const std::string& text) { fTold += QString::fromStdString(text); })
            .count();
    }
    static ClockReading reading(std::chrono::milliseconds steady, std::chrono::milliseconds wall)
    {
        return {std::chrono::steady_clock::time_point(steady),
                std::chrono::system_clock::time_point(wall)};
    }

    std::optional<RowClock> fClock;
    QStringList fTold;
};

void TestRowClock::init()
{
    fClock.emplace(reading(1000ms, 500000ms));
    fTold.clear();
}

void TestRowClock::aTimeIsThatOfTheWallClockAtTheMoment()
{
    const auto tell = [](const std::string&) {};
    const ClockReading now = reading(1300ms, 500300ms);
    QCOMPARE(fClock->timeOf(reading(1100ms, 0ms).steady, now, tell).count(), 500100);
    QCOMPARE(timeAt(1400ms, 500400ms), 500400);
    QVERIFY(fTold.isEmpty());
}

void TestRowClock::smallDifferencesOfTheClocksAreNoise()
{
    QCOMPARE(timeAt(2000ms, 501010ms), 501000);
    QCOMPARE(timeAt(3000ms, 501985ms), 502000);
    QVERIFY(fTold.isEmpty());
}

void TestRowClock::aClockSetAheadIsFollowedAndTold()
{
    QCOMPARE(timeAt(2000ms, 3601000ms), 3601000);
    QCOMPARE(timeAt(3000ms, 3602000ms), 3602000);
    QCOMPARE(fTold, QStringList{"this machine's clock was set ahead by 3100.000 s"});
}

void TestRowClock::aClockSetBackIsToldAndNotFollowed()
{
    QCOMPARE(timeAt(2000ms, 1000ms), 501000);
    QCOMPARE(timeAt(3000ms, 2000ms), 502000);
    QCOMPARE(fTold, QStringList{"this machine's clock was set back by 500.000 s: times go on as if "
                                "it had not been"});
}

void TestRowClock::aClockSetRightAgainIsFollowedFromThere()
{
    timeAt(2000ms, 1000ms);
    QCOMPARE(timeAt(3000ms, 502000ms), 502000);
    QCOMPARE(timeAt(4000ms, 503000ms), 503000);
    QCOMPARE(fTold.size(), 2);
}

void TestRowClock::noTimeIsBeforeTheOneBefore()
{
    QCOMPARE(timeAt(2000ms, 501000ms), 501000);
    QCOMPARE(timeAt(1500ms, 500500ms), 501000);
}

void TestRowClock::theClocksOfTheMachineAreReadTogether()
{
    const ClockReading first = readClocks();
    const ClockReading second = readClocks();
    const auto difference = (second.wall - first.wall) - (second.steady - first.steady);
    QVERIFY(std::chrono::abs(difference) < 2ms);
}

REGISTER_TEST(TestRowClock, NoApplication)
#include "tst_row_clock.moc"
