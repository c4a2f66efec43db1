// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/host.h"
#include "support/modal_driver.h"
#include "support/patience.h"
#include "support/register_test.h"
#include "support/robot.h"
#include "support/window_bench.h"
#include "windows/start_page.h"

#include <tarvek/tarvek_widget.h>
#include <tarvek/widget_interface.h>

#include <zo/error.h>

#include <QAction>
#include <QFileDialog>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QTableWidget>
#include <QTextDocument>
#include <QtTest>

/// The window of one robot, with real plug-ins and a real server as the robot.
class TestMainWindow : public GuardedTest, private WindowBench
{
    Q_OBJECT

private slots:
    void init() { setUp(); }
    void cleanup()
    {
        tearDown();
        GuardedTest::cleanup();
    }
    void offersThePanelsThatWereFound();
    void eachCommandOfAMenuHasAKeyOfItsOwn();
    void opensAPanelFromTheMenu();
    void opensAPanelFromTheStartPage();
    void aStartPageWithoutPanelsSaysWhereItLooked();
    void handsThePanelWhatItNeeds();
    void anErrorOfAPluginEndsInABox();
    void aPanelThatFailsHalfWayLeavesNothingBehind();
    void aCancelledPanelIsNoError();
    void severalPanelsShareTheLink();
    void onePanelIsMadeAtATime();
    void aPluginMakesOnePanelAtATimeForAllWindows();
    void closingAPanelEndsItsLink();
    void losingTheRobotTellsThePanelOnce();
    void aPanelThatFailsToTakeTheNewsDoesNotKeepItFromTheNext();
    void saysThatTheRobotIsBackAndTellsTheNextLoss();
    void aPanelMadeWhileTheRobotWentAwayIsTold();
    void tellsWhatGoesOverTheLink();
    void panelsCannotBeOpenedWithoutTheRobot();
    void savesAPictureOfThePanel();
    void aPictureThatCannotBeSavedIsAnError();
    void aClosedWindowSavesNoPicture();
    void listsPluginsThatFailed();
    void closesWhileAStartUpDialogIsOpen();
    void aClosedWindowShowsNoErrorOfItsPanel();
    void anExceptionOfAPanelEndsInABox();

private:
    QString stateText() const;
    QString detailText() const;
};

QString TestMainWindow::stateText() const
{
    return fWindow->findChild<QLabel*>("connectionState")->text();
}

QString TestMainWindow::detailText() const
{
    return fWindow->findChild<QLabel*>("connectionDetail")->text();
}

void TestMainWindow::offersThePanelsThatWereFound()
{
    QVERIFY(action("Probe")->isEnabled());
    QVERIFY(action("throws")->isEnabled());
    QVERIFY(!action("other_interface"));
    QVERIFY(!action("Save picture")->isEnabled());
    QVERIFY(stateText().startsWith("Connected since"));
}

void TestMainWindow::eachCommandOfAMenuHasAKeyOfItsOwn()
{
    QList<QWidget*> menus{fWindow->menuBar()};
    for (auto* menu : fWindow->menuBar()->findChildren<QMenu*>())
        menus += menu;
    QVERIFY(menus.size() > 4);
    for (const QWidget* menu : menus) {
        QSet<QKeySequence> keys;
        for (const QAction* action : menu->actions()) {
            const QKeySequence key = QKeySequence::mnemonic(action->text());
            QVERIFY2(key.isEmpty() || !keys.contains(key), qPrintable(action->text()));
            keys += key;
        }
    }
}

void TestMainWindow::opensAPanelFromTheMenu()
{
    openProbe();
    QVERIFY(probe()->isVisible());
    QCOMPARE(probe()->window(), fWindow.data());
    QVERIFY(action("Save picture")->isEnabled());
}

void TestMainWindow::opensAPanelFromTheStartPage()
{
    QPushButton* found = nullptr;
    for (QPushButton* button : fWindow->findChildren<QPushButton*>())
        if (button->text() == "Probe")
            found = button;
    QVERIFY(found && found->isVisible());
    QTest::mouseClick(found, Qt::LeftButton);
    QVERIFY(probe() && probe()->isVisible());
}

