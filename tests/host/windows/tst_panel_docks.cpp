// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/host.h"
#include "support/register_test.h"
#include "support/window_bench.h"
#include "windows/dock_title.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTabBar>
#include <QToolButton>
#include <QtTest>

/// The places of panels in a window.
class TestPanelDocks : public GuardedTest, private WindowBench
{
    Q_OBJECT

private slots:
    void init() { setUp(); }
    void cleanup()
    {
        tearDown();
        GuardedTest::cleanup();
    }
    void aPanelHasTheWholeWindow();
    void theNewestPanelIsInFront();
    void panelsStandSideBySideAndFloat();
    void thePanelsTitleIsThatOfItsDock();
    void equalTitlesGetNumbers();
    void aDoubleClickRenames();
    void escapeKeepsTheTitle();
    void anEmptyNameGivesThePanelsOwnBack();
    void aDoubleClickOnATabRenames();
    void theCrossClosesItsPanelOnly();
    void theShortcutClosesThePanelInFrontAndThenTheWindow();
    void aClickMakesAPanelTheFrontOne();
    void aClickOnATabMakesItsPanelTheFrontOne();
    void keysGoFromPanelToPanel();
    void aPanelThatEndsTakesItsDockAlong();
    void theShortcutReachesAFloatingPanel();
    void aFloatingPanelTellsOfItsOutage();
    void aFloatingPanelGoesWithItsWindow();

private:
    void openProbes(int count);
    PanelDock* front() const { return fWindow->frontDock(); }
    static QWidget* titleOf(const PanelDock* dock) { return dock->titleBarWidget(); }
    static void rename(PanelDock* dock, const QString& title, Qt::Key end = Qt::Key_Return);
    QTabBar* tabs() const { return fWindow->findChild<QTabBar*>({}, Qt::FindDirectChildrenOnly); }
};

void TestPanelDocks::openProbes(int count)
{
    for (int i = 0; i < count; ++i)
        action("Probe")->trigger();
    QCOMPARE(docks().size(), count);
    QTRY_VERIFY(QTest::qWaitForWindowActive(fWindow.data(), patience));
}

void TestPanelDocks::rename(PanelDock* dock, const QString& title, Qt::Key end)
{
    auto* edit = titleOf(dock)->findChild<QLineEdit*>();
    QVERIFY(edit && edit->isVisible());
    edit->selectAll();
    QTest::keyClick(edit, Qt::Key_Delete);
    QTest::keyClicks(edit, title);
    QTest::keyClick(edit, end);
    QVERIFY(!edit->isVisible());
}

void TestPanelDocks::aPanelHasTheWholeWindow()
{
    QVERIFY(fWindow->centralWidget()->isVisible());
    openProbes(1);
    QVERIFY(!fWindow->centralWidget()->isVisible());
    QCOMPARE(docks().first()->width(), fWindow->width());
    QVERIFY(probe()->height() > fWindow->height() * 3 / 4);
}

void TestPanelDocks::theNewestPanelIsInFront()
{
    openProbes(2);
    QVERIFY(docks().at(0)->visibleRegion().isEmpty());
    QVERIFY(!docks().at(1)->visibleRegion().isEmpty());
    QCOMPARE(front(), docks().at(1));
}

void TestPanelDocks::panelsStandSideBySideAndFloat()
{
    openProbes(2);
    PanelDock* const left = docks().at(0);
    PanelDock* const right = docks().at(1);
    fWindow->splitDockWidget(left, right, Qt::Horizontal);
    TRY_VERIFY(!left->visibleRegion().isEmpty() && !right->visibleRegion().isEmpty());
    TRY_VERIFY(left->geometry().right() < right->geometry().left());
    QTest::keyClick(fWindow.data(), Qt::Key_D, Qt::ControlModifier);
    QVERIFY(right->isFloating() && right->isVisible());
    TRY_COMPARE(left->width(), fWindow->width());
}

void TestPanelDocks::thePanelsTitleIsThatOfItsDock()
{
    openProbes(1);
    QCOMPARE(front()->windowTitle(), QString("Probe"));
    QCOMPARE(fWindow->windowTitle(), QApplication::applicationName());
    front()->holder()->setWindowTitle("the left arm");
    QCOMPARE(front()->windowTitle(), QString("the left arm"));
    QCOMPARE(fWindow->windowTitle(), QString("the left arm"));
}

