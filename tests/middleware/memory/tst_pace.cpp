// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <memory/pace.h>

#include <QtTest>

using namespace zo;

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

const Pace::Time start{std::chrono::hours(1)};

// After so many, what is learned has settled.
constexpr int enough = 100;

/// Of a list that is asked for every `period`; its last call was at `start`.
Pace paceOf(Pace::Duration period)
{
    Pace pace;
    for (int i = enough; i >= 0; --i)
        pace.called(start - i * period);
    return pace;
}

/// Each of its rounds about `keys` took `response` over a way of `trip`; the last one began at
/// `last`.
void answer(Pace& pace, milliseconds response, milliseconds trip, int keys = 1,
            Pace::Time last = start)
{
    for (int i = enough; i >= 0; --i) {
        const Pace::Time begin = last - i * seconds(10);
        pace.answered(begin, begin + response, keys, trip);
    }
}

} // namespace

/// What is learned about a list that is asked for again and again.
class TestPace : public GuardedTest
{
    Q_OBJECT

private slots:
    void oneCallMakesNoRhythm();
    void twoCallsByATimerMakeOne();
    void callsByHandMakeOneWhenTheyRepeat();
    void whatRepeatsIsTheRhythmWhateverCameBefore();
    void whoMissesTwoPeriodsIsOver();
    void aRoundIsAnsweredJustBeforeTheNextCall();
    void overALongWayItIsMeantForACallBehindTheNext();
    void straysOfTheWayAreAllowedForWithinLimits();
    void moreRoundsThanTheWayHoldsWouldWait();
    void aLongRoundSaysNothingAboutShortOnes();
    void straysOfTheWayAreNoTransfer();
    void theTurnReadsAllInTime_data();
    void theTurnReadsAllInTime();
    void theTurnTakesAQuarterOfTheLinkAtMost();
    void nothingIsLateWhileItsTurnIsToCome();
    void anAnswerStaysFreshForAQuarterOfThePeriod();
};

void TestPace::oneCallMakesNoRhythm()
{
    Pace pace;
    QVERIFY(!pace.isKnown());
    pace.called(start);
    QVERIFY(!pace.isKnown());
    QVERIFY(pace.lastCall() == start);
}

void TestPace::twoCallsByATimerMakeOne()
{
    Pace pace;
    pace.called(start);
    pace.called(start + milliseconds(250));
    QVERIFY(pace.isKnown());
    QVERIFY(pace.period() == milliseconds(250));
}

void TestPace::callsByHandMakeOneWhenTheyRepeat()
{
    Pace pace;
    pace.called(start);
    pace.called(start + seconds(1));
    QVERIFY(!pace.isKnown());
    pace.called(start + seconds(3));
    QVERIFY(!pace.isKnown());
    pace.called(start + seconds(5));
    QVERIFY(pace.isKnown());
    pace.called(start + seconds(8)); // one that is late takes no rhythm away
    QVERIFY(pace.isKnown());
}

void TestPace::whatRepeatsIsTheRhythmWhateverCameBefore()
{
    Pace pace = paceOf(seconds(5));
    pace.called(start + milliseconds(600));
    QVERIFY(pace.period() > seconds(4)); // once is by chance
    pace.called(start + milliseconds(1220));
    QVERIFY(pace.period() == milliseconds(620));
    pace.called(start + milliseconds(1820));
    QVERIFY(pace.period() > milliseconds(600) && pace.period() < milliseconds(620));
}

void TestPace::whoMissesTwoPeriodsIsOver()
{
    const Pace slow = paceOf(seconds(2));
    QVERIFY(!slow.isOver(start + seconds(4)));
    QVERIFY(slow.isOver(start + seconds(4) + milliseconds(1)));
    const Pace fast = paceOf(milliseconds(100));
    QVERIFY(!fast.isOver(start + seconds(1)));
    QVERIFY(fast.isOver(start + seconds(1) + milliseconds(1)));
    Pace none;
    none.called(start);
    QVERIFY(!none.isOver(start + seconds(30)));
    QVERIFY(none.isOver(start + seconds(31)));
}

void TestPace::aRoundIsAnsweredJustBeforeTheNextCall()
{
    Pace pace = paceOf(milliseconds(100));
    answer(pace, milliseconds(20), milliseconds(20));
    const auto answered = pace.beginOfRound() + milliseconds(20);
    QVERIFY(answered <= start + milliseconds(100));
    QVERIFY(answered >= start + milliseconds(98));
}

void TestPace::overALongWayItIsMeantForACallBehindTheNext()
{
    Pace pace = paceOf(milliseconds(100));
    answer(pace, milliseconds(250), milliseconds(250));
    QVERIFY(pace.beginOfRound() >= start);
    const auto answered = pace.beginOfRound() + milliseconds(250);
    QVERIFY(answered <= start + milliseconds(300));
    QVERIFY(answered >= start + milliseconds(298));
}

