// SPDX-License-Identifier: MIT
#include "robots/saved_robots.h"
#include "support/desktop_bench.h"
#include "support/drag.h"
#include "support/fake_robot.h"
#include "support/fake_ssh.h"
#include "support/files.h"
#include "support/guarded_test.h"
#include "support/host.h"
#include "support/register_test.h"
#include "windows/first_sizes.h"
#include "windows/panel_dock.h"
#include "windows/panel_docks.h"
#include "windows/recent_workspaces.h"
#include "workspace/workspace_file.h"

#include <QFileDialog>
#include <QInputDialog>
#include <QMenuBar>
#include <QMessageBox>
#include <QProgressDialog>
#include <QPushButton>
#include <QTreeWidget>
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

/// Workspaces as a user of the whole desktop saves and opens them.
class TestWorkspaces : public GuardedTest, private DesktopBench
{
    Q_OBJECT

private slots:
    void init()
    {
        setUp();
        fFolder.reset(new QTemporaryDir);
    }
    void cleanup()
    {
        tearDown();
        GuardedTest::cleanup();
    }
    void whatWasSavedIsOpenedAsItWas();
    void itIsAmongTheRecentOnes();
    void aChosenOneIsOpenedBesideWhatIsThere();
    void changingOnesMindSavesAndOpensNothing();
    void whatCannotBeOpenedIsToldInOneMessage();
    void robotsThatWereAwayAreTriedAgain();
    void robotsThatAreAwayStayInAWorkspaceThatIsSavedAgain();
    void panelsThatCannotBeOpenedStayInAWorkspaceThatIsSavedAgain();
    void panelsThatAreCalledOffDoNot();
    void panelsStillToComeAreKeptForTheNextSession();
    void aMessageOfManyProblemsFitsTheScreen();
    void nothingToOpenAsksForARobot();
    void aFileThatIsNoneIsToldAndARobotAskedFor();
    void aRobotThatTakesTimeIsShownAndCanBeCancelled();
    void aRobotThatWantsAPasswordAsksForIt();
    void whoCanReadThePasswordIsTold();
    void withoutThePasswordTheRobotIsLeftOut();
    void aKeptPasswordIsUsed();
    void aKeptPasswordGoesNowhereElse();
    void aPasswordThatIsNotInTheKeyringIsNoHindrance();
    void closingTheWindowUnderTheMessageEndsTheProgram();
    void quittingWhileRobotsAreTriedEndsTheProgram();
    void aPanelWhoseWindowIsClosedMeanwhileIsLeftOut();
    void whatCannotBeSavedIsTold();

private:
    QString file() const { return fFolder->filePath("My robots.tarvek"); }
    QAction* action(const QString& text) const;
    void saveAs(const QString& file) const;
    void openFile();
    QMessageBox* message() const { return shown<QMessageBox>("workspaceProblems"); }
    static ConnectionSettings settingsOf(const RedisServer& robot);
    static WorkspaceWindow windowOf(const ConnectionSettings& robot,
                                    const QStringList& plugins = {"Probe"});
    void write(const QList<WorkspaceWindow>& windows) const;
    /// The names of the panels of the first window there.
    static QStringList panelsIn(const QString& file);
    /// The dialog with this name; null when it is not there.
    template <class Dialog>
    static Dialog* shown(const QString& name)
    {
        for (QWidget* widget : QApplication::topLevelWidgets())
            if (widget->objectName() == name && widget->isVisible())
                return qobject_cast<Dialog*>(widget);
        return nullptr;
    }
    static QList<PanelDock*> docksOf(MainWindow* window)
    {
        return window->findChild<PanelDocks*>()->docks();
    }

    QScopedPointer<QTemporaryDir> fFolder;
};

QAction* TestWorkspaces::action(const QString& text) const
{
    for (QAction* action : window()->menuBar()->findChildren<QAction*>())
        if (action->text().remove('&').startsWith(text))
            return action;
    return nullptr;
}

