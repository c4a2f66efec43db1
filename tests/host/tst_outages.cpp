// SPDX-License-Identifier: MIT
#include "connection/loss_limit.h"
#include "support/desktop_bench.h"
#include "support/guarded_test.h"
#include "support/host.h"
#include "support/patience.h"
#include "support/redis_server.h"
#include "support/register_test.h"

#include <tarvek/tarvek_widget.h>

#include <QAction>
#include <QDoubleSpinBox>
#include <QInputDialog>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
#include <QtTest>

#include <algorithm>

using std::chrono::hours;
using std::chrono::seconds;

/// What a window shows, and its panels are told, when its robot goes away, and what its user can do
/// about it.
class TestOutages : public GuardedTest, private DesktopBench
{
    Q_OBJECT

private slots:
    void init() { setUp(); }
    void cleanup()
    {
        tearDown();
        GuardedTest::cleanup();
    }
    void anInterruptionIsShownAndTellsNoPanel();
    void aLossTellsEachPanelOnceAndIsShown();
    void theNextLossIsToldAgain();
    void disconnectingTellsEachPanelOnceAndLeavesTheRobotAlone();
    void disconnectingTellsThePanelsOfEveryWindowThatSharesTheLink();
    void reconnectingOpensASharedLinkOnceAndSaysWhatPanelsNeed();
    void theInstructionGoesWithTheLastPanelThatNeedsIt();
    void reconnectingAfterARefusalAsksForWhatWasRefused();
    void aPanelsOwnBadLinkStopsNoOtherPanel();
    void aPanelWaitsForNoRobotThatIsAway();
    void aTitleThatChangesMeanwhileKeepsWhatIsSaidOfTheConnection();
    void theBarsButtonsDoWhatTheMenuDoes();
    void theUserSaysHowLongToWait();
    void theCommandLineSaysHowLongToWait();
    void theSettingsSayHowLongToWait();

private:
    void openPanels(int number);
    QList<int> disconnections() const;
    void choose(const QString& text) const;
    QAction* action(const QString& text) const;
    bool isBarShown() const { return window()->findChild<QWidget*>("outageBar")->isVisible(); }
    QString barText() const { return window()->findChild<QLabel*>("outageText")->text(); }
    bool isTitled(const QString& prefix) const
    {
        return window()->windowTitle().startsWith(prefix);
    }
    bool isConnected() const { return window()->monitor().state().connected; }
};

/// A window with so many panels that share its link.
void TestOutages::openPanels(int number)
{
    if (!fLine.connectAtOnce)
        fLine = robotLine(*fRobot);
    start();
    QVERIFY(window());
    for (int i = 0; i < number; ++i)
        window()->openPanel(fDesktop->plugins().find("Probe"));
    QCOMPARE(disconnections().size(), number);
}

/// How often each panel was told that it is disconnected.
QList<int> TestOutages::disconnections() const
{
    QCoreApplication::processEvents(); // the news is on its way
    QList<int> counts;
    for (const TarvekWidget* panel : window()->findChildren<TarvekWidget*>("probe"))
        counts += panel->property("disconnections").toInt();
    return counts;
}

QAction* TestOutages::action(const QString& text) const
{
    for (QAction* action : window()->menuBar()->findChildren<QAction*>())
        if (action->text().remove('&').startsWith(text))
            return action;
    return nullptr;
}

void TestOutages::choose(const QString& text) const
{
    QVERIFY2(action(text) && action(text)->isEnabled(), qPrintable(text));
    action(text)->trigger();
}

void TestOutages::anInterruptionIsShownAndTellsNoPanel()
{
    openPanels(2);
    QVERIFY(!isBarShown());
    QVERIFY(!action("Reconnect")->isEnabled());
    const QString title = window()->windowTitle();
    fRobot->kill();
    TRY_VERIFY(!isConnected());
    QVERIFY(isBarShown());
    QVERIFY2(barText().contains("go on by themselves"), qPrintable(barText()));
    QVERIFY(barText().contains("Connection refused")); // its port is closed
    QCOMPARE(window()->windowTitle(), "Interrupted: " + title);
    QVERIFY(action("Reconnect")->isEnabled());
    TRY_VERIFY(window()->monitor().state().since.msecsTo(QDateTime::currentDateTime()) > 2000);
    fRobot->restart();
    TRY_VERIFY(isConnected());
    QCOMPARE(window()->windowTitle(), title);
    TRY_VERIFY(!isBarShown());
    QCOMPARE(disconnections(), (QList<int>{0, 0}));
}

void TestOutages::aLossTellsEachPanelOnceAndIsShown()
{
    fLine = robotLine(*fRobot);
    fLine.lostAfter = seconds(1);
    openPanels(2);
    fRobot->kill();
    TRY_VERIFY(isTitled("Interrupted: "));
    QCOMPARE(disconnections(), (QList<int>{0, 0}));
    TRY_VERIFY(isTitled("Lost: "));
    TRY_COMPARE(disconnections(), (QList<int>{1, 1}));
    QVERIFY(barText().contains("Panels have stopped fetching"));
    TRY_VERIFY(window()->monitor().state().since.msecsTo(QDateTime::currentDateTime()) > 3000);
    fRobot->restart(); // it was tried all the time
    TRY_VERIFY(isConnected());
    QVERIFY(barText().contains("Start it again in each"));
    QCOMPARE(disconnections(), (QList<int>{1, 1}));
}