void TestMainWindow::aStartPageWithoutPanelsSaysWhereItLooked()
{
    PluginLoader none;
    none.loadFolder("/no/<b>such</b>/folder");
    const StartPage page(none, nullptr);
    const auto* label = page.findChild<QLabel*>();
    QVERIFY2(label->text().contains("/no/<b>such</b>/folder"), qPrintable(label->text()));
    QCOMPARE(label->textFormat(), Qt::PlainText);
    QVERIFY(page.findChildren<QPushButton*>().isEmpty());
}

void TestMainWindow::handsThePanelWhatItNeeds()
{
    ConnectionSettings settings = fWindow->settings();
    openProbe();
    QCOMPARE(probe()->property("imageDir").toString(), QString("/some/where/"));
    QCOMPARE(probe()->property("user").toString(), settings.user);
    QCOMPARE(fPlugins->find("Probe")->panels->fParent, docks().first()->holder());
    QCOMPARE(fPlugins->find("Probe")->panels->fPanel, probe());
}

void TestMainWindow::anErrorOfAPluginEndsInABox()
{
    action("throws")->trigger();
    QMessageBox* box = shownBox();
    QVERIFY(box);
    QVERIFY(box->text().contains("\"throws\""));
    QVERIFY(box->text().contains("the arm is <b>too</b> short"));
    QCOMPARE(box->textFormat(), Qt::PlainText);
    clickOk(box);
    openProbe();
}

void TestMainWindow::aPanelThatFailsHalfWayLeavesNothingBehind()
{
    action("throws")->trigger();
    QVERIFY(fWindow->findChildren<TarvekWidget*>().isEmpty());
    QCOMPARE(fPlugins->find("throws")->panels->fPanel, nullptr);
}

void TestMainWindow::aCancelledPanelIsNoError()
{
    action("nothing")->trigger();
    QVERIFY(fWindow->property("wasAsked").toBool());
    QCOMPARE(fPlugins->find("nothing")->panels->fParent, nullptr); // what it was is gone
    QVERIFY(docks().isEmpty());
    QVERIFY(!shownBox());
    QVERIFY(!action("Save picture")->isEnabled());
}

void TestMainWindow::severalPanelsShareTheLink()
{
    openProbe();
    action("Probe")->trigger();
    QCOMPARE(fWindow->findChildren<TarvekWidget*>("probe").size(), 2);
    QCOMPARE(fRobot->clients(), 1); // they share the window's link
    fWindow->monitor().setLimit(std::chrono::seconds(0));
    fRobot->kill();
    for (TarvekWidget* panel : fWindow->findChildren<TarvekWidget*>("probe"))
        TRY_COMPARE(panel->property("disconnections").toInt(), 1);
}

void TestMainWindow::onePanelIsMadeAtATime()
{
    fWindow->setProperty("askFirst", true);
    bool wasRefused = false;
    whenShown("innerProbeDialog", [this, &wasRefused](QDialog& inner) {
        fWindow->openPanel(fPlugins->find("throws"));
        wasRefused = !shownBox();
        whenShown("probeDialog", [](QDialog& outer) { outer.accept(); });
        inner.accept();
    });
    action("Probe")->trigger();
    QVERIFY(wasRefused);
    QVERIFY(probe() && probe()->isVisible());
}

void TestMainWindow::aPluginMakesOnePanelAtATimeForAllWindows()
{
    fWindow->setProperty("askFirst", true);
    QString problem;
    whenShown("innerProbeDialog", [this, &problem](QDialog& inner) {
        MainWindow second({*fPlugins, *fErrors, "/some/where/"}, fWindow->settings(),
                          linkTo(fRobot->port(), patientOptions()));
        second.openPanel(fPlugins->find("Probe"));
        if (QMessageBox* box = shownBox()) {
            problem = box->text();
            clickOk(box);
        }
        whenShown("probeDialog", [](QDialog& outer) { outer.accept(); });
        inner.accept();
    });
    action("Probe")->trigger();
    QVERIFY2(problem.contains("Its start-up dialog is still open."), qPrintable(problem));
    QVERIFY(probe() && probe()->isVisible());
    fWindow->setProperty("askFirst", false);
    openProbe();
    QVERIFY(!shownBox());
}

