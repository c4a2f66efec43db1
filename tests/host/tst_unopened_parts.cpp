// SPDX-License-Identifier: MIT
#include "support/files.h"
#include "support/guarded_test.h"
#include "support/register_test.h"
#include "support/workspace_bench.h"

#include <QCheckBox>
#include <QPushButton>
#include <QtTest>

namespace {

/// Lets the panel Probe of all windows to come ask before it opens.
class AskingPanels : public QObject
{
public:
    AskingPanels() { qApp->installEventFilter(this); }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Show && qobject_cast<MainWindow*>(watched))
            watched->setProperty("askFirst", true);
        return false;
    }
};

} // namespace

/// Robots and panels of a workspace that cannot be opened, and what becomes of them.
class TestUnopenedParts : public GuardedTest, private WorkspaceBench
{
    Q_OBJECT

private slots:
    void init() { setUp(); }
    void cleanup()
    {
        tearDown();
        GuardedTest::cleanup();
    }
    void whatCannotBeOpenedIsToldInOneMessage();
    void robotsThatWereAwayAreTriedAgain();
    void robotsThatAreAwayStayInAWorkspaceThatIsSavedAgain();
    void panelsThatCannotBeOpenedStayInAWorkspaceThatIsSavedAgain();
    void panelsWithoutAPlugInAreLeftOutIfWanted();
    void panelsThatAreCalledOffDoNot();
    void panelsStillToComeAreKeptForTheNextSession();
    void aMessageOfManyProblemsFitsTheScreen();
    void nothingToOpenAsksForARobot();
    void aFileThatIsNoneIsToldAndARobotAskedFor();
    void closingTheWindowUnderTheMessageEndsTheProgram();
};

void TestUnopenedParts::whatCannotBeOpenedIsToldInOneMessage()
{
    RedisServer away;
    write({windowOf(settingsOf(*fRobot), {"Hologram", "Probe", "throws"}),
           windowOf(settingsOf(away)), windowOf(settingsOf(*fRobot), {"Table"})});
    QByteArray text = bytesOf(file());
    text.replace("\"Table\"", "7");
    writeBytes(file(), text);
    away.kill();
    openWithMessage();
    QCOMPARE(fDesktop->windows().size(), 2);
    QVERIFY(fDesktop->windows().first()->findChild<TarvekWidget*>("probe"));
    for (const QString& part :
         {QString("\"Hologram\""), QString("\"throws\" cannot be opened"),
          settingsOf(away).addressText() + ": ", QString("Window 3, panel 1: ")})
        QVERIFY2(message()->text().contains(part), qPrintable(message()->text()));
    QTest::mouseClick(message()->button(QMessageBox::Close), Qt::LeftButton);
    TRY_VERIFY(!fDesktop->isOpeningWorkspace());
    QVERIFY(!fDesktop->connectDialog());
}

void TestUnopenedParts::robotsThatWereAwayAreTriedAgain()
{
    RedisServer away;
    write({windowOf(settingsOf(away)), windowOf(settingsOf(*fRobot))});
    away.kill();
    openWithMessage();
    QCOMPARE(fDesktop->windows().size(), 1);
    QVERIFY(!message()->findChild<QCheckBox*>("dropMissing")); // no panel is missing
    away.restart();
    QTest::mouseClick(message()->findChild<QPushButton*>("tryAgain"), Qt::LeftButton);
    TRY_COMPARE(fDesktop->windows().size(), 2);
    QCOMPARE(window()->settings().address.port, away.port());
    TRY_VERIFY(probe());
    TRY_VERIFY(!fDesktop->isOpeningWorkspace());
    QVERIFY(!message());
}

void TestUnopenedParts::robotsThatAreAwayStayInAWorkspaceThatIsSavedAgain()
{
    RedisServer away;
    write({windowOf(settingsOf(away)), windowOf(settingsOf(*fRobot))});
    away.kill();
    openWithMessage();
    QList<int> ports;
    for (const WorkspaceWindow& one : readWorkspace(savedAgain()).windows)
        ports += one.robot.address.port;
    QCOMPARE(ports, (QList<int>{fRobot->port(), away.port()}));
}

void TestUnopenedParts::panelsThatCannotBeOpenedStayInAWorkspaceThatIsSavedAgain()
{
    WorkspaceWindow wanted = windowOf(settingsOf(*fRobot), {"Hologram", "Probe", "throws"});
    wanted.content.panels[0].arrangement = {{"QSplitter1", "1,2"}};
    wanted.content.look.titles = {{"Hologram 1", "the left arm"}};
    write({wanted});
    openWithMessage();
    const QString again = savedAgain();
    QCOMPARE(panelsIn(again), QStringList({"Probe 1", "Hologram 1", "throws 1"}));
    const WindowContent kept = readWorkspace(again).windows.first().content;
    QCOMPARE(kept.panels.at(1).arrangement, wanted.content.panels[0].arrangement);
    QCOMPARE(kept.look.titles, wanted.content.look.titles);
}

