// SPDX-License-Identifier: MIT
#include "connection/connection_monitor.h"
#include "support/guarded_test.h"
#include "support/patience.h"
#include "support/register_test.h"
#include "support/robot.h"

#include <QSignalSpy>
#include <QtTest>

namespace {

/// A link whose state the test decides.
struct FakeLink
{
    ZoLinkStatus status{true, std::chrono::system_clock::now(), {}};
    int asked = 0;
    std::vector<std::string> users; ///< of the options with which it was opened anew
    const void* identity = nullptr;

    void goDown(const std::string& cause)
    {
        const auto since = status.connected ? std::chrono::system_clock::now() : status.since;
        status = {false, since, cause};
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
                },
                [this] {
                    goDown("disconnected on request");
                    status.closed = true;
                },
                identity};
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

using User = ConnectionMonitor::User;
using Numbers = std::vector<int>;

/// The numbers of those who were told that their link is lost.
class Losses
{
public:
    explicit Losses(const ConnectionMonitor& monitor)
    {
        QObject::connect(&monitor, &ConnectionMonitor::lost,
                         [this](int number) { told.push_back(number); });
    }

    Numbers told;
};

/// Waits until the monitor has asked this link so often again.
bool isAsked(const FakeLink& link, int times)
{
    const int before = link.asked;
    return QTest::qWaitFor([&] { return link.asked >= before + times; }, patience);
}

} // namespace

/// When the host says that a robot is lost and that it is back.
class TestConnectionMonitor : public GuardedTest
{
    Q_OBJECT

private slots:
    void isConnectedAsSoonAsItWatchesALinkThatIsUp();
    void anInterruptionIsShownButNobodyIsTold();
    void tellsALossOnceWithItsCause();
    void withoutALimitToWaitALossIsToldAtOnce();
    void keepsTheTimeOfTheLossWhenTheCauseChanges();
    void tellsTheReturnOnceAndTheNextLossAgain();
    void aShortInterruptionIsNotShown();
    void showsTheLinkThatIsWorstOff();
    void tellsOnlyThoseWhoseLinkIsLost();
    void aSharedLinkIsAskedAndOpenedOnceForAll();
    void whoJoinsALinkThatIsLostFindsItSo();
    void countsThePanelsThatHaveStoppedUntilTheUserKnows();
    void forgetsALink();
    void aRefusalIsALossAtOnce();
    void aRefusalAfterALossIsToldButIsNoOtherLoss();
    void closesEveryLinkAndTellsAll();
    void opensEveryLinkAnew();
    void opensOnlyThoseThatAreDown();
    void opensThoseThatAreUpOrMendThemselves();
    void aMissingFileLeavesEveryLinkAsItIs();
    void aRemarkIsShownWhileALinkIsDown();
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
    QVERIFY(!monitor.state().lost);
    QVERIFY(qAbs(monitor.state().since.msecsTo(QDateTime::currentDateTime())) < patience);
}

void TestConnectionMonitor::anInterruptionIsShownButNobodyIsTold()
{
    FakeLink robot;
    ConnectionMonitor monitor;
    monitor.watch(robot.link(), User::Panel);
    const Losses losses(monitor);
    const int askedBefore = robot.asked;
    robot.goDown("it fell over");
    TRY_VERIFY(!monitor.state().connected);
    // Soon, but not at the first answer: the first one begins the grace.
    const int mostPolls =
        static_cast<int>(WatchedLink::fGrace.count()) / ConnectionMonitor::fPollInterval + 2;
    QVERIFY(robot.asked >= askedBefore + 2);
    QVERIFY(robot.asked <= askedBefore + mostPolls);
    QVERIFY(!monitor.state().lost);
    QCOMPARE(monitor.state().cause, QString("it fell over"));
    QCOMPARE(monitor.state().concerned, 1);
    QVERIFY(isAsked(robot, 5));
    robot.comeUp();
    TRY_VERIFY(monitor.state().connected);
    QCOMPARE(monitor.state().stopped, 0);
    QCOMPARE(losses.told, Numbers());
}

void TestConnectionMonitor::tellsALossOnceWithItsCause()
{
    FakeLink robot;
    ConnectionMonitor monitor;
    const int number = monitor.watch(robot.link());
    monitor.setLimit(std::chrono::seconds(1));
    const Losses losses(monitor);
    robot.goDown("it fell over");
    TRY_VERIFY(!monitor.state().connected);
    QVERIFY(!monitor.state().lost);
    QElapsedTimer time;
    time.start();
    TRY_COMPARE(losses.told, Numbers{number});
    QVERIFY(time.elapsed() > 400); // and what the grace took
    QVERIFY(monitor.state().lost);
    QCOMPARE(monitor.state().cause, QString("it fell over"));
    QVERIFY(isAsked(robot, 5));
    QCOMPARE(losses.told, Numbers{number});
}

