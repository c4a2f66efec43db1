// SPDX-License-Identifier: MIT
#include "connection/recent_connections.h"
#include "plugins/resource_paths.h"
#include "robots/saved_robots.h"
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
#include <QLabel>
#include <QListWidget>
#include <QSpinBox>
#include <QtTest>

#include <sys/stat.h>

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
    void opensThePanelOfAFile();
    void tellsOfAFileThatNoPanelOpens();
    void namesThePanelsThatAreThereWhenTheWantedOneIsNot();
    void looksForPluginsInTheOrderOfTheCommandLine();
    void handsPanelsTheImagesOfTheProgram();
    void connectingTellsItsStepsAndKeepsNobodyWaiting();
    void aRobotOfTheCommandLineThatTakesTimeIsShownAndCanBeCancelled();
    void closingTheDialogWhileConnectingEndsTheProgram();
    void aRobotThatAnswersAtOnceNeedsNoDialog();
    void aFileThatNeverEndsIsNoCertificate();
    void aFailedConnectionIsAnErrorAndKeepsWhatWasTyped();
    void aFailedConnectionOfTheCommandLineAsksAgain();
    void aWrongPasswordIsToldWithoutThePassword();
    void connectsEncryptedWithAFileOfAuthorities();
    void refusesARobotThatNoAuthorityVouchesFor();
    void remembersTheRobotForTheNextTime();
    void theRobotUsedLastStandsInTheFields();
    void aSentinelOfTheCommandLineCountsMoreThanTheRobotUsedLast();
    void forgetsTheRobotOfTheCommandLineIfAsked();
    void aWindowEachForTwoRobots();
    void aWindowEachForTwoRobotsOfOneServer();
    void cancellingTheOnlyDialogEndsTheProgram();
    void closingTheLastWindowEndsTheProgram();
    void quitEndsEverything();
    void closingTheWindowUnderAStartUpDialogEndsTheProgram();
    void aWindowIsDeletedOnlyWhenItsDialogsAreDone();

private:
    QLabel* progress() const { return fDesktop->connectDialog()->findChild<QLabel*>("progress"); }
    static ConnectionSettings slowSettings(int port);
};

/// For a robot that is waited for.
ConnectionSettings TestDesktop::slowSettings(int port)
{
    ConnectionSettings settings;
    settings.address.port = port;
    settings.timeout = 3600000;
    return settings;
}

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

void TestDesktop::opensThePanelOfAFile()
{
    QTemporaryFile file;
    QVERIFY(file.open() && file.write("<?xml version='1.0'?><!-- one --><probe/>") > 0 &&
            file.flush());
    fLine = robotLine(*fRobot);
    fLine.file = file.fileName();
    start();
    TRY_VERIFY(probe());
}

void TestDesktop::tellsOfAFileThatNoPanelOpens()
{
    fLine = robotLine(*fRobot);
    for (const char* path : {"/proc/version", "/proc", "/no/where"}) {
        fLine.file = path;
        start();
        TRY_VERIFY(shownBox());
        QVERIFY2(shownBox()->text().contains(path), qPrintable(shownBox()->text()));
        shownBox()->close();
        QVERIFY(!probe());
    }
}