void TestMainWindow::closingAPanelEndsItsLink()
{
    fWindow->setProperty("ownLink", true);
    openProbe();
    QCOMPARE(fRobot->clients(), 2);
    QTest::keyClick(fWindow.data(), Qt::Key_W, Qt::ControlModifier);
    TRY_VERIFY(!probe());
    TRY_COMPARE(fRobot->clients(), 1);
    QCOMPARE(fPlugins->find("Probe")->panels->fPanel, nullptr);
    QVERIFY(!action("Save picture")->isEnabled());
    QVERIFY(stateText().startsWith("Connected since"));
}

void TestMainWindow::losingTheRobotTellsThePanelOnce()
{
    openProbe();
    fWindow->monitor().setLimit(std::chrono::seconds(0));
    fRobot->stop();
    TRY_COMPARE(probe()->property("disconnections").toInt(), 1);
    QCOMPARE(probe()->property("disconnectedBy").value<WidgetInterface*>(),
             fPlugins->find("Probe")->panels);
    QVERIFY(stateText().startsWith("Connection lost since"));
    QVERIFY2(detailText().contains(fWindow->settings().addressText()), qPrintable(detailText()));
    TRY_VERIFY(fWindow->monitor().state().since.msecsTo(QDateTime::currentDateTime()) > 2500);
    QCOMPARE(probe()->property("disconnections").toInt(), 1);
    fRobot->resume();
}

void TestMainWindow::aPanelThatFailsToTakeTheNewsDoesNotKeepItFromTheNext()
{
    openProbe();
    connect(probe(), &TarvekWidget::disconnected, [] { throw ZoError("no news, please"); });
    action("Probe")->trigger();
    const auto panels = fWindow->findChildren<TarvekWidget*>("probe");
    QCOMPARE(panels.size(), 2);
    fWindow->monitor().setLimit(std::chrono::seconds(0));
    fRobot->kill();
    for (const TarvekWidget* panel : panels)
        TRY_COMPARE(panel->property("disconnections").toInt(), 1);
    TRY_VERIFY(shownBox());
    QCOMPARE(shownBox()->text(), QString("no news, please"));
    clickOk(shownBox());
}

void TestMainWindow::saysThatTheRobotIsBackAndTellsTheNextLoss()
{
    openProbe();
    fWindow->monitor().setLimit(std::chrono::seconds(0));
    fRobot->kill();
    TRY_COMPARE(probe()->property("disconnections").toInt(), 1);
    fRobot->restart();
    TRY_VERIFY(stateText().startsWith("Connected since"));
    QCOMPARE(detailText(), fWindow->settings().addressText());
    QCOMPARE(probe()->property("disconnections").toInt(), 1);
    fRobot->kill();
    TRY_COMPARE(probe()->property("disconnections").toInt(), 2);
}

void TestMainWindow::aPanelMadeWhileTheRobotWentAwayIsTold()
{
    fWindow->setProperty("askFirst", true);
    fWindow->monitor().setLimit(std::chrono::seconds(0));
    whenShown("innerProbeDialog", [this](QDialog& inner) {
        fRobot->kill();
        TRY_VERIFY(stateText().startsWith("Connection lost"));
        whenShown("probeDialog", [](QDialog& outer) { outer.accept(); });
        inner.accept();
    });
    action("Probe")->trigger();
    QVERIFY(probe() && probe()->isVisible());
    TRY_COMPARE(probe()->property("disconnections").toInt(), 1);
}

void TestMainWindow::tellsWhatGoesOverTheLink()
{
    const auto* label = fWindow->findChild<QLabel*>("connectionTraffic");
    TRY_VERIFY(label->text().endsWith(" ms, 0 answers/s"));
    fRobot->kill();
    TRY_COMPARE(label->text(), QString());
}

void TestMainWindow::panelsCannotBeOpenedWithoutTheRobot()
{
    fRobot->kill();
    TRY_VERIFY(!action("Probe")->isEnabled());
    fRobot->restart();
    TRY_VERIFY(action("Probe")->isEnabled());
}

