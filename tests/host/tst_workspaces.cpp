// SPDX-License-Identifier: MIT
#include "support/drag.h"
#include "support/fake_robot.h"
#include "support/files.h"
#include "support/guarded_test.h"
#include "support/register_test.h"
#include "support/workspace_bench.h"
#include "windows/first_sizes.h"
#include "windows/recent_workspaces.h"

#include <QProgressDialog>
#include <QTreeWidget>
#include <QtTest>

/// Workspaces as a user of the whole desktop saves and opens them.
class TestWorkspaces : public GuardedTest, private WorkspaceBench
{
    Q_OBJECT

private slots:
    void init() { setUp(); }
    void cleanup()
    {
        tearDown();
        GuardedTest::cleanup();
    }
    void whatWasSavedIsOpenedAsItWas();
    void itIsAmongTheRecentOnes();
    void aChosenOneIsOpenedBesideWhatIsThere();
    void changingOnesMindSavesAndOpensNothing();
    void aRobotThatTakesTimeIsShownAndCanBeCancelled();
    void quittingWhileRobotsAreTriedEndsTheProgram();
    void aPanelWhoseWindowIsClosedMeanwhileIsLeftOut();
    void whatCannotBeSavedIsTold();
};

void TestWorkspaces::whatWasSavedIsOpenedAsItWas()
{
    RedisServer other;
    fLine = robotLine(*fRobot);
    start();
    MainWindow* const first = window();
    first->resize(900, 600);
    action("Table")->trigger();
    action("Table")->trigger();
    docksOf(first).first()->close(); // leaves the second one's name
    action("Probe")->trigger();
    TRY_COMPARE(docksOf(first).size(), 2);
    first->addDockWidget(Qt::RightDockWidgetArea, docksOf(first).at(1));
    docksOf(first).at(1)->setUsersTitle("the \"left\" arm");
    TRY_VERIFY(docksOf(first).at(0)->isArranged());
    auto* const panel = first->findChild<TarvekWidget*>("tablePanel");
    dragHandle(*panel->findChild<QSplitter*>());
    TRY_VERIFY(!panel->findChild<FirstSizes*>());
    first->findChild<QTreeWidget*>()->setColumnWidth(0, 222);
    fDesktop->connectTo(settingsOf(other));
    TRY_COMPARE(fDesktop->windows().size(), 2);
    saveAs(file());
    QVERIFY(QFileInfo(file()).isFile());
    for (const char* known : {"window", "panels"}) // some of it
        QSettings().remove(known);

    openFile();
    TRY_VERIFY(!fDesktop->isOpeningWorkspace());
    QVERIFY(!message());
    QCOMPARE(fDesktop->windows().size(), 2);
    MainWindow* const again = fDesktop->windows().first();
    QCOMPARE(again->settings().address.port, fRobot->port());
    QCOMPARE(fDesktop->windows().last()->settings().address.port, other.port());
    QCOMPARE(again->size(), QSize(900, 600));
    QCOMPARE(docksOf(again).size(), 2);
    QCOMPARE(docksOf(again).at(0)->plugin().name, QString("Table"));
    QCOMPARE(docksOf(again).at(1)->windowTitle(), QString("the \"left\" arm"));
    TRY_VERIFY(docksOf(again).at(0)->geometry().right() < docksOf(again).at(1)->geometry().left());
    TRY_COMPARE(again->findChild<QTreeWidget*>()->columnWidth(0), 222);
    QVERIFY(docksOf(fDesktop->windows().last()).isEmpty());
}

void TestWorkspaces::itIsAmongTheRecentOnes()
{
    fLine = robotLine(*fRobot);
    start();
    QVERIFY(!action("Recent workspaces")->isEnabled());
    saveAs(file());
    QCOMPARE(recentWorkspaces(), QStringList(file()));
    for (auto* menu : window()->menuBar()->findChildren<QMenu*>())
        emit menu->aboutToShow();
    action("My robots")->trigger();
    TRY_COMPARE(fDesktop->windows().size(), 2);
    QVERIFY(QFile::remove(file()));
    QVERIFY(recentWorkspaces().isEmpty());
}