void TestDesktop::namesThePanelsThatAreThereWhenTheWantedOneIsNot()
{
    fLine = robotLine(*fRobot);
    fLine.panel = "Prob";
    start();
    TRY_VERIFY(shownBox());
    QVERIFY(shownBox()->text().contains("\"Prob\""));
    QVERIFY(shownBox()->text().contains("Probe"));
    const QString failed =
        QString("%1 plug-in(s) could not be loaded").arg(fDesktop->plugins().failures().size());
    QVERIFY2(shownBox()->text().contains(failed), qPrintable(shownBox()->text()));
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

void TestDesktop::connectingTellsItsStepsAndKeepsNobodyWaiting()
{
    start();
    const FakeRobot robot([](FakeConnection& connection) { connection.waitForEnd(); });
    fDesktop->connectTo(slowSettings(robot.port()));
    QVERIFY(fDesktop->isConnecting());
    const QString expected = QString("Connecting to 127.0.0.1:%1: logging in...").arg(robot.port());
    TRY_COMPARE(progress()->text(), expected);
    QVERIFY(!fDesktop->connectDialog()->findChild<QWidget*>("user")->isEnabled());
    const RedisServer other;
    fDesktop->connectTo(robotLine(other).settings); // which calls the first attempt off
    TRY_VERIFY(window());
    QVERIFY(!fDesktop->isConnecting());
}

void TestDesktop::aRobotOfTheCommandLineThatTakesTimeIsShownAndCanBeCancelled()
{
    const FakeRobot robot([](FakeConnection& connection) { connection.waitForEnd(); });
    fLine = robotLine(*fRobot);
    fLine.settings = slowSettings(robot.port());
    begin();
    QVERIFY(!fDesktop->connectDialog());
    TRY_VERIFY(fDesktop->connectDialog());
    TRY_VERIFY(progress()->text().contains("logging in"));
    QTest::keyClick(fDesktop->connectDialog(), Qt::Key_Escape);
    QVERIFY(!fDesktop->isConnecting());
    QVERIFY(fDesktop->connectDialog()->isVisible());
    QVERIFY(progress()->text().isEmpty());
    QVERIFY(fDesktop->connectDialog()->findChild<QWidget*>("user")->isEnabled());
    QCOMPARE(fFinished->size(), 0);
    typeRobot(fRobot->port());
    QVERIFY(window());
}

void TestDesktop::closingTheDialogWhileConnectingEndsTheProgram()
{
    const FakeRobot robot([](FakeConnection& connection) { connection.waitForEnd(); });
    start();
    fDesktop->connectTo(slowSettings(robot.port()));
    fDesktop->connectDialog()->close();
    TRY_COMPARE(fFinished->size(), 1);
    QVERIFY(!fDesktop->isConnecting());
}

void TestDesktop::aRobotThatAnswersAtOnceNeedsNoDialog()
{
    fLine = robotLine(*fRobot);
    begin();
    TRY_VERIFY(window());
    QVERIFY(!fDesktop->connectDialog());
    QVERIFY(!fDesktop->isConnecting());
}

void TestDesktop::aFileThatNeverEndsIsNoCertificate()
{
    const QTemporaryDir folder;
    const QString pipe = folder.filePath("ca.pem");
    QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    fLine = robotLine(*fRobot);
    fLine.settings.tls = true;
    fLine.settings.caFile = pipe;
    start();
    QVERIFY(shownBox());
    QVERIFY2(shownBox()->text().contains(pipe), qPrintable(shownBox()->text()));
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

void TestDesktop::theRobotUsedLastStandsInTheFields()
{
    fLine = robotLine(*fRobot);
    saveRobot({"Mine", fLine.settings});
    start();
    fLine = CommandLine();
    start();
    QCOMPARE(fDesktop->connectDialog()->findChild<QSpinBox*>("port")->value(), fRobot->port());
    QCOMPARE(fDesktop->connectDialog()->findChild<QListWidget*>("robots")->currentRow(), 0);
    deleteRobot("Mine");
    start();
    QCOMPARE(fDesktop->connectDialog()->findChild<QSpinBox*>("port")->value(), fRobot->port());
}

void TestDesktop::aSentinelOfTheCommandLineCountsMoreThanTheRobotUsedLast()
{
    fLine = robotLine(*fRobot);
    start();
    for (const bool isSentinel : {true, false}) {
        fLine = CommandLine();
        fLine.settings.other.sentinel = isSentinel ? "arms" : "";
        fLine.settings.other.replica = !isSentinel;
        start();
        QCOMPARE(fDesktop->connectDialog()->findChild<QSpinBox*>("port")->value(), 6379);
    }
}

void TestDesktop::forgetsTheRobotOfTheCommandLineIfAsked()
{
    RedisServer other;
    fLine = robotLine(*fRobot);
    fLine.forgets = true;
    start();
    QVERIFY(window());
    QVERIFY(recentConnections().isEmpty());
    fDesktop->showConnectDialog();
    typeRobot(other.port());
    QCOMPARE(recentConnections().size(), 1);
    QCOMPARE(recentConnections()[0].address.port, other.port());
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
    second->monitor().setLimit(std::chrono::seconds(0));
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

void TestDesktop::aWindowEachForTwoRobotsOfOneServer()
{
    fLine = robotLine(*fRobot);
    fLine.settings.prefix = "robot7/";
    fLine.panel = "Probe";
    start();
    const MainWindow* first = window();
    TRY_VERIFY(probe());
    TRY_VERIFY(first->windowTitle().endsWith(" (robot7/)"));
    fDesktop->showConnectDialog();
    auto* prefix = fDesktop->connectDialog()->findChild<QLineEdit*>("prefix");
    QCOMPARE(prefix->text(), QString("robot7/"));
    prefix->setText("robot8/");
    typeRobot(fRobot->port());
    const MainWindow* second = window();
    QVERIFY(first != second);
    TRY_VERIFY(probe());
    QVERIFY(second->windowTitle().endsWith(" (robot8/)"));
    QCOMPARE(fRobot->clients(), 2);
    QVERIFY(second->settings().robotText().startsWith("robot8/ at 127.0.0.1:"));
    QCOMPARE(recentConnections().size(), 2);
    QCOMPARE(recentConnections().first().prefix, QString("robot8/"));
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
    QTest::keyClick(window(), Qt::Key_W, Qt::ControlModifier | Qt::ShiftModifier);
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