void TestMainWindow::savesAPictureOfThePanel()
{
    const QTemporaryDir folder;
    openProbe();
    const QSize size = probe()->size();
    ModalDriver user;
    user.then<QFileDialog>(
        [&folder](QFileDialog& dialog) { chooseFile(dialog, folder.filePath("panel")); });
    action("Save picture")->trigger();
    const QImage image(folder.filePath("panel.png"));
    QCOMPARE(image.size(), size * fWindow->devicePixelRatioF());
    QVERIFY(detailText().contains(folder.filePath("panel.png")));
    // The next one goes to the same folder, unless the user says otherwise.
    user.then<QFileDialog>([&folder](QFileDialog& dialog) {
        QCOMPARE(dialog.directory().absolutePath(), folder.path());
        cancelDialog(dialog);
    });
    action("Save picture")->trigger();
    QVERIFY(user.isDone());
}

void TestMainWindow::aPictureThatCannotBeSavedIsAnError()
{
    const QTemporaryDir folder;
    openProbe();
    ModalDriver user;
    user.then<QFileDialog>(
        [&folder](QFileDialog& dialog) { chooseFile(dialog, folder.filePath("panel.jpg")); });
    action("Save picture")->trigger();
    QVERIFY(shownBox());
    QVERIFY(shownBox()->text().contains(folder.filePath("panel.jpg")));
    QVERIFY(QDir(folder.path()).isEmpty());
}

void TestMainWindow::aClosedWindowSavesNoPicture()
{
    const QTemporaryDir folder;
    openProbe();
    ModalDriver user;
    user.then<QFileDialog>([this, &folder](QFileDialog& dialog) {
        connect(&dialog, &QDialog::accepted, fWindow.data(), &QWidget::close);
        chooseFile(dialog, folder.filePath("panel"));
    });
    action("Save picture")->trigger();
    QVERIFY(!fWindow->isVisible());
    QVERIFY(QDir(folder.path()).isEmpty());
}

void TestMainWindow::listsPluginsThatFailed()
{
    QVERIFY(action("Plug-ins that failed")->text().contains("(6)"));
    action("Plug-ins that failed")->trigger();
    auto* table = fWindow->findChild<QTableWidget*>();
    QVERIFY(table && table->isVisible());
    QCOMPARE(table->rowCount(), 6);
    const auto found = table->findItems("other_interface.so", Qt::MatchStartsWith);
    QCOMPARE(found.size(), 1);
    QVERIFY(found[0]->text().contains(TEST_PLUGIN_DIR));
    const QTableWidgetItem* reason = table->item(found[0]->row(), 1);
    QVERIFY(reason->text().contains("9.9"));
    QTextDocument toolTip; // as it is shown, when the cell is too narrow
    toolTip.setHtml(reason->toolTip());
    QCOMPARE(toolTip.toPlainText(), reason->text());
}

void TestMainWindow::closesWhileAStartUpDialogIsOpen()
{
    fWindow->setProperty("askFirst", true);
    bool wasIdle = true;
    whenShown("innerProbeDialog", [this, &wasIdle](QDialog&) {
        fWindow->close();
        wasIdle = fWindow->isIdle();
    });
    action("Probe")->trigger();
    QVERIFY(!wasIdle);
    QVERIFY(fWindow->isIdle());
    QVERIFY(!fWindow->isVisible());
    QVERIFY(!probe());
}

void TestMainWindow::aClosedWindowShowsNoErrorOfItsPanel()
{
    fWindow->setProperty("askFirst", true);
    fWindow->setProperty("thenFail", true);
    whenShown("innerProbeDialog", [this](QDialog&) { fWindow->close(); });
    action("Probe")->trigger();
    QVERIFY(!shownBox());
    QVERIFY(fWindow->isIdle());
}

void TestMainWindow::anExceptionOfAPanelEndsInABox()
{
    openProbe();
    QTest::mouseClick(probe()->findChild<QPushButton*>(), Qt::LeftButton);
    TRY_VERIFY(shownBox());
    QCOMPARE(shownBox()->text(), QString("the probe broke off"));
    clickOk(shownBox());
    QVERIFY(probe()->isVisible());
}

REGISTER_TEST(TestMainWindow, HostApplication)
#include "tst_main_window.moc"