void TestPanelDocks::equalTitlesGetNumbers()
{
    fWindow->setProperty("titleOfPanels", "an arm");
    openProbes(3);
    QCOMPARE(docks().at(0)->windowTitle(), QString("an arm"));
    QCOMPARE(docks().at(1)->windowTitle(), QString("an arm (2)"));
    QCOMPARE(docks().at(2)->windowTitle(), QString("an arm (3)"));
    docks().at(1)->close();
    TRY_COMPARE(docks().size(), 2);
    action("Probe")->trigger();
    QCOMPARE(docks().at(1)->windowTitle(), QString("an arm (3)"));
    QCOMPARE(docks().at(2)->windowTitle(), QString("an arm (2)"));
}

void TestPanelDocks::aDoubleClickRenames()
{
    openProbes(2);
    QTest::mouseDClick(titleOf(front()), Qt::LeftButton, {}, QPoint(30, 8));
    rename(front(), "the left arm");
    QCOMPARE(front()->windowTitle(), QString("the left arm"));
    QVERIFY(!front()->isFloating());
    front()->holder()->setWindowTitle("what the panel says later");
    QCOMPARE(front()->windowTitle(), QString("the left arm"));
}

void TestPanelDocks::escapeKeepsTheTitle()
{
    openProbes(1);
    QTest::mouseDClick(titleOf(front()), Qt::LeftButton, {}, QPoint(30, 8));
    rename(front(), "the left arm", Qt::Key_Escape);
    QCOMPARE(front()->windowTitle(), QString("Probe"));
}

void TestPanelDocks::anEmptyNameGivesThePanelsOwnBack()
{
    openProbes(1);
    action("Rename")->trigger();
    rename(front(), "the left arm");
    action("Rename")->trigger();
    rename(front(), " ");
    QCOMPARE(front()->windowTitle(), QString("Probe"));
}

void TestPanelDocks::aDoubleClickOnATabRenames()
{
    openProbes(2);
    TRY_VERIFY(tabs() && tabs()->count() == 2);
    QTest::mouseDClick(tabs(), Qt::LeftButton, {}, tabs()->tabRect(0).center());
    rename(docks().at(0), "the left arm");
    QCOMPARE(docks().at(0)->windowTitle(), QString("the left arm"));
    TRY_COMPARE(tabs()->tabText(0), QString("the left arm"));
}

void TestPanelDocks::theCrossClosesItsPanelOnly()
{
    openProbes(2);
    const PanelDock& dock = *docks().at(1);
    const QPointer<const PanelDock> closed(&dock);
    const QPointer<TarvekWidget> panel = dock.panel();
    QToolButton* cross = nullptr;
    for (auto* button : titleOf(&dock)->findChildren<QToolButton*>())
        if (button->toolTip() == "Close the panel")
            cross = button;
    QVERIFY(cross && cross->isVisible());
    QTest::mouseClick(cross, Qt::LeftButton);
    TRY_VERIFY(!closed && !panel);
    QCOMPARE(docks().size(), 1);
    QCOMPARE(front(), docks().first());
    QVERIFY(fWindow->isVisible());
}

void TestPanelDocks::theShortcutClosesThePanelInFrontAndThenTheWindow()
{
    openProbes(2);
    const QPointer<PanelDock> closed = front();
    QTest::keyClick(fWindow.data(), Qt::Key_W, Qt::ControlModifier);
    TRY_VERIFY(!closed);
    QTest::keyClick(fWindow.data(), Qt::Key_W, Qt::ControlModifier);
    TRY_VERIFY(docks().isEmpty());
    QVERIFY(fWindow->isVisible());
    QVERIFY(fWindow->centralWidget()->isVisible());
    QTest::keyClick(fWindow.data(), Qt::Key_W, Qt::ControlModifier);
    QVERIFY(!fWindow->isVisible());
}