void TestWorkspaces::saveAs(const QString& file) const
{
    ModalDriver user;
    user.then<QFileDialog>([file](QFileDialog& dialog) { chooseFile(dialog, file); });
    action("Save workspace")->trigger();
}

void TestWorkspaces::openFile()
{
    fLine.connectAtOnce = false;
    fLine.workspace = file();
    begin();
}

ConnectionSettings TestWorkspaces::settingsOf(const RedisServer& robot)
{
    ConnectionSettings settings;
    settings.address.host = "127.0.0.1";
    settings.address.port = robot.port();
    return settings;
}

WorkspaceWindow TestWorkspaces::windowOf(const ConnectionSettings& robot,
                                         const QStringList& plugins)
{
    WorkspaceWindow window;
    window.robot = robot;
    for (const QString& plugin : plugins)
        window.content.panels += PanelContent{plugin, plugin + " 1", {}};
    return window;
}

void TestWorkspaces::write(const QList<WorkspaceWindow>& windows) const
{
    QCOMPARE(writeWorkspace({windows, {}}, file()), QString());
}

QStringList TestWorkspaces::panelsIn(const QString& file)
{
    QStringList names;
    const WindowContent content = readWorkspace(file).windows.first().content;
    for (const PanelContent& panel : content.panels)
        names += panel.dock;
    return names;
}

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

void TestWorkspaces::whatCannotBeOpenedIsToldInOneMessage()
{
    RedisServer away;
    write({windowOf(settingsOf(*fRobot), {"Hologram", "Probe", "throws"}),
           windowOf(settingsOf(away)), windowOf(settingsOf(*fRobot), {"Table"})});
    QByteArray text = bytesOf(file());
    text.replace("\"Table\"", "7");
    writeBytes(file(), text);
    away.kill();
    openFile();
    TRY_VERIFY(message());
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

void TestWorkspaces::robotsThatWereAwayAreTriedAgain()
{
    RedisServer away;
    write({windowOf(settingsOf(away)), windowOf(settingsOf(*fRobot))});
    away.kill();
    openFile();
    TRY_VERIFY(message());
    QCOMPARE(fDesktop->windows().size(), 1);
    away.restart();
    QTest::mouseClick(message()->findChild<QPushButton*>("tryAgain"), Qt::LeftButton);
    TRY_COMPARE(fDesktop->windows().size(), 2);
    QCOMPARE(window()->settings().address.port, away.port());
    TRY_VERIFY(probe());
    TRY_VERIFY(!fDesktop->isOpeningWorkspace());
    QVERIFY(!message());
}

void TestWorkspaces::robotsThatAreAwayStayInAWorkspaceThatIsSavedAgain()
{
    RedisServer away;
    write({windowOf(settingsOf(away)), windowOf(settingsOf(*fRobot))});
    away.kill();
    openFile();
    TRY_VERIFY(message());
    QTest::keyClick(message(), Qt::Key_Escape);
    TRY_VERIFY(!fDesktop->isOpeningWorkspace());
    const QString again = fFolder->filePath("Again.tarvek");
    saveAs(again);
    QList<int> ports;
    for (const WorkspaceWindow& one : readWorkspace(again).windows)
        ports += one.robot.address.port;
    QCOMPARE(ports, (QList<int>{fRobot->port(), away.port()}));
}

void TestWorkspaces::panelsThatCannotBeOpenedStayInAWorkspaceThatIsSavedAgain()
{
    WorkspaceWindow wanted = windowOf(settingsOf(*fRobot), {"Hologram", "Probe", "throws"});
    wanted.content.panels[0].arrangement = {{"QSplitter1", "1,2"}};
    wanted.content.look.titles = {{"Hologram 1", "the left arm"}};
    write({wanted});
    openFile();
    TRY_VERIFY(message());
    QTest::keyClick(message(), Qt::Key_Escape);
    TRY_VERIFY(!fDesktop->isOpeningWorkspace());
    const QString again = fFolder->filePath("Again.tarvek");
    saveAs(again);
    QCOMPARE(panelsIn(again), QStringList({"Probe 1", "Hologram 1", "throws 1"}));
    const WindowContent kept = readWorkspace(again).windows.first().content;
    QCOMPARE(kept.panels.at(1).arrangement, wanted.content.panels[0].arrangement);
    QCOMPARE(kept.look.titles, wanted.content.look.titles);
}

void TestWorkspaces::panelsThatAreCalledOffDoNot()
{
    const AskingPanels asking;
    write({windowOf(settingsOf(*fRobot), {"Probe", "Table"})});
    ModalDriver user;
    for (const char* dialog : {"innerProbeDialog", "probeDialog"})
        user.then(dialog, cancelDialog);
    openFile();
    TRY_VERIFY(!fDesktop->isOpeningWorkspace());
    const QString again = fFolder->filePath("Again.tarvek");
    saveAs(again);
    QCOMPARE(panelsIn(again), QStringList("Table 1"));
}

void TestWorkspaces::panelsStillToComeAreKeptForTheNextSession()
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
    openFile();
    TRY_VERIFY(message());
    QCOMPARE(docksOf(window()).size(), 2);
    docksOf(window()).first()->close();
    QVERIFY(fDesktop->keepForNextSession(next));
    QCOMPARE(panelsIn(next), all.mid(1));
}

