// SPDX-License-Identifier: MIT
#include "connection/loss_rule.h"
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <QtTest>

#include <random>

namespace {

using std::chrono::hours;
using std::chrono::milliseconds;
using std::chrono::minutes;
using std::chrono::nanoseconds;
using std::chrono::seconds;
using State = LossRule::State;

ZoLinkStatus up()
{
    ZoLinkStatus link;
    link.connected = true;
    return link;
}

ZoLinkStatus refused()
{
    ZoLinkStatus link;
    link.refused = true;
    return link;
}

ZoLinkStatus closed()
{
    ZoLinkStatus link;
    link.closed = true;
    return link;
}

ZoLinkStatus opening()
{
    ZoLinkStatus link;
    link.opening = true;
    return link;
}

const ZoLinkStatus down;
constexpr milliseconds lookAround{100}; ///< the time between two looks

/// A rule in virtual time, which counts the losses that it tells.
class Watch
{
public:
    explicit Watch(LossRule::Limit limit) : rule(limit) {}

    void see(const ZoLinkStatus& link) { losses += rule.see(fNow, link) ? 1 : 0; }
    /// Sees `link` now, and again and again for as long as `time`.
    void see(const ZoLinkStatus& link, nanoseconds time)
    {
        const LossRule::Time end = fNow + time;
        for (see(link); fNow + lookAround <= end; see(link))
            fNow += lookAround;
        pass(end - fNow);
        see(link);
    }
    void pass(nanoseconds time) { fNow += time; }

    LossRule rule;
    int losses = 0;

private:
    LossRule::Time fNow{hours(1000)};
};

} // namespace

/// When a link counts as lost, in virtual time.
class TestLossRule : public GuardedTest
{
    Q_OBJECT

private slots:
    void aLinkThatIsUpIsConnected();
    void aRobotThatIsBackInTimeWasInterrupted_data();
    void aRobotThatIsBackInTimeWasInterrupted();
    void itIsLostWhenTheLimitHasPassed();
    void aLimitOfNothingLosesAtOnce();
    void whatNothingMendsIsLostAtOnce_data();
    void whatNothingMendsIsLostAtOnce();
    void anOutageIsOneLossWhateverItsCauses();
    void connectingAnewDoesNotEndALoss();
    void openingAnewIsNoLossUntilItFails();
    void theNextOutageIsAnotherLoss();
    void aLinkThatComesAndGoesIsNotLost();
    void aLinkThatWasUpBetweenTwoLooksIsInAnotherOutage();
    void aLowerLimitCountsForThePresentOutage();
    void aHigherLimitTakesNoLossBack();
    void tellsHowLongItIsDown();
    void everyHistoryHasTheLossesOfItsOutages();
};

void TestLossRule::aLinkThatIsUpIsConnected()
{
    Watch watch(hours(1));
    QVERIFY(watch.rule.state() == State::Connected);
    watch.see(up(), hours(2));
    QVERIFY(watch.rule.state() == State::Connected);
    QCOMPARE(watch.losses, 0);
}

void TestLossRule::aRobotThatIsBackInTimeWasInterrupted_data()
{
    QTest::addColumn<int>("away");
    QTest::newRow("a moment") << 1;
    QTest::newRow("2 s") << 2000;
    QTest::newRow("2 min") << 120000;
    QTest::newRow("nearly an hour") << 3599999;
}

void TestLossRule::aRobotThatIsBackInTimeWasInterrupted()
{
    QFETCH(int, away);
    Watch watch(hours(1));
    watch.see(up());
    watch.see(down, milliseconds(away));
    QVERIFY(watch.rule.state() == State::Interrupted);
    watch.see(up());
    QVERIFY(watch.rule.state() == State::Connected);
    QCOMPARE(watch.losses, 0);
}

void TestLossRule::itIsLostWhenTheLimitHasPassed()
{
    Watch watch(minutes(2));
    watch.see(up());
    watch.see(down, minutes(2) - nanoseconds(1));
    QCOMPARE(watch.losses, 0);
    watch.pass(nanoseconds(1));
    watch.see(down);
    QCOMPARE(watch.losses, 1);
    QVERIFY(watch.rule.state() == State::Lost);
    watch.see(down, hours(1));
    QCOMPARE(watch.losses, 1);
}

void TestLossRule::aLimitOfNothingLosesAtOnce()
{
    Watch watch(seconds(0));
    watch.see(up());
    watch.see(down);
    QCOMPARE(watch.losses, 1);
    QVERIFY(watch.rule.state() == State::Lost);
}

void TestLossRule::whatNothingMendsIsLostAtOnce_data()
{
    QTest::addColumn<bool>("isRefused");
    QTest::newRow("refused") << true;
    QTest::newRow("closed") << false;
}

