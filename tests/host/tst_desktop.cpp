// SPDX-License-Identifier: MIT
#include "plugins/resource_paths.h"
#include "support/desktop_bench.h"
#include "support/fake_robot.h"
#include "support/guarded_test.h"
#include "support/host.h"
#include "support/modal_driver.h"
#include "support/patience.h"
#include "support/redis_server.h"
#include "support/register_test.h"

#include <tarvek/tarvek_widget.h>

#include <QComboBox>
#include <QSpinBox>
#include <QtTest>

#include <atomic>

/// From the command line to windows and back to nothing, with a real server as the robot.
class TestDesktop : public GuardedTest, private DesktopBench
{
    Q_OBJECT

private slots:
    void init() { setUp(); }
    void cleanup()
    {
        tearDown();
        GuardedTest::cleanup();
    }
    void asksForTheRobotWhenTheCommandLineNamesNone();
    void connectsToTheRobotOfTheCommandLine();
    void opensThePanelOfTheCommandLine();
    void namesThePanelsThatAreThereWhenTheWantedOneIsNot();
    void looksForPluginsInTheOrderOfTheCommandLine();
    void handsPanelsTheImagesOfTheProgram();
    void showsThatItIsBusyOnlyWhileItIs();
    void aFailedConnectionIsAnErrorAndKeepsWhatWasTyped();
    void aFailedConnectionOfTheCommandLineAsksAgain();
    void aWrongPasswordIsToldWithoutThePassword();
    void connectsEncryptedWithAFileOfAuthorities();
    void refusesARobotThatNoAuthorityVouchesFor();
    void remembersTheRobotForTheNextTime();
    void aWindowEachForTwoRobots();
    void cancellingTheOnlyDialogEndsTheProgram();
    void closingTheLastWindowEndsTheProgram();
    void quitEndsEverything();
    void closingTheWindowUnderAStartUpDialogEndsTheProgram();
    void aWindowIsDeletedOnlyWhenItsDialogsAreDone();
};

void TestDesktop::asksForTheRobotWhenTheCommandLineNamesNone()
{
    start();
    QVERIFY(fDesktop->windows().isEmpty());
    typeRobot(fRobot->port());
    QVERIFY(window() && window()->isVisible());
    TRY_VERIFY(!fDesktop->connectDialog());
    QVERIFY(window()->monitor().state().connected);
    QCOMPARE(fFinished->size(), 0);
}

void TestDesktop::connectsToTheRobotOfTheCommandLine()
{
    fLine = robotLine(*fRobot);
    start();
    QVERIFY(window() && window()->isVisible());
    QVERIFY(!fDesktop->connectDialog());
}

void TestDesktop::opensThePanelOfTheCommandLine()
{
    fLine = robotLine(*fRobot);
    fLine.panel = "probe";
    start();
    TRY_VERIFY(probe());
}

void TestDesktop::namesThePanelsThatAreThereWhenTheWantedOneIsNot()
{
    fLine = robotLine(*fRobot);
    fLine.panel = "Prob";
    start();
    TRY_VERIFY(shownBox());
    QVERIFY(shownBox()->text().contains("\"Prob\""));
    QVERIFY(shownBox()->text().contains("Probe"));
}

void TestDesktop::looksForPluginsInTheOrderOfTheCommandLine()
{
    fLine.pluginFiles = QStringList(TEST_PLUGIN_DIR "/throws.so");
    start();
    QStringList names;
    for (const auto& plugin : fDesktop->plugins().plugins())
        names += plugin->name;
    QCOMPARE(names.mid(0, 3), (QStringList{"throws", "nothing", "Probe"}));
    QCOMPARE(fDesktop->plugins().folders(), (QStringList{TEST_PLUGIN_DIR, ownPluginDir()}));
}

