// SPDX-License-Identifier: MIT
#include "connection/connection_monitor.h"
#include "support/guarded_test.h"
#include "support/patience.h"
#include "support/register_test.h"

#include <QSignalSpy>
#include <QtTest>

namespace {

/// A link whose state the test decides.
struct FakeLink
{
    ZoLinkStatus status{true, std::chrono::system_clock::now(), {}};
    int asked = 0;
    std::vector<std::string> users; ///< of the options with which it was opened anew

    void goDown(const std::string& cause)
    {
        status = {false, std::chrono::system_clock::now(), cause};
    }
    void refuse(const std::string& cause)
    {
        goDown(cause);
        status.refused = true;
    }
    void comeUp() { status = {true, std::chrono::system_clock::now(), {}}; }
    ConnectionMonitor::Link link()
    {
        return {[this] {
                    ++asked;
                    return status;
                },
                [this](const ZoBrokerOptions& options) {
                    users.push_back(options.user);
                    goDown("connecting anew");
                }};
    }
};

/// Two links that are watched together.
struct TwoLinks
{
    const ConnectionState& state() const { return monitor.state(); }

    FakeLink first;
    FakeLink second;
    ConnectionMonitor monitor;
    const int numberOfFirst = monitor.watch(first.link());
    const int numberOfSecond = monitor.watch(second.link());
};

} // namespace

/// When the host says that a robot is lost and that it is back.
class TestConnectionMonitor : public GuardedTest
{
    Q_OBJECT

private slots:
    void isConnectedAsSoonAsItWatchesALinkThatIsUp();
    void tellsALossOnceWithItsCause();
    void keepsTheTimeOfTheLossWhenTheCauseChanges();
    void tellsTheReturnOnceAndTheNextLossAgain();
    void aShortInterruptionIsNoLoss();
    void isLostAsLongAsAnyLinkIsDown();
    void forgetsALink();
    void aRefusalIsALossAtOnce();
    void aRefusalAfterALossIsToldButIsNoOtherLoss();
    void aRefusedLinkCountsMoreThanOneThatTriesAgain();
    void opensEveryLinkAnew();
    void tellsOfTheBusiestLinkOnceASecond();
    void aLinkThatIsDownIsNotBusy();
};

void TestConnectionMonitor::isConnectedAsSoonAsItWatchesALinkThatIsUp()
{
    FakeLink robot;
    ConnectionMonitor monitor;
    QVERIFY(!monitor.state().connected);
    monitor.watch(robot.link());
    QVERIFY(monitor.state().connected);
    QVERIFY(!monitor.state().wasLost);
    QVERIFY(qAbs(monitor.state().since.msecsTo(QDateTime::currentDateTime())) < patience);
}

void TestConnectionMonitor::tellsALossOnceWithItsCause()
{
    FakeLink robot;
    ConnectionMonitor monitor;
    monitor.watch(robot.link());
    QSignalSpy lost(&monitor, &ConnectionMonitor::lost);
    const int askedBefore = robot.asked;
    robot.goDown("it fell over");
    QVERIFY(lost.wait(patience));
    // Soon, but not at the first answer: the first one begins the grace.
    const int mostPolls = ConnectionMonitor::fGrace / ConnectionMonitor::fPollInterval + 2;
    QVERIFY(robot.asked >= askedBefore + 2);
    QVERIFY(robot.asked <= askedBefore + mostPolls);
    QVERIFY(!monitor.state().connected);
    QCOMPARE(monitor.state().cause, QString("it fell over"));
    const int askedThen = robot.asked;
    TRY_VERIFY(robot.asked > askedThen + 5);
    QCOMPARE(lost.size(), 1);
}

void TestConnectionMonitor::keepsTheTimeOfTheLossWhenTheCauseChanges()
{
    FakeLink robot;
    ConnectionMonitor monitor;
    monitor.watch(robot.link());
    robot.goDown("no answer");
    TRY_VERIFY(!monitor.state().connected);
    const QDateTime since = monitor.state().since;
    QSignalSpy changed(&monitor, &ConnectionMonitor::changed);
    robot.goDown("refused");
    QVERIFY(changed.wait(patience));
    QCOMPARE(monitor.state().cause, QString("refused"));
    QCOMPARE(monitor.state().since, since);
}

void TestConnectionMonitor::tellsTheReturnOnceAndTheNextLossAgain()
{
    FakeLink robot;
    ConnectionMonitor monitor;
    monitor.watch(robot.link());
    QSignalSpy lost(&monitor, &ConnectionMonitor::lost);
    QSignalSpy changed(&monitor, &ConnectionMonitor::changed);
    robot.goDown("once");
    QVERIFY(lost.wait(patience));
    robot.comeUp();
    QVERIFY(changed.wait(patience));
    QVERIFY(monitor.state().connected);
    QVERIFY(monitor.state().wasLost);
    QVERIFY(monitor.state().cause.isEmpty());
    robot.goDown("twice");
    QVERIFY(lost.wait(patience));
    QCOMPARE(lost.size(), 2);
    QCOMPARE(changed.size(), 3);
}