void TestLossRule::whatNothingMendsIsLostAtOnce()
{
    QFETCH(bool, isRefused);
    Watch watch(hours(1));
    watch.see(up());
    watch.see(isRefused ? refused() : closed());
    QCOMPARE(watch.losses, 1);
    QVERIFY(watch.rule.state() == State::Lost);
}

void TestLossRule::anOutageIsOneLossWhateverItsCauses()
{
    Watch watch(seconds(1));
    watch.see(up());
    watch.see(down, seconds(2));
    watch.see(refused(), seconds(2));
    watch.see(closed(), seconds(2));
    watch.see(down, seconds(2));
    QCOMPARE(watch.losses, 1);
}

void TestLossRule::connectingAnewDoesNotEndALoss()
{
    Watch watch(hours(1));
    watch.see(closed());
    watch.see(down, seconds(1)); // being opened
    QVERIFY(watch.rule.state() == State::Lost);
    watch.see(up());
    QVERIFY(watch.rule.state() == State::Connected);
}

void TestLossRule::openingAnewIsNoLossUntilItFails()
{
    Watch watch(seconds(0));
    watch.see(up());
    watch.see(opening());
    watch.see(up());
    QCOMPARE(watch.losses, 0);
    watch.see(opening(), seconds(1));
    QVERIFY(watch.rule.state() == State::Interrupted);
    watch.see(down);
    QCOMPARE(watch.losses, 1);
}

void TestLossRule::theNextOutageIsAnotherLoss()
{
    Watch watch(seconds(1));
    watch.see(down, seconds(1));
    watch.see(up());
    watch.see(down, milliseconds(999));
    QCOMPARE(watch.losses, 1);
    watch.see(down, milliseconds(1));
    QCOMPARE(watch.losses, 2);
}

void TestLossRule::aLinkThatComesAndGoesIsNotLost()
{
    Watch watch(seconds(2));
    for (int i = 0; i < 1000; ++i) {
        watch.see(down, milliseconds(1900));
        watch.see(up(), milliseconds(100));
    }
    QCOMPARE(watch.losses, 0);
}

void TestLossRule::aLinkThatWasUpBetweenTwoLooksIsInAnotherOutage()
{
    Watch watch(seconds(2));
    ZoLinkStatus link;
    for (int i = 0; i < 10; ++i) {
        link.since += seconds(1);
        watch.see(link, milliseconds(1900));
    }
    QCOMPARE(watch.losses, 0);
    watch.see(link, milliseconds(100));
    QCOMPARE(watch.losses, 1);
    link.since += seconds(1);
    watch.see(link, milliseconds(1999));
    QVERIFY(watch.rule.state() == State::Interrupted);
    QCOMPARE(watch.losses, 1);
}

void TestLossRule::aLowerLimitCountsForThePresentOutage()
{
    Watch watch(hours(1));
    watch.see(down, minutes(1));
    watch.rule.setLimit(minutes(1));
    watch.see(down);
    QCOMPARE(watch.losses, 1);
}

void TestLossRule::aHigherLimitTakesNoLossBack()
{
    Watch watch(seconds(1));
    watch.see(down, seconds(1));
    watch.rule.setLimit(hours(1));
    watch.see(down, seconds(1));
    QVERIFY(watch.rule.state() == State::Lost);
    watch.see(up());
    watch.see(down, minutes(59));
    QCOMPARE(watch.losses, 1);
}

void TestLossRule::tellsHowLongItIsDown()
{
    Watch watch(hours(1));
    watch.see(down);
    QVERIFY(watch.rule.downFor() == seconds(0));
    watch.see(down, seconds(3));
    QVERIFY(watch.rule.downFor() == seconds(3));
    watch.see(up());
    QVERIFY(watch.rule.downFor() == seconds(0));
}

/// Tells a second time, outage by outage, whether it is a loss.
void TestLossRule::everyHistoryHasTheLossesOfItsOutages()
{
    std::mt19937 random(7);
    const auto below = [&random](int limit) {
        return std::uniform_int_distribution<int>(0, limit - 1)(random);
    };
    for (int history = 0; history < 2000; ++history) {
        const seconds limit(below(5));
        Watch watch(limit);
        int expected = 0;
        for (int outage = below(5); outage > 0; --outage) {
            watch.see(up(), milliseconds(below(10)));
            const milliseconds lasts(below(6000));
            const int end = below(4); // in a refusal, closed, or neither
            watch.see(down, lasts);
            if (end == 0)
                watch.see(refused());
            if (end == 1)
                watch.see(closed());
            expected += lasts >= limit || end < 2 ? 1 : 0;
        }
        QCOMPARE(watch.losses, expected);
    }
}

REGISTER_TEST(TestLossRule, QCoreApplication)
#include "tst_loss_rule.moc"