void TestOutages::theNextLossIsToldAgain()
{
    fLine = robotLine(*fRobot);
    fLine.lostAfter = seconds(0);
    openPanels(1);
    for (int loss = 1; loss <= 2; ++loss) {
        fRobot->kill();
        TRY_COMPARE(disconnections(), QList<int>{loss});
        fRobot->restart();
        TRY_VERIFY(isConnected());
    }
}

void TestOutages::disconnectingTellsEachPanelOnceAndLeavesTheRobotAlone()
{
    openPanels(2);
    choose("Disconnect");
    TRY_COMPARE(disconnections(), (QList<int>{1, 1}));
    QVERIFY(isBarShown());
    QVERIFY(isTitled("Disconnected: "));
    QVERIFY(barText().contains("on request"));
    QVERIFY(!action("Disconnect")->isEnabled());
    QVERIFY(!action("Probe")->isEnabled());
    TRY_COMPARE(fRobot->clients(), 0);
    const auto connected = [this] {
        return QString::fromStdString(fRobot->command({"INFO", "stats"}))
            .section("total_connections_received:", 1)
            .section('\r', 0, 0)
            .toInt();
    };
    const int before = connected();
    const QDateTime since = window()->monitor().state().since;
    TRY_VERIFY(since.msecsTo(QDateTime::currentDateTime()) > 2000);
    QCOMPARE(connected(), before + 1); // the question's own
    QCOMPARE(disconnections(), (QList<int>{1, 1}));
}

void TestOutages::disconnectingTellsThePanelsOfEveryWindowThatSharesTheLink()
{
    openPanels(2);
    MainWindow* const first = window();
    const auto ofFirst = [first] {
        QList<int> counts;
        for (const TarvekWidget* panel : first->findChildren<TarvekWidget*>("probe"))
            counts += panel->property("disconnections").toInt();
        return counts;
    };
    fDesktop->connectTo(first->settings());
    TRY_COMPARE(fDesktop->windows().size(), 2);
    window()->openPanel(fDesktop->plugins().find("Probe"));
    choose("Disconnect"); // in the second one
    TRY_COMPARE(ofFirst(), (QList<int>{1, 1}));
    TRY_COMPARE(disconnections(), QList<int>{1});
    QVERIFY(first->windowTitle().startsWith("Disconnected: "));
    first->reconnect();
    TRY_VERIFY(isConnected() && first->monitor().state().connected);
    QCOMPARE(ofFirst(), (QList<int>{1, 1}));
    QCOMPARE(disconnections(), QList<int>{1});
}

void TestOutages::reconnectingOpensASharedLinkOnceAndSaysWhatPanelsNeed()
{
    openPanels(3);
    choose("Disconnect");
    choose("Reconnect");
    TRY_VERIFY(isConnected());
    TRY_COMPARE(fRobot->clients(), 1);
    QCOMPARE(disconnections(), (QList<int>{1, 1, 1}));
    QVERIFY(isBarShown());
    QVERIFY2(barText().contains("Start it again in each"), qPrintable(barText()));
    QVERIFY(action("Disconnect")->isEnabled() && !action("Reconnect")->isEnabled());
    QTest::mouseClick(window()->findChild<QPushButton*>("outageDismiss"), Qt::LeftButton);
    TRY_VERIFY(!isBarShown());
}

void TestOutages::theInstructionGoesWithTheLastPanelThatNeedsIt()
{
    openPanels(1);
    TarvekWidget* const stopped = probe();
    choose("Disconnect");
    choose("Reconnect");
    TRY_VERIFY(isConnected());
    window()->openPanel(fDesktop->plugins().find("Probe"));
    QVERIFY(isBarShown());
    delete stopped;
    TRY_VERIFY(!isBarShown());
    QCOMPARE(disconnections(), QList<int>{0});
}

void TestOutages::reconnectingAfterARefusalAsksForWhatWasRefused()
{
    RedisServer::Options options;
    options.users = {"alice on >old-word ~* +@all"};
    fRobot.reset(new RedisServer(options));
    fLine = robotLine(*fRobot);
    fLine.settings.user = "alice";
    fLine.settings.password = "old-word";
    openPanels(1);
    fRobot->command({"ACL", "SETUSER", "alice", "resetpass", ">new-word"});
    fRobot->command({"CLIENT", "KILL", "USER", "alice"});
    TRY_VERIFY(isTitled("Refused: "));
    TRY_COMPARE(disconnections(), QList<int>{1});
    QVERIFY(!fDesktop->connectDialog());
    choose("Reconnect");
    QVERIFY(fDesktop->connectDialog() && fDesktop->connectDialog()->isVisible());
}