void TestWorkspaces::aMessageOfManyProblemsFitsTheScreen()
{
    QStringList plugins;
    for (int i = 0; i < mostWorkspacePanels; ++i)
        plugins += QString("Hologram %1 ").arg(i).leftJustified(900, 'x');
    write({windowOf(settingsOf(*fRobot), plugins), windowOf(settingsOf(*fRobot), plugins),
           windowOf(settingsOf(*fRobot), plugins)});
    openFile();
    TRY_VERIFY(message());
    QVERIFY(message()->text().contains("Hologram 9 ") && !message()->text().contains("ram 10 "));
    QCOMPARE(message()->informativeText(), QString("290 more in the details."));
    const QString details = message()->detailedText();
    QVERIFY(details.contains("Hologram 10 ") && details.endsWith("..."));
    QVERIFY(details.size() < 200 * 1010);
}

void TestWorkspaces::nothingToOpenAsksForARobot()
{
    write({windowOf(settingsOf(*fRobot))});
    fRobot->kill();
    openFile();
    TRY_VERIFY(message());
    QTest::keyClick(message(), Qt::Key_Escape);
    TRY_VERIFY(fDesktop->connectDialog());
    QCOMPARE(fFinished->size(), 0);
}

void TestWorkspaces::aFileThatIsNoneIsToldAndARobotAskedFor()
{
    writeBytes(file(), "hello");
    openFile();
    TRY_VERIFY(shownBox());
    QVERIFY2(shownBox()->text().contains(file()), qPrintable(shownBox()->text()));
    TRY_VERIFY(fDesktop->connectDialog());
    clickOk(shownBox());
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

void TestWorkspaces::aRobotThatWantsAPasswordAsksForIt()
{
    RedisServer::Options options;
    options.users = {"alice on >sesame ~* +@all"};
    const RedisServer robot(options);
    ConnectionSettings settings = settingsOf(robot);
    settings.user = "alice";
    write({windowOf(settings)});
    openFile();
    for (const char* password : {"wrong", "sesame"}) {
        TRY_VERIFY(shown<QInputDialog>("workspacePassword"));
        const QPointer<QInputDialog> dialog = shown<QInputDialog>("workspacePassword");
        QVERIFY(dialog->labelText().contains("\"alice\""));
        QCOMPARE(dialog->textEchoMode(), QLineEdit::Password);
        dialog->setTextValue(password);
        QTest::keyClick(dialog, Qt::Key_Return);
        TRY_VERIFY(!dialog);
    }
    TRY_VERIFY(window() && probe());
    QVERIFY(fKeyring->passwords.empty()); // nobody wants it kept
}

void TestWorkspaces::whoCanReadThePasswordIsTold()
{
    const FakeSsh ssh;
    RedisServer::Options options;
    options.defaultPassword = "sesame";
    const RedisServer plain(options);
    options.tls = true;
    const RedisServer encrypted(options);
    ConnectionSettings behindGate = settingsOf(plain);
    behindGate.jumpHost = "gate";
    ConnectionSettings byTls = settingsOf(encrypted);
    byTls.tls = true;
    byTls.caFile = QString::fromStdString(encrypted.caFile());
    const QList<QPair<ConnectionSettings, QString>> robots{
        {settingsOf(plain), "The way there is not encrypted"},
        {behindGate, "The way from gate on is not encrypted"},
        {byTls, ""}};
    for (const auto& [robot, warning] : robots) {
        write({windowOf(robot)});
        openFile();
        TRY_VERIFY(shown<QInputDialog>("workspacePassword"));
        const QString text = shown<QInputDialog>("workspacePassword")->labelText();
        QVERIFY2(text.contains(warning), qPrintable(text));
        QCOMPARE(text.contains("encrypted"), !warning.isEmpty());
    }
}

void TestWorkspaces::withoutThePasswordTheRobotIsLeftOut()
{
    RedisServer::Options options;
    options.defaultPassword = "sesame";
    const RedisServer robot(options);
    write({windowOf(settingsOf(robot))});
    openFile();
    TRY_VERIFY(shown<QInputDialog>("workspacePassword"));
    QTest::keyClick(shown<QInputDialog>("workspacePassword"), Qt::Key_Escape);
    TRY_VERIFY(message());
    QVERIFY2(message()->text().contains(settingsOf(robot).addressText()),
             qPrintable(message()->text()));
    QVERIFY(!window());
}

void TestWorkspaces::aKeptPasswordIsUsed()
{
    RedisServer::Options options;
    options.defaultPassword = "sesame";
    const RedisServer robot(options);
    ConnectionSettings settings = settingsOf(robot);
    settings.keepsPassword = true;
    saveRobot({"Mine", settings});
    fKeyring->passwords[keyringName(settings)] = "sesame";
    write({windowOf(settings)});
    openFile();
    TRY_VERIFY(window() && probe());
    QCOMPARE(fKeyring->passwords.size(), size_t(1));
}

void TestWorkspaces::aKeptPasswordGoesNowhereElse()
{
    RedisServer::Options options;
    options.defaultPassword = "sesame";
    const RedisServer robot(options);
    ConnectionSettings settings = settingsOf(robot);
    settings.keepsPassword = true;
    settings.tls = true;
    saveRobot({"Mine", settings});
    fKeyring->passwords[keyringName(settings)] = "sesame";
    settings.tls = false; // as somebody would like to have it
    write({windowOf(settings)});
    openFile();
    TRY_VERIFY(shown<QInputDialog>("workspacePassword"));
    QCOMPARE(fKeyring->questions, 0);
}

void TestWorkspaces::aPasswordThatIsNotInTheKeyringIsNoHindrance()
{
    ConnectionSettings settings = settingsOf(*fRobot);
    settings.keepsPassword = true;
    saveRobot({"Mine", settings});
    write({windowOf(settings)});
    openFile();
    QCOMPARE(fKeyring->questions, 1);
    TRY_VERIFY(window() && probe());
}

void TestWorkspaces::closingTheWindowUnderTheMessageEndsTheProgram()
{
    write({windowOf(settingsOf(*fRobot), {"Hologram"})});
    openFile();
    TRY_VERIFY(message());
    window()->close();
    TRY_COMPARE(fFinished->size(), 1);
    QVERIFY(!fDesktop->connectDialog());
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