void TestConnectionMonitor::withoutALimitToWaitALossIsToldAtOnce()
{
    FakeLink robot;
    ConnectionMonitor monitor;
    monitor.setLimit(std::chrono::seconds(0));
    const int number = monitor.watch(robot.link());
    const Losses losses(monitor);
    const int askedBefore = robot.asked;
    robot.goDown("it fell over");
    TRY_COMPARE(losses.told, Numbers{number});
    QCOMPARE(robot.asked, askedBefore + 1);
    QVERIFY(monitor.state().lost && !monitor.state().connected);
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
    monitor.setLimit(std::chrono::seconds(0));
    const int number = monitor.watch(robot.link());
    const Losses losses(monitor);
    QSignalSpy changed(&monitor, &ConnectionMonitor::changed);
    robot.goDown("once");
    QVERIFY(changed.wait(patience));
    robot.comeUp();
    QVERIFY(changed.wait(patience));
    QVERIFY(monitor.state().connected && !monitor.state().lost);
    QVERIFY(monitor.state().cause.isEmpty());
    robot.goDown("twice");
    QVERIFY(changed.wait(patience));
    QCOMPARE(losses.told, (Numbers{number, number}));
    QCOMPARE(changed.size(), 3);
}

void TestConnectionMonitor::aShortInterruptionIsNotShown()
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

void TestConnectionMonitor::showsTheLinkThatIsWorstOff()
{
    TwoLinks links;
    links.second.goDown("second");
    TRY_COMPARE(links.state().cause, QString("second"));
    links.first.goDown("first");
    TRY_COMPARE(links.state().cause, QString("first"));
    links.second.comeUp();
    QVERIFY(isAsked(links.first, 3));
    QVERIFY(!links.state().connected);
    links.second.goDown("second");
    links.second.status.closed = true;
    TRY_COMPARE(links.state().cause, QString("second"));
    links.first.refuse("who are you?");
    TRY_COMPARE(links.state().cause, QString("who are you?"));
    QVERIFY(links.state().refused);
    links.second.comeUp();
    links.first.comeUp();
    TRY_VERIFY(links.state().connected);
}

void TestConnectionMonitor::tellsOnlyThoseWhoseLinkIsLost()
{
    FakeLink good;
    FakeLink bad;
    good.identity = &good;
    bad.identity = &bad;
    ConnectionMonitor monitor;
    monitor.setLimit(std::chrono::seconds(0));
    monitor.watch(good.link());
    monitor.watch(good.link(), User::Panel);
    const int second = monitor.watch(bad.link(), User::Panel);
    const int third = monitor.watch(bad.link(), User::Panel);
    const Losses losses(monitor);
    bad.goDown("it fell over");
    TRY_COMPARE(losses.told, (Numbers{second, third}));
    QVERIFY(isAsked(good, 5));
    QCOMPARE(losses.told.size(), std::size_t{2});
    QVERIFY(monitor.isLost(second) && monitor.isLost(third) && !monitor.isLost(1));
    QCOMPARE(monitor.state().panels, 3);
    QCOMPARE(monitor.state().concerned, 2);
}

void TestConnectionMonitor::aSharedLinkIsAskedAndOpenedOnceForAll()
{
    FakeLink robot;
    robot.identity = &robot;
    ConnectionMonitor monitor;
    const int first = monitor.watch(robot.link());
    for (int i = 0; i < 3; ++i)
        monitor.watch(robot.link(), User::Panel);
    monitor.stopWatching(first); // the others have it still
    const int asked = robot.asked;
    monitor.setLimit(std::chrono::hours(1)); // looks at once
    QCOMPARE(robot.asked, asked + 1);
    monitor.reconnect({});
    QCOMPARE(robot.users.size(), std::size_t{1});
}

void TestConnectionMonitor::whoJoinsALinkThatIsLostFindsItSo()
{
    FakeLink robot;
    robot.identity = &robot;
    ConnectionMonitor monitor;
    monitor.watch(robot.link());
    monitor.disconnect();
    const Losses losses(monitor);
    const int late = monitor.watch(robot.link(), User::Panel);
    QVERIFY(monitor.isLost(late));
    QCOMPARE(losses.told, Numbers());
    robot.comeUp();
    TRY_COMPARE(monitor.state().stopped, 1);
    QVERIFY(!monitor.isLost(late));
}