void TestDesktop::handsPanelsTheImagesOfTheProgram()
{
    for (const QString& folder : {QString(), QString("/some/where")}) {
        fLine = robotLine(*fRobot);
        fLine.panel = "Probe";
        fLine.imageDir = folder;
        start();
        TRY_VERIFY(probe());
        QCOMPARE(probe()->property("imageDir").toString(),
                 (folder.isEmpty() ? ownImageDir() : folder) + '/');
    }
}

void TestDesktop::showsThatItIsBusyOnlyWhileItIs()
{
    std::atomic<bool> wasBusy{false};
    const FakeRobot robot([&wasBusy](FakeConnection& connection) {
        if (connection.number() == 0) { // the windows' thread waits for the greeting meanwhile
            const QCursor* const cursor = QApplication::overrideCursor();
            wasBusy = cursor && cursor->shape() == Qt::WaitCursor;
        }
        connection.greet();
        connection.waitForEnd();
    });
    fLine = robotLine(*fRobot);
    fLine.settings.address.port = robot.port();
    start();
    QVERIFY(window());
    QVERIFY(wasBusy);
    QVERIFY(!QApplication::overrideCursor());
    fLine = robotLine(*fRobot);
    fRobot->kill();
    start();
    QVERIFY(shownBox());
    QVERIFY(!QApplication::overrideCursor());
}

void TestDesktop::aFailedConnectionIsAnErrorAndKeepsWhatWasTyped()
{
    fRobot->kill();
    start();
    typeRobot(fRobot->port());
    QVERIFY(shownBox());
    QVERIFY2(shownBox()->text().contains(QString("127.0.0.1:%1").arg(fRobot->port())),
             qPrintable(shownBox()->text()));
    clickOk(shownBox());
    QVERIFY(fDesktop->windows().isEmpty());
    QVERIFY(fDesktop->connectDialog()->isVisible());
    QCOMPARE(fDesktop->connectDialog()->findChild<QSpinBox*>("port")->value(), fRobot->port());
    fRobot->restart();
    typeRobot(fRobot->port());
    QVERIFY(window());
}

void TestDesktop::aFailedConnectionOfTheCommandLineAsksAgain()
{
    fLine = robotLine(*fRobot);
    fRobot->kill();
    start();
    QVERIFY(shownBox());
    clickOk(shownBox());
    QVERIFY(fDesktop->connectDialog()->isVisible());
    QCOMPARE(fDesktop->connectDialog()->findChild<QSpinBox*>("port")->value(), fRobot->port());
    QCOMPARE(fFinished->size(), 0);
}

void TestDesktop::aWrongPasswordIsToldWithoutThePassword()
{
    fLine = robotLine(*fRobot);
    fLine.settings.user = "me";
    fLine.settings.password = "open-sesame";
    start();
    QVERIFY(shownBox());
    QVERIFY2(shownBox()->text().contains("password"), qPrintable(shownBox()->text()));
    QVERIFY(!shownBox()->text().contains("open-sesame"));
}

void TestDesktop::connectsEncryptedWithAFileOfAuthorities()
{
    RedisServer::Options options;
    options.tls = true;
    const RedisServer robot(options);
    fLine = robotLine(robot);
    fLine.settings.tls = true;
    fLine.settings.caFile = QString::fromStdString(robot.caFile());
    fLine.panel = "Probe";
    start();
    QVERIFY(window());
    TRY_VERIFY(probe());
}

void TestDesktop::refusesARobotThatNoAuthorityVouchesFor()
{
    RedisServer::Options options;
    options.tls = true;
    const RedisServer robot(options);
    fLine = robotLine(robot);
    fLine.settings.tls = true;
    start();
    QVERIFY(!window());
    QVERIFY(shownBox());
    QVERIFY2(shownBox()->text().contains("certificate"), qPrintable(shownBox()->text()));
}

void TestDesktop::remembersTheRobotForTheNextTime()
{
    fLine = robotLine(*fRobot);
    start();
    fDesktop->showConnectDialog();
    auto* host = fDesktop->connectDialog()->findChild<QComboBox*>("host");
    QCOMPARE(host->count(), 1);
    QCOMPARE(host->itemText(0), QString("127.0.0.1:%1").arg(fRobot->port()));
}