void TestWorkspaces::aChosenOneIsOpenedBesideWhatIsThere()
{
    fLine = robotLine(*fRobot);
    start();
    write({windowOf(settingsOf(*fRobot))});
    ModalDriver user;
    user.then<QFileDialog>([this](QFileDialog& dialog) { chooseFile(dialog, file()); });
    action("Open workspace")->trigger();
    TRY_COMPARE(fDesktop->windows().size(), 2);
    TRY_VERIFY(probe());
}

void TestWorkspaces::changingOnesMindSavesAndOpensNothing()
{
    fLine = robotLine(*fRobot);
    start();
    for (const char* command : {"Save workspace", "Open workspace"}) {
        ModalDriver user;
        user.then<QFileDialog>([](QFileDialog& dialog) { cancelDialog(dialog); });
        action(command)->trigger();
    }
    QVERIFY(QDir(fFolder->path()).isEmpty());
    QVERIFY(!fDesktop->isOpeningWorkspace());
    QCOMPARE(fDesktop->windows().size(), 1);
}

void TestWorkspaces::aRobotThatTakesTimeIsShownAndCanBeCancelled()
{
    const FakeRobot slow([](FakeConnection& connection) { connection.waitForEnd(); });
    ConnectionSettings settings = settingsOf(*fRobot);
    settings.address.port = slow.port();
    settings.timeout = 3600000;
    write({windowOf(settings), windowOf(settingsOf(*fRobot))});
    openFile();
    TRY_VERIFY(shown<QProgressDialog>("workspaceProgress"));
    auto* const progress = shown<QProgressDialog>("workspaceProgress");
    QVERIFY(progress->labelText().contains(settings.addressText()));
    TRY_COMPARE(progress->value(), 1);
    QTest::keyClick(progress, Qt::Key_Escape);
    TRY_VERIFY(message());
    QVERIFY(message()->text().contains(settings.addressText()));
    QCOMPARE(fDesktop->windows().size(), 1);
    TRY_VERIFY(probe());
}

void TestWorkspaces::quittingWhileRobotsAreTriedEndsTheProgram()
{
    const FakeRobot slow([](FakeConnection& connection) { connection.waitForEnd(); });
    ConnectionSettings settings = settingsOf(*fRobot);
    settings.address.port = slow.port();
    settings.timeout = 3600000;
    write({windowOf(settings)});
    openFile();
    TRY_VERIFY(shown<QProgressDialog>("workspaceProgress"));
    fDesktop->closeAll();
    TRY_VERIFY(!fFinished->isEmpty());
    QVERIFY(!fDesktop->isOpeningWorkspace());
}

void TestWorkspaces::aPanelWhoseWindowIsClosedMeanwhileIsLeftOut()
{
    write({windowOf(settingsOf(*fRobot), {"Probe", "Table"}), windowOf(settingsOf(*fRobot))});
    openFile();
    TRY_COMPARE(fDesktop->windows().size(), 2);
    fDesktop->windows().first()->close();
    TRY_VERIFY(!fDesktop->isOpeningWorkspace());
    QCOMPARE(fDesktop->windows().size(), 1);
    QVERIFY(probe());
    QVERIFY(!message());
}

void TestWorkspaces::whatCannotBeSavedIsTold()
{
    fLine = robotLine(*fRobot);
    start();
    writeBytes(file(), "{\"format\": \"tarvek-workspace\", \"version\": 7, \"rooms\": {}}");
    ModalDriver user;
    user.then<QFileDialog>([this](QFileDialog& dialog) { chooseFile(dialog, file()); });
    user.then<QMessageBox>([](QMessageBox& box) { // whether to replace it
        QTest::mouseClick(box.button(QMessageBox::Yes), Qt::LeftButton);
    });
    action("Save workspace")->trigger();
    TRY_VERIFY(shownBox());
    QVERIFY2(shownBox()->text().contains("a newer version"), qPrintable(shownBox()->text()));
    QVERIFY(bytesOf(file()).contains("rooms"));
}

REGISTER_TEST(TestWorkspaces, HostApplication)
#include "tst_workspaces.moc"