void TestConnectionMonitor::countsThePanelsThatHaveStoppedUntilTheUserKnows()
{
    FakeLink robot;
    robot.identity = &robot;
    ConnectionMonitor monitor;
    monitor.watch(robot.link());
    monitor.watch(robot.link(), User::Panel);
    const int second = monitor.watch(robot.link(), User::Panel);
    monitor.disconnect();
    QCOMPARE(monitor.state().stopped, 0); // there is other news
    robot.comeUp();
    TRY_COMPARE(monitor.state().stopped, 2);
    monitor.watch(robot.link(), User::Panel); // it never stopped
    QCOMPARE(monitor.state().stopped, 2);
    monitor.stopWatching(second); // it is closed
    TRY_COMPARE(monitor.state().stopped, 1);
    monitor.forgetStopped();
    QCOMPARE(monitor.state().stopped, 0);
    monitor.disconnect();
    robot.comeUp();
    TRY_COMPARE(monitor.state().stopped, 2);
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
    const int number = monitor.watch(robot.link());
    const Losses losses(monitor);
    robot.refuse("who are you?");
    const int askedBefore = robot.asked;
    TRY_COMPARE(losses.told, Numbers{number});
    QCOMPARE(robot.asked, askedBefore + 1); // nothing to be gained by a grace
    QVERIFY(monitor.state().refused && monitor.state().lost);
    QCOMPARE(monitor.state().cause, QString("who are you?"));
    QVERIFY(isAsked(robot, 5));
    QCOMPARE(losses.told.size(), std::size_t{1});
}

void TestConnectionMonitor::aRefusalAfterALossIsToldButIsNoOtherLoss()
{
    FakeLink robot;
    ConnectionMonitor monitor;
    monitor.setLimit(std::chrono::seconds(0));
    monitor.watch(robot.link());
    const Losses losses(monitor);
    robot.goDown("it fell over");
    TRY_VERIFY(monitor.state().lost);
    QVERIFY(!monitor.state().refused);
    QSignalSpy changed(&monitor, &ConnectionMonitor::changed);
    robot.refuse("it fell over"); // only that it is final is new
    QVERIFY(changed.wait(patience));
    QVERIFY(monitor.state().refused);
    robot.comeUp();
    QVERIFY(changed.wait(patience));
    QVERIFY(monitor.state().connected);
    QVERIFY(!monitor.state().refused);
    QCOMPARE(losses.told.size(), std::size_t{1});
}

void TestConnectionMonitor::closesEveryLinkAndTellsAll()
{
    TwoLinks links;
    const Losses losses(links.monitor);
    links.monitor.disconnect();
    QCOMPARE(losses.told, (Numbers{links.numberOfFirst, links.numberOfSecond}));
    QVERIFY(links.first.status.closed && links.second.status.closed);
    QVERIFY(links.state().closed && links.state().lost && !links.state().connected);
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

void TestConnectionMonitor::opensOnlyThoseThatAreDown()
{
    TwoLinks links;
    links.first.goDown("it fell over");
    links.monitor.reconnect({}, ConnectionMonitor::Which::Down);
    QCOMPARE(links.first.users.size(), std::size_t{1});
    QVERIFY(links.second.users.empty());
}

void TestConnectionMonitor::opensThoseThatAreUpOrMendThemselves()
{
    TwoLinks links;
    links.first.goDown("it fell over");
    links.monitor.reconnect({}, ConnectionMonitor::Which::Wanted);
    QCOMPARE(links.first.users.size(), std::size_t{1});
    QCOMPARE(links.second.users.size(), std::size_t{1});
    links.monitor.disconnect();
    links.first.comeUp();
    links.first.refuse("who are you?");
    links.monitor.reconnect({}, ConnectionMonitor::Which::Wanted);
    QCOMPARE(links.first.users.size(), std::size_t{1});
    QCOMPARE(links.second.users.size(), std::size_t{1});
}

void TestConnectionMonitor::aMissingFileLeavesEveryLinkAsItIs()
{
    TwoLinks links;
    ConnectionSettings settings;
    settings.tls = true;
    settings.caFile = "/nowhere/authorities.pem";
    const std::string problem = errorOf([&] { links.monitor.reconnect(settings); });
    QVERIFY2(contains(problem, "'/nowhere/authorities.pem' is not there"), problem.c_str());
    QVERIFY(links.first.users.empty() && links.second.users.empty());
    QVERIFY(links.state().connected);
}

void TestConnectionMonitor::aRemarkIsShownWhileALinkIsDown()
{
    FakeLink robot;
    ConnectionMonitor monitor;
    QString remark = "the gate is shut";
    monitor.setRemark([&remark] { return remark; });
    monitor.watch(robot.link());
    QVERIFY(monitor.state().remark.isEmpty());
    robot.goDown("gone");
    TRY_COMPARE(monitor.state().remark, remark);
    remark = "nobody is at the gate"; // by and by
    TRY_COMPARE(monitor.state().remark, remark);
    robot.comeUp();
    TRY_VERIFY(monitor.state().remark.isEmpty());
    monitor.disconnect();
    QVERIFY(monitor.state().closed && monitor.state().remark.isEmpty());
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