void TestOutages::aPanelsOwnBadLinkStopsNoOtherPanel()
{
    RedisServer::Options options;
    options.users = {"bob on nopass ~* +@all"};
    fRobot.reset(new RedisServer(options));
    openPanels(1);
    window()->setProperty("ownUser", "bob");
    window()->openPanel(fDesktop->plugins().find("Probe"));
    TRY_COMPARE(fRobot->clients(), 2);
    fRobot->command({"ACL", "SETUSER", "bob", "off"});
    fRobot->command({"CLIENT", "KILL", "USER", "bob"});
    TRY_COMPARE(disconnections(), (QList<int>{0, 1}));
    QVERIFY(isTitled("Refused: "));
    QVERIFY2(barText().contains("Concerns 1 of 2 panels; the others go on."),
             qPrintable(barText()));
    TRY_VERIFY(window()->monitor().state().since.msecsTo(QDateTime::currentDateTime()) > 1000);
    QCOMPARE(disconnections(), (QList<int>{0, 1}));
}

void TestOutages::aPanelWaitsForNoRobotThatIsAway()
{
    fLine = robotLine(*fRobot);
    fLine.settings.other.connectTimeout = hours(1); // the window would stand still so long
    openPanels(0);
    PanelPlugin* const plugin = fDesktop->plugins().find("Probe");
    fRobot->stop();
    TRY_VERIFY(!isConnected());
    window()->openPanel(plugin);
    QVERIFY(shownBox());
    QVERIFY2(shownBox()->text().contains("when the robot is connected"),
             qPrintable(shownBox()->text()));
    clickOk(shownBox());
    window()->monitor().disconnect();
    window()->reconnect();
    window()->openPanel(plugin);
    QVERIFY(shownBox());
    QVERIFY2(shownBox()->text().contains("not connected yet"), qPrintable(shownBox()->text()));
    clickOk(shownBox());
    fRobot->resume();
    TRY_VERIFY(isConnected());
    window()->openPanel(plugin);
    QCOMPARE(disconnections(), QList<int>{0});
}

void TestOutages::aTitleThatChangesMeanwhileKeepsWhatIsSaidOfTheConnection()
{
    openPanels(0);
    fRobot->kill();
    TRY_VERIFY(isTitled("Interrupted: "));
    window()->setWindowTitle("Another");
    QCOMPARE(window()->windowTitle(), QString("Interrupted: Another"));
    fRobot->restart();
    TRY_COMPARE(window()->windowTitle(), QString("Another"));
}

void TestOutages::theBarsButtonsDoWhatTheMenuDoes()
{
    openPanels(1);
    fRobot->kill();
    TRY_VERIFY(!isConnected());
    QTest::mouseClick(window()->findChild<QPushButton*>("outageDisconnect"), Qt::LeftButton);
    QVERIFY(window()->monitor().state().closed);
    fRobot->restart();
    QTest::mouseClick(window()->findChild<QPushButton*>("outageReconnect"), Qt::LeftButton);
    TRY_VERIFY(isConnected());
    TRY_COMPARE(disconnections(), QList<int>{1});
}

void TestOutages::theUserSaysHowLongToWait()
{
    openPanels(1);
    QVERIFY(window()->monitor().limit() == hours(1));
    choose("Wait for the robot");
    auto* dialog = window()->findChild<QInputDialog*>();
    QVERIFY(dialog && dialog->isVisible());
    auto* box = dialog->findChild<QDoubleSpinBox*>();
    QCOMPARE(box->value(), 60.0);
    box->setValue(1.5);
    dialog->accept();
    QVERIFY(window()->monitor().limit() == seconds(90));
    QVERIFY(storedLossLimit() == seconds(90));
    fDesktop->connectTo(window()->settings());
    TRY_COMPARE(fDesktop->windows().size(), 2);
    QVERIFY(window()->monitor().limit() == seconds(90));
    choose("Wait for the robot");
    window()->findChild<QInputDialog*>()->reject();
    QVERIFY(window()->monitor().limit() == seconds(90));
    choose("Wait for the robot");
    window()->findChild<QDoubleSpinBox*>()->setValue(0);
    window()->findChild<QInputDialog*>()->accept();
    for (MainWindow* each : fDesktop->windows())
        QVERIFY(each->monitor().limit() == seconds(0));
}

void TestOutages::theCommandLineSaysHowLongToWait()
{
    storeLossLimit(seconds(7));
    fLine = robotLine(*fRobot);
    fLine.lostAfter = seconds(5);
    openPanels(0);
    QVERIFY(window()->monitor().limit() == seconds(5));
    QVERIFY(storedLossLimit() == seconds(7));
}

void TestOutages::theSettingsSayHowLongToWait()
{
    storeLossLimit(seconds(7));
    openPanels(0);
    QVERIFY(window()->monitor().limit() == seconds(7));
}

REGISTER_TEST(TestOutages, HostApplication)
#include "tst_outages.moc"
