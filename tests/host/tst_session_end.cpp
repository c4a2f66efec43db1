// SPDX-License-Identifier: MIT
#include "support/desktop_bench.h"
#include "support/guarded_test.h"
#include "support/host.h"
#include "support/register_test.h"
#include "windows/recent_workspaces.h"
#include "windows/window_settings.h"
#include "workspace/workspace_file.h"

#include <QtTest>

/// What the end of the user's session does to the program, and its beginning.
class TestSessionEnd : public GuardedTest, private DesktopBench
{
    Q_OBJECT

private slots:
    void init()
    {
        qputenv("XDG_DATA_HOME", fFolder.path().toLocal8Bit());
        setUp();
        fLine = robotLine(*fRobot);
        fLine.panel = "Probe";
        start();
        TRY_VERIFY(window() && probe());
    }
    void cleanup()
    {
        tearDown();
        GuardedTest::cleanup();
    }
    void windowsAreNotClosedByAnEndThatMayBeCalledOff();
    void arrangementIsSavedBeforeTheEnd();
    void theNextSessionOpensTheSame();
    void theNextSessionWaitsForRobotsAsLong();
    void theNextSessionSpeaksTheSameLanguage();
    void nothingOpenIsNothingToKeep();

private:
    QTemporaryDir fFolder;

    /// As the display system does it; nobody but the toolkit can make a manager, and nobody looks
    /// at this one.
    static void endSession()
    {
        alignas(void*) static char none[sizeof(void*)];
        emit qApp->commitDataRequest(reinterpret_cast<QSessionManager&>(none));
    }
};

void TestSessionEnd::windowsAreNotClosedByAnEndThatMayBeCalledOff()
{
#if QT_VERSION_MAJOR == 5 // later toolkits never ask windows
    QVERIFY(!QGuiApplication::isFallbackSessionManagementEnabled());
#endif
    endSession();
    QCoreApplication::processEvents();
    QVERIFY(window()->isVisible() && probe()->isVisible());
    QVERIFY(!QApplication::activeModalWidget());
    QCOMPARE(fFinished->size(), 0);
}

void TestSessionEnd::arrangementIsSavedBeforeTheEnd()
{
    window()->resize(700, 500);
    QVERIFY(savedLook().geometry.isEmpty());
    endSession();
    QCOMPARE(savedLook().geometry, window()->saveGeometry());
    QCOMPARE(savedLook().docks, window()->saveState());
}

void TestSessionEnd::theNextSessionOpensTheSame()
{
    const QString file = sessionFile("../10 a/b");
    QVERIFY(isSessionFile(file) && file.startsWith(fFolder.path()));
    QVERIFY(fDesktop->keepForNextSession(file));
    const QStringList words = fDesktop->sessionCommand(file);
    QCOMPARE(words.first(), QCoreApplication::applicationFilePath());
    std::vector<std::string> arguments;
    for (const QString& word : words.mid(1))
        arguments.push_back(word.toStdString());
    fLine = parseCommandLine(arguments);
    QCOMPARE(fLine.workspace, file);
    QCOMPARE(fLine.pluginDirs, QStringList(TEST_PLUGIN_DIR));
    begin();
    TRY_VERIFY(!fDesktop->isOpeningWorkspace());
    QCOMPARE(fDesktop->windows().size(), 1);
    QCOMPARE(window()->settings().address.port, fRobot->port());
    QVERIFY(probe());
    QVERIFY(recentWorkspaces().isEmpty()); // the user knows nothing of that file
}

void TestSessionEnd::theNextSessionWaitsForRobotsAsLong()
{
    QVERIFY(!fDesktop->sessionCommand("a").contains("--lost-after"));
    fLine.lostAfter = std::chrono::minutes(2);
    begin();
    const QStringList words = fDesktop->sessionCommand("a");
    const auto place = words.indexOf("--lost-after");
    QVERIFY(place > 0);
    QCOMPARE(words.value(place + 1), QString("120"));
}

void TestSessionEnd::theNextSessionSpeaksTheSameLanguage()
{
    QVERIFY(!fDesktop->sessionCommand("a").contains("--language"));
    fLine.language = "fr";
    begin();
    const QStringList words = fDesktop->sessionCommand("a");
    const int place = words.indexOf("--language");
    QVERIFY(place > 0);
    QCOMPARE(words.value(place + 1), QString("fr"));
}

void TestSessionEnd::nothingOpenIsNothingToKeep()
{
    window()->close();
    const QString file = sessionFile("11");
    QVERIFY(!fDesktop->keepForNextSession(file));
    QVERIFY(!QFileInfo::exists(file));
}

REGISTER_TEST(TestSessionEnd, HostApplication)
#include "tst_session_end.moc"