void TestPanelDocks::aClickMakesAPanelTheFrontOne()
{
    openProbes(2);
    PanelDock* const left = docks().at(0);
    fWindow->splitDockWidget(left, docks().at(1), Qt::Horizontal);
    TRY_VERIFY(left->isInSight());
    QCOMPARE(front(), docks().at(1));
    QTest::mouseClick(left->panel(), Qt::LeftButton, {}, QPoint(2, 2));
    QCOMPARE(front(), left);
    docks().at(1)->panel()->findChild<QPushButton*>()->setFocus();
    TRY_COMPARE(front(), docks().at(1));
    QTest::mouseClick(titleOf(left), Qt::LeftButton, {}, QPoint(30, 8));
    QCOMPARE(front(), left);
}

void TestPanelDocks::aClickOnATabMakesItsPanelTheFrontOne()
{
    openProbes(3);
    fWindow->addDockWidget(Qt::RightDockWidgetArea, docks().at(2));
    TRY_VERIFY(tabs() && tabs()->count() == 2);
    QTest::mouseClick(titleOf(docks().at(2)), Qt::LeftButton, {}, QPoint(30, 8));
    for (int tab : {0, 1}) {
        QTest::mouseClick(tabs(), Qt::LeftButton, {}, tabs()->tabRect(tab).center());
        TRY_VERIFY(docks().at(tab)->isInSight());
        QCOMPARE(front(), docks().at(tab));
    }
}

void TestPanelDocks::keysGoFromPanelToPanel()
{
    openProbes(3);
    QTest::keyClick(fWindow.data(), Qt::Key_Tab, Qt::ControlModifier);
    TRY_COMPARE(front(), docks().at(0));
    TRY_VERIFY(!docks().at(0)->visibleRegion().isEmpty());
    QTest::keyClick(fWindow.data(), Qt::Key_Tab, Qt::ControlModifier | Qt::ShiftModifier);
    TRY_COMPARE(front(), docks().at(2));
}

void TestPanelDocks::aPanelThatEndsTakesItsDockAlong()
{
    openProbes(1);
    probe()->deleteLater();
    TRY_VERIFY(docks().isEmpty());
    QVERIFY(!action("Save picture")->isEnabled());
}

void TestPanelDocks::theShortcutReachesAFloatingPanel()
{
    openProbes(2);
    PanelDock* const floating = front();
    floating->setFloating(true);
    floating->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(floating, patience));
    QTest::keyClick(floating->panel(), Qt::Key_W, Qt::ControlModifier);
    TRY_COMPARE(docks().size(), 1);
    QVERIFY(fWindow->isVisible());
}

void TestPanelDocks::aFloatingPanelTellsOfItsOutage()
{
    openProbes(2);
    const auto* const inside = qobject_cast<DockTitle*>(titleOf(docks().at(0)));
    const auto* const floating = qobject_cast<DockTitle*>(titleOf(docks().at(1)));
    docks().at(1)->setFloating(true);
    QCOMPARE(floating->shownTitle(), QString("Probe (2)"));
    const QImage calm = titleOf(docks().at(1))->grab().toImage();
    fRobot->kill();
    TRY_COMPARE(floating->shownTitle(), QString("Interrupted: Probe (2)"));
    QVERIFY(floating->toolTip().contains("Nothing new comes in"));
    QVERIFY(titleOf(docks().at(1))->grab().toImage() != calm);
    QCOMPARE(inside->shownTitle(), QString("Probe")); // below the window's bar
    docks().at(1)->setFloating(false);
    QCOMPARE(floating->shownTitle(), QString("Probe (2)"));
    docks().at(1)->setFloating(true);
    fRobot->restart();
    TRY_COMPARE(floating->shownTitle(), QString("Probe (2)"));
    QVERIFY(!floating->toolTip().contains("Nothing new comes in"));
}

void TestPanelDocks::aFloatingPanelGoesWithItsWindow()
{
    openProbes(1);
    docks().first()->setFloating(true);
    QVERIFY(docks().first()->isVisible());
    fWindow->close();
    QVERIFY(!docks().first()->isVisible());
    openWindow();
    openProbes(1);
    QVERIFY(docks().first()->isFloating() && docks().first()->isVisible());
}

REGISTER_TEST(TestPanelDocks, HostApplication)
#include "tst_panel_docks.moc"