void TestUnopenedParts::panelsWithoutAPlugInAreLeftOutIfWanted()
{
    write({windowOf(settingsOf(*fRobot), {"Hologram", "Probe", "throws", "Oracle"}),
           windowOf(settingsOf(*fRobot), {"Hologram"})});
    openWithMessage();
    auto* const drop = message()->findChild<QCheckBox*>("dropMissing");
    QVERIFY(drop && drop->isVisible());
    QTest::keyClick(drop, Qt::Key_Space);
    const QString again = savedAgain();
    QCOMPARE(panelsIn(again), QStringList({"Probe 1", "throws 1"}));
    QVERIFY(readWorkspace(again).windows.last().content.panels.isEmpty());
}

void TestUnopenedParts::panelsThatAreCalledOffDoNot()
{
    const AskingPanels asking;
    write({windowOf(settingsOf(*fRobot), {"Probe", "Table"})});
    ModalDriver user;
    for (const char* dialog : {"innerProbeDialog", "probeDialog"})
        user.then(dialog, cancelDialog);
    openFile();
    TRY_VERIFY(!fDesktop->isOpeningWorkspace());
    QCOMPARE(panelsIn(savedAgain()), QStringList("Table 1"));
}

void TestUnopenedParts::panelsStillToComeAreKeptForTheNextSession()
{
    const AskingPanels asking;
    const QStringList all{"Table 1", "Probe 1", "Hologram 1"};
    write({windowOf(settingsOf(*fRobot), {"Table", "Probe", "Hologram"})});
    const QString next = fFolder->filePath("Next.tarvek");
    ModalDriver user;
    user.then("innerProbeDialog", [&](QDialog& dialog) {
        QVERIFY(fDesktop->keepForNextSession(next));
        QCOMPARE(panelsIn(next), all);
        dialog.accept();
    });
    user.then("probeDialog", [](QDialog& dialog) { dialog.accept(); });
    openWithMessage();
    QCOMPARE(docksOf(window()).size(), 2);
    docksOf(window()).first()->close();
    QVERIFY(fDesktop->keepForNextSession(next));
    QCOMPARE(panelsIn(next), all.mid(1));
}

void TestUnopenedParts::aMessageOfManyProblemsFitsTheScreen()
{
    QStringList plugins;
    for (int i = 0; i < mostWorkspacePanels; ++i)
        plugins += QString("Hologram %1 ").arg(i).leftJustified(900, 'x');
    write({windowOf(settingsOf(*fRobot), plugins), windowOf(settingsOf(*fRobot), plugins),
           windowOf(settingsOf(*fRobot), plugins)});
    openWithMessage();
    QVERIFY(message()->text().contains("Hologram 9 ") && !message()->text().contains("ram 10 "));
    QCOMPARE(message()->informativeText(), QString("290 more in the details."));
    const QString details = message()->detailedText();
    QVERIFY(details.contains("Hologram 10 ") && details.endsWith("..."));
    QVERIFY(details.size() < 200 * 1010);
}

void TestUnopenedParts::nothingToOpenAsksForARobot()
{
    write({windowOf(settingsOf(*fRobot))});
    fRobot->kill();
    openWithMessage();
    QTest::keyClick(message(), Qt::Key_Escape);
    TRY_VERIFY(fDesktop->connectDialog());
    QCOMPARE(fFinished->size(), 0);
}

void TestUnopenedParts::aFileThatIsNoneIsToldAndARobotAskedFor()
{
    writeBytes(file(), "hello");
    openFile();
    TRY_VERIFY(shownBox());
    QVERIFY2(shownBox()->text().contains(file()), qPrintable(shownBox()->text()));
    TRY_VERIFY(fDesktop->connectDialog());
    clickOk(shownBox());
}

void TestUnopenedParts::closingTheWindowUnderTheMessageEndsTheProgram()
{
    write({windowOf(settingsOf(*fRobot), {"Hologram"})});
    openWithMessage();
    window()->close();
    TRY_COMPARE(fFinished->size(), 1);
    QVERIFY(!fDesktop->connectDialog());
}

REGISTER_TEST(TestUnopenedParts, HostApplication)
#include "tst_unopened_parts.moc"