void TestPace::straysOfTheWayAreAllowedForWithinLimits()
{
    Pace pace = paceOf(seconds(1));
    for (int i = 0; i < enough; ++i) { // 200 ms, and 100 more or less
        const Pace::Time begin = start + i * seconds(1);
        pace.answered(begin, begin + milliseconds(i % 2 == 0 ? 100 : 300), 1, milliseconds(100));
    }
    // Half of the time that the answer stays fresh, in place of three deviations.
    const auto answered = pace.beginOfRound() + milliseconds(200);
    QVERIFY(answered <= start + milliseconds(1000 - 150));
    QVERIFY(answered >= start + milliseconds(1000 - 200));
}

void TestPace::moreRoundsThanTheWayHoldsWouldWait()
{
    Pace pace = paceOf(milliseconds(100));
    answer(pace, milliseconds(200), milliseconds(200)); // there is nothing but the way
    QCOMPARE(pace.mostUnderWay(), 8);
    Pace slow = paceOf(milliseconds(100));
    answer(slow, milliseconds(200), milliseconds(120)); // 80 ms for the bytes
    QCOMPARE(slow.mostUnderWay(), 2);
    Pace slower = paceOf(milliseconds(100));
    answer(slower, milliseconds(400), milliseconds(120));
    QCOMPARE(slower.mostUnderWay(), 1);
}

void TestPace::aLongRoundSaysNothingAboutShortOnes()
{
    Pace pace = paceOf(milliseconds(100));
    answer(pace, milliseconds(20), milliseconds(20), 999);
    const auto begin = pace.beginOfRound();
    answer(pace, milliseconds(2050), milliseconds(20), 1000, start + seconds(2000));
    pace.planned(999);
    QCOMPARE(pace.mostUnderWay(), 8);
    QVERIFY(pace.beginOfRound() == begin);
    pace.planned(1000);
    QCOMPARE(pace.mostUnderWay(), 1);
    QVERIFY(pace.beginOfRound() != begin);
}

void TestPace::straysOfTheWayAreNoTransfer()
{
    Pace pace = paceOf(milliseconds(100));
    answer(pace, milliseconds(200), milliseconds(100), 200);
    QCOMPARE(pace.mostUnderWay(), 2); // 100 ms may be for the bytes
    answer(pace, milliseconds(1100), milliseconds(100), 10000, start + seconds(2000));
    // But no: these take 19 ms.
    answer(pace, milliseconds(200), milliseconds(100), 190, start + seconds(4000));
    QCOMPARE(pace.mostUnderWay(), 6);
}

void TestPace::theTurnReadsAllInTime_data()
{
    QTest::addColumn<int>("period");
    QTest::addColumn<int>("keys");
    QTest::addColumn<int>("turn");
    QTest::newRow("none") << 100 << 0 << 0;
    QTest::newRow("few") << 100 << 3 << 1;
    QTest::newRow("in 8 s") << 100 << 800 << 10;
    QTest::newRow("in 18 rounds") << 2000 << 180 << 10;
    QTest::newRow("one more") << 2000 << 181 << 11;
}

void TestPace::theTurnReadsAllInTime()
{
    QFETCH(int, period);
    QFETCH(int, keys);
    QTEST(paceOf(milliseconds(period)).turnOf(keys), "turn");
}

void TestPace::theTurnTakesAQuarterOfTheLinkAtMost()
{
    Pace pace = paceOf(milliseconds(100));
    answer(pace, milliseconds(1000), milliseconds(0), 1000); // 1 ms for each
    QCOMPARE(pace.turnOf(1000), 13);
    QCOMPARE(pace.turnOf(10000), 25);
    Pace few = paceOf(milliseconds(100)); // too few to be told from the way's straying
    answer(few, milliseconds(1000), milliseconds(0), 999);
    QCOMPARE(few.turnOf(10000), 125);
    pace.answered(start + seconds(100), start + seconds(109), 1000, {}); // a pause is no measure
    QCOMPARE(pace.turnOf(10000), 25);
}

void TestPace::nothingIsLateWhileItsTurnIsToCome()
{
    QCOMPARE(paceOf(milliseconds(100)).roundsUntilLate(800), 19);
    QCOMPARE(paceOf(milliseconds(100)).roundsUntilLate(0), 19);
    QCOMPARE(paceOf(seconds(2)).roundsUntilLate(180), 19);
    Pace slow = paceOf(milliseconds(100));
    answer(slow, milliseconds(1000), milliseconds(0), 1000);
    QCOMPARE(slow.roundsUntilLate(10000), 400 + 1);
}

void TestPace::anAnswerStaysFreshForAQuarterOfThePeriod()
{
    QVERIFY(paceOf(seconds(2)).freshness() == milliseconds(600));
}

REGISTER_TEST(TestPace, NoApplication)

#include "tst_pace.moc"