void TestDesktop::aWindowEachForTwoRobots()
{
    RedisServer other;
    fLine = robotLine(*fRobot);
    fLine.panel = "Probe";
    start();
    MainWindow* first = window();
    fDesktop->showConnectDialog();
    typeRobot(other.port());
    MainWindow* second = window();
    QVERIFY(first != second);
    TRY_VERIFY(first->findChild<TarvekWidget*>("probe"));
    TRY_VERIFY(second->findChild<TarvekWidget*>("probe"));
    other.kill();
    TRY_VERIFY(!second->monitor().state().connected);
    TRY_COMPARE(second->findChild<TarvekWidget*>("probe")->property("disconnections"), QVariant(1));
    QVERIFY(first->monitor().state().connected);
    QCOMPARE(first->findChild<TarvekWidget*>("probe")->property("disconnections"), QVariant(0));
    const QPointer<MainWindow> closed = second;
    second->close();
    TRY_VERIFY(!closed);
    QCOMPARE(fDesktop->windows(), QList<MainWindow*>{first});
    QCOMPARE(fFinished->size(), 0);
}

void TestDesktop::cancellingTheOnlyDialogEndsTheProgram()
{
    start();
    QTest::keyClick(fDesktop->connectDialog(), Qt::Key_Escape);
    TRY_COMPARE(fFinished->size(), 1);
}

void TestDesktop::closingTheLastWindowEndsTheProgram()
{
    fLine = robotLine(*fRobot);
    fLine.panel = "Probe";
    start();
    TRY_VERIFY(probe());
    const QPointer<MainWindow> closed = window();
    QVERIFY(QTest::qWaitForWindowActive(window(), patience));
    QTest::keyClick(window(), Qt::Key_W, Qt::ControlModifier);
    TRY_VERIFY(!fFinished->isEmpty());
    QVERIFY(!closed);
}

void TestDesktop::quitEndsEverything()
{
    fLine = robotLine(*fRobot);
    start();
    fDesktop->showConnectDialog();
    window()->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(window(), patience));
    QTest::keyClick(window(), Qt::Key_Q, Qt::ControlModifier);
    TRY_VERIFY(!fFinished->isEmpty());
    QVERIFY(fDesktop->windows().isEmpty());
    QVERIFY(!fDesktop->connectDialog());
}

void TestDesktop::closingTheWindowUnderAStartUpDialogEndsTheProgram()
{
    fLine = robotLine(*fRobot);
    start();
    window()->setProperty("askFirst", true);
    const QPointer<MainWindow> closed = window();
    whenShown("innerProbeDialog", [closed](QDialog&) { closed->close(); });
    closed->openPanel(fDesktop->plugins().find("Probe"));
    TRY_VERIFY(!fFinished->isEmpty());
    QVERIFY(!closed);
}

void TestDesktop::aWindowIsDeletedOnlyWhenItsDialogsAreDone()
{
    fLine = robotLine(*fRobot);
    start();
    MainWindow* const shown = window();
    const QPointer<MainWindow> closed = shown;
    const ModalDriver rescue; // which is a failure
    // A dialog on the stack of a nested loop inside a nested loop, as panels run them.
    QTimer::singleShot(0, shown, [shown] {
        QDialog outer(shown);
        QTimer::singleShot(0, &outer, [&outer, shown] {
            QDialog inner(&outer);
            QTimer::singleShot(0, &inner, [shown] { shown->close(); });
            inner.exec();
        });
        outer.exec();
    });
    QSignalSpy finished(fDesktop.data(), &Desktop::finished);
    QVERIFY(finished.wait(patience));
    QVERIFY(!closed);
}

REGISTER_TEST(TestDesktop, HostApplication)
#include "tst_desktop.moc"