void TestConnectionMonitor::aShortInterruptionIsNoLoss()
{
    FakeLink robot;
    ConnectionMonitor monitor;
    monitor.watch(robot.link());
    const QSignalSpy changed(&monitor, &ConnectionMonitor::changed);
    for (int i = 0; i < 5; ++i) {
        robot.goDown("a hiccup");
        int asked = robot.asked;
        TRY_VERIFY(robot.asked > asked);
        robot.comeUp();
        asked = robot.asked;
        TRY_VERIFY(robot.asked > asked);
    }
    QCOMPARE(changed.size(), 0);
    QVERIFY(monitor.state().connected);
}

void TestConnectionMonitor::isLostAsLongAsAnyLinkIsDown()
{
    TwoLinks links;
    QSignalSpy lost(&links.monitor, &ConnectionMonitor::lost);
    links.second.goDown("second");
    QVERIFY(lost.wait(patience));
    QCOMPARE(links.state().cause, QString("second"));
    links.first.goDown("first");
    TRY_COMPARE(links.state().cause, QString("first"));
    links.second.comeUp();
    const int asked = links.second.asked;
    TRY_VERIFY(links.first.asked > asked + 2);
    QVERIFY(!links.state().connected);
    links.first.comeUp();
    TRY_VERIFY(links.state().connected);
    QCOMPARE(lost.size(), 1);
}

void TestConnectionMonitor::forgetsALink()
{
    TwoLinks links;
    links.second.goDown("gone");
    TRY_VERIFY(!links.state().connected);
    links.monitor.stopWatching(links.numberOfSecond);
    TRY_VERIFY(links.state().connected);
    const int asked = links.second.asked;
    const int askedOther = links.first.asked;
    TRY_VERIFY(links.first.asked > askedOther + 1);
    QCOMPARE(links.second.asked, asked);
}

void TestConnectionMonitor::aRefusalIsALossAtOnce()
{
    FakeLink robot;
    ConnectionMonitor monitor;
    monitor.watch(robot.link());
    QSignalSpy lost(&monitor, &ConnectionMonitor::lost);
    robot.refuse("who are you?");
    const int askedBefore = robot.asked;
    QVERIFY(lost.wait(patience));
    QCOMPARE(robot.asked, askedBefore + 1); // nothing to be gained by a grace
    QVERIFY(monitor.state().refused);
    QCOMPARE(monitor.state().cause, QString("who are you?"));
    TRY_VERIFY(robot.asked > askedBefore + 5);
    QCOMPARE(lost.size(), 1);
}

void TestConnectionMonitor::aRefusalAfterALossIsToldButIsNoOtherLoss()
{
    FakeLink robot;
    ConnectionMonitor monitor;
    monitor.watch(robot.link());
    QSignalSpy lost(&monitor, &ConnectionMonitor::lost);
    robot.goDown("it fell over");
    QVERIFY(lost.wait(patience));
    QVERIFY(!monitor.state().refused);
    QSignalSpy changed(&monitor, &ConnectionMonitor::changed);
    robot.refuse("it fell over"); // only that it is final is new
    QVERIFY(changed.wait(patience));
    QVERIFY(monitor.state().refused);
    robot.comeUp();
    QVERIFY(changed.wait(patience));
    QVERIFY(monitor.state().connected);
    QVERIFY(!monitor.state().refused);
    QCOMPARE(lost.size(), 1);
}

void TestConnectionMonitor::aRefusedLinkCountsMoreThanOneThatTriesAgain()
{
    TwoLinks links;
    links.first.goDown("no answer");
    TRY_COMPARE(links.state().cause, QString("no answer"));
    links.second.refuse("who are you?");
    TRY_COMPARE(links.state().cause, QString("who are you?"));
    QVERIFY(links.state().refused);
}

void TestConnectionMonitor::opensEveryLinkAnew()
{
    TwoLinks links;
    links.first.refuse("who are you?");
    TRY_VERIFY(links.state().refused);
    ConnectionSettings settings;
    settings.user = "alice";
    links.monitor.reconnect(settings);
    const std::vector<std::string> alice{"alice"};
    QCOMPARE(links.first.users, alice);
    QCOMPARE(links.second.users, alice); // its login will be refused next time
    QVERIFY(!links.state().refused);
    QCOMPARE(links.state().cause, QString("connecting anew"));
}

void TestConnectionMonitor::tellsOfTheBusiestLinkOnceASecond()
{
    TwoLinks links;
    links.first.status.answersPerSecond = 10;
    links.second.status.answersPerSecond = 20;
    std::vector<double> told;
    QElapsedTimer time;
    time.start();
    connect(&links.monitor, &ConnectionMonitor::measured,
            [&](const ZoLinkStatus& link) { told.push_back(link.answersPerSecond); });
    TRY_VERIFY(told.size() == 2);
    QVERIFY(time.elapsed() > ConnectionMonitor::fMeasureInterval);
    QCOMPARE(told, (std::vector<double>{20, 20}));
    links.second.status.answersPerSecond = 0;
    TRY_VERIFY(told.size() == 3);
    QCOMPARE(told.back(), 10.0);
}

void TestConnectionMonitor::aLinkThatIsDownIsNotBusy()
{
    TwoLinks links;
    links.first.status.answersPerSecond = 10;
    links.second.status.answersPerSecond = 20;
    links.second.status.connected = false;
    QCOMPARE(links.monitor.busiest().answersPerSecond, 10.0);
    links.first.status.connected = false;
    QVERIFY(!links.monitor.busiest().connected);
}

REGISTER_TEST(TestConnectionMonitor, QCoreApplication)
#include "tst_connection_monitor.moc"
