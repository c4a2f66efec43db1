// SPDX-License-Identifier: MIT
#include "session.h"
#include "support/following.h"
#include "support/guarded_test.h"
#include "support/host.h"
#include "support/patience.h"
#include "support/redis_server.h"
#include "support/register_test.h"

#include <tarvek/tarvek_widget.h>

#include <QComboBox>
#include <QSignalSpy>
#include <QtTest>

using std::chrono::seconds;

/// Real panels of a robot that goes away and comes back.
class TestLostRobot : public GuardedTest
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void panelsGoOnByThemselvesWhenTheRobotIsBackAfterTwoSeconds();
    void panelsStopAfterTheLimitAndGoOnWhenToldTo();
    void aPasswordThatWasChangedMeanwhileStopsPanelsAtOnce();
    void aShortGapStopsNoPanel();
    void aLinkThatComesAndGoesStopsNoPanel();
    void panelsOfADisconnectedWindowGoOnWhenToldTo();

private:
    struct WatchedPanel
    {
        QPointer<TarvekWidget> panel;
        QSharedPointer<QSignalSpy> disconnections;
    };

    void open();
    void openPanel();
    void set(int value) { fRobot->command({"SET", "Key", std::to_string(value)}); }
    static QString valueOf(const WatchedPanel& panel) { return rowOf(panel.panel, "Key")->text(4); }
    bool areConnected() const { return fWindow->monitor().state().connected; }
    bool allShow(int value) const;
    QList<int> disconnections() const;
    void startFetching(const WatchedPanel& panel) const;
    void waitUntilNothingIsAsked() const;

    QScopedPointer<RedisServer> fRobot;
    QScopedPointer<Session> fSession;
    QPointer<MainWindow> fWindow;
    QList<WatchedPanel> fPanels;
};

void TestLostRobot::init()
{
    RedisServer::Options options;
    options.defaultPassword = "old-word";
    fRobot.reset(new RedisServer(options));
    fSession.reset(new Session);
}

void TestLostRobot::cleanup()
{
    fPanels.clear();
    fSession.reset();
    fRobot.reset();
    GuardedTest::cleanup();
}

/// A window with two panels that follow a key.
void TestLostRobot::open()
{
    set(1);
    fWindow =
        fSession->connectTo(QString("127.0.0.1:%1").arg(fRobot->port()), "old-word", following());
    QVERIFY(fWindow);
    openPanel();
    openPanel();
    QCOMPARE(fRobot->clients(), 1);
    TRY_VERIFY(allShow(1));
}

void TestLostRobot::openPanel()
{
    TarvekWidget* panel = fSession->open(fWindow, Session::fAllKeys);
    QVERIFY(panel);
    clickBox(panel, "Key", 1); // watch
    fPanels += {panel, QSharedPointer<QSignalSpy>::create(panel, &TarvekWidget::disconnected)};
}

bool TestLostRobot::allShow(int value) const
{
    return std::all_of(fPanels.begin(), fPanels.end(), [value](const WatchedPanel& panel) {
        return valueOf(panel) == QString::number(value);
    });
}

QList<int> TestLostRobot::disconnections() const
{
    QList<int> counts;
    for (const WatchedPanel& panel : fPanels)
        counts += static_cast<int>(panel.disconnections->size());
    return counts;
}

/// As users do, with the panel's own choice of how it fetches.
void TestLostRobot::startFetching(const WatchedPanel& panel) const
{
    auto* mode = panel.panel->findChild<QComboBox*>();
    QTest::keyClick(mode, Qt::Key_Down);
    whenShown("QInputDialog", [](QDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Return); });
    QTest::keyClick(mode, Qt::Key_Up);
}

void TestLostRobot::waitUntilNothingIsAsked() const
{
    int quiet = 0;
    const auto counting = connect(
        &fWindow->monitor(), &ConnectionMonitor::measured, [&quiet](const ZoLinkStatus& link) {
            const bool isQuiet = link.connected && link.answersPerSecond == 0;
            quiet = isQuiet ? quiet + 1 : 0;
        });
    TRY_VERIFY(quiet >= 2);
    disconnect(counting);
}

void TestLostRobot::panelsGoOnByThemselvesWhenTheRobotIsBackAfterTwoSeconds()
{
    open();
    fRobot->kill();
    TRY_VERIFY(!areConnected());
    const QDateTime since = fWindow->monitor().state().since;
    TRY_VERIFY(since.msecsTo(QDateTime::currentDateTime()) > 2000);
    QVERIFY(allShow(1));
    fRobot->restart();
    set(2);
    TRY_VERIFY(allShow(2));
    QCOMPARE(disconnections(), (QList<int>{0, 0}));
}

void TestLostRobot::panelsStopAfterTheLimitAndGoOnWhenToldTo()
{
    open();
    fWindow->monitor().setLimit(seconds(1));
    fRobot->kill();
    TRY_COMPARE(disconnections(), (QList<int>{1, 1}));
    fRobot->restart();
    TRY_VERIFY(areConnected());
    set(2);
    waitUntilNothingIsAsked();
    QVERIFY(allShow(1));
    startFetching(fPanels.last());
    TRY_COMPARE(valueOf(fPanels.last()), QString("2"));
    QCOMPARE(valueOf(fPanels.first()), QString("1"));
    QCOMPARE(disconnections(), (QList<int>{1, 1}));
}

void TestLostRobot::aPasswordThatWasChangedMeanwhileStopsPanelsAtOnce()
{
    open();
    fRobot->kill();
    TRY_VERIFY(!areConnected());
    QCOMPARE(disconnections(), (QList<int>{0, 0}));
    fRobot->restartWithPassword("new-word");
    TRY_VERIFY(fWindow->monitor().state().refused);
    TRY_COMPARE(disconnections(), (QList<int>{1, 1}));
    const QDateTime since = fWindow->monitor().state().since;
    TRY_VERIFY(since.msecsTo(QDateTime::currentDateTime()) > 2000);
    QCOMPARE(disconnections(), (QList<int>{1, 1}));
}

void TestLostRobot::aShortGapStopsNoPanel()
{
    open();
    fRobot->command({"CLIENT", "KILL", "TYPE", "normal"});
    set(2);
    TRY_VERIFY(allShow(2));
    QCOMPARE(disconnections(), (QList<int>{0, 0}));
}

void TestLostRobot::aLinkThatComesAndGoesStopsNoPanel()
{
    open();
    fWindow->monitor().setLimit(seconds(5)); // longer than each gap, shorter than all
    QElapsedTimer time;
    time.start();
    int gaps = 0;
    while (time.elapsed() < 12000) {
        fRobot->command({"CLIENT", "KILL", "TYPE", "normal"});
        TRY_COMPARE(fRobot->clients(), 1);
        ++gaps;
    }
    QVERIFY(gaps > 3);
    set(2);
    TRY_VERIFY(allShow(2));
    QCOMPARE(disconnections(), (QList<int>{0, 0}));
}

void TestLostRobot::panelsOfADisconnectedWindowGoOnWhenToldTo()
{
    open();
    fWindow->monitor().disconnect();
    TRY_COMPARE(disconnections(), (QList<int>{1, 1}));
    TRY_COMPARE(fRobot->clients(), 0);
    set(2);
    fWindow->reconnect();
    TRY_VERIFY(areConnected());
    waitUntilNothingIsAsked();
    QVERIFY(allShow(1));
    startFetching(fPanels.last());
    TRY_COMPARE(valueOf(fPanels.last()), QString("2"));
}

REGISTER_TEST(TestLostRobot, HostApplication)
#include "tst_lost_robot.moc"
