// SPDX-License-Identifier: MIT
#include "support/drag.h"
#include "support/guarded_test.h"
#include "support/host.h"
#include "support/register_test.h"
#include "support/window_bench.h"
#include "windows/first_sizes.h"
#include "windows/window_settings.h"

#include <QHeaderView>
#include <QScreen>
#include <QScrollBar>
#include <QSplitter>
#include <QTreeWidget>
#include <QtTest>

/// What comes back with a window and its panels.
class TestWindowLook : public GuardedTest, private WindowBench
{
    Q_OBJECT

private slots:
    void init() { setUp(); }
    void cleanup()
    {
        tearDown();
        GuardedTest::cleanup();
    }
    void aNewOneLeavesRoomForItsFrame();
    void itsSizeComesBack();
    void itsDocksComeBack();
    void titlesThatTheUserGaveComeBack();
    void theLastTitleThatTheUserGaveCounts();
    void aSecondWindowDoesNotHideTheFirst();
    void theInsideOfAPanelComesBack();
    void theNextPanelOfAKindIsLikeTheClosedOne();
    void sizesThatNobodySetAreNotKept();
    void sortingIsKeptWithoutSizesThatNobodySet();
    void aPanelShowsItsWholeTableAtFirst();
    void settingsThatMakeNoSenseAreIgnored();

private:
    void openTable();
    void arrangeByHand();
    QSplitter* splitter() const { return fWindow->frontDock()->panel()->findChild<QSplitter*>(); }
    QTreeWidget* table() const { return fWindow->frontDock()->panel()->findChild<QTreeWidget*>(); }
    bool hasFirstSizes() const { return splitter()->parent()->findChild<FirstSizes*>(); }
    void sortBy(int column) const;
    void openAgain();
};

void TestWindowLook::openTable()
{
    action("Table")->trigger();
    QVERIFY(table());
    TRY_VERIFY(fWindow->frontDock()->isArranged());
}

/// From then on, what it looks like is the user's wish.
void TestWindowLook::arrangeByHand()
{
    dragHandle(*splitter());
    TRY_VERIFY(!hasFirstSizes());
}

void TestWindowLook::openAgain()
{
    fWindow->close();
    openWindow();
}

void TestWindowLook::aNewOneLeavesRoomForItsFrame()
{
    const QSize screen = fWindow->screen()->availableSize();
    QVERIFY(fWindow->width() < screen.width());
    QVERIFY(fWindow->height() <= screen.height() - fWindow->fontMetrics().height());
}

void TestWindowLook::itsSizeComesBack()
{
    fWindow->resize(700, 500);
    openAgain();
    QCOMPARE(fWindow->size(), QSize(700, 500));
}

void TestWindowLook::itsDocksComeBack()
{
    openProbe();
    action("Probe")->trigger();
    fWindow->addDockWidget(Qt::RightDockWidgetArea, docks().at(1));
    TRY_VERIFY(docks().at(0)->geometry().right() < docks().at(1)->geometry().left());
    openAgain();
    openProbe();
    action("Probe")->trigger();
    TRY_VERIFY(docks().at(0)->geometry().right() < docks().at(1)->geometry().left());
}

void TestWindowLook::titlesThatTheUserGaveComeBack()
{
    openProbe();
    action("Probe")->trigger();
    docks().at(1)->setUsersTitle("the left arm");
    openAgain();
    openProbe();
    action("Probe")->trigger();
    QCOMPARE(docks().at(0)->windowTitle(), QString("Probe"));
    QCOMPARE(docks().at(1)->windowTitle(), QString("the left arm"));
    docks().at(1)->setUsersTitle({});
    openAgain();
    openProbe();
    action("Probe")->trigger();
    QCOMPARE(docks().at(1)->windowTitle(), QString("Probe (2)"));
}

void TestWindowLook::theLastTitleThatTheUserGaveCounts()
{
    openProbe();
    docks().at(0)->setUsersTitle("the left arm");
    openAgain();
    openProbe();
    docks().at(0)->setUsersTitle("the right arm");
    docks().at(0)->close();
    TRY_VERIFY(docks().isEmpty());
    openProbe();
    QCOMPARE(docks().at(0)->windowTitle(), QString("the right arm"));
}

void TestWindowLook::aSecondWindowDoesNotHideTheFirst()
{
    fWindow->close();
    openWindow();
    const MainWindow second(
        {*fPlugins, *fErrors, "/some/where/"}, fWindow->settings(),
        ZoBroker::create("test", "127.0.0.1", fRobot->port(), fWindow->settings().brokerOptions()));
    QCOMPARE(second.size(), fWindow->size());
    QVERIFY(second.pos() != fWindow->pos());
}

void TestWindowLook::theInsideOfAPanelComesBack()
{
    openTable();
    arrangeByHand();
    splitter()->setSizes({400, splitter()->width() - 400});
    table()->setColumnWidth(0, 222);
    table()->sortByColumn(2, Qt::DescendingOrder);
    const QList<int> sizes = splitter()->sizes();
    openAgain();
    openTable();
    TRY_COMPARE(splitter()->sizes(), sizes);
    QCOMPARE(table()->columnWidth(0), 222);
    QCOMPARE(table()->header()->sortIndicatorSection(), 2);
    QCOMPARE(table()->topLevelItem(0)->text(0), QString("Joint 19"));
}

void TestWindowLook::theNextPanelOfAKindIsLikeTheClosedOne()
{
    openTable();
    arrangeByHand();
    table()->setColumnWidth(0, 222);
    fWindow->frontDock()->close();
    openTable();
    TRY_COMPARE(table()->columnWidth(0), 222);
}

void TestWindowLook::sizesThatNobodySetAreNotKept()
{
    openTable();
    QVERIFY(hasFirstSizes());
    QVERIFY(fWindow->content().panels.first().arrangement.isEmpty());
    openAgain();
    QVERIFY(savedArrangement("Table").isEmpty());
    fWindow->resize(fWindow->width() - 200, fWindow->height());
    openTable();
    QVERIFY(hasFirstSizes());
    QCOMPARE(table()->horizontalScrollBar()->maximum(), 0);
}

/// As the user does it.
void TestWindowLook::sortBy(int column) const
{
    QHeaderView& header = *table()->header();
    const QPoint place(header.sectionViewportPosition(column) + 10, header.height() / 2);
    QTest::mouseClick(header.viewport(), Qt::LeftButton, {}, place);
    QCOMPARE(header.sortIndicatorSection(), column);
}

void TestWindowLook::sortingIsKeptWithoutSizesThatNobodySet()
{
    openTable();
    const int first = table()->header()->sortIndicatorSection();
    sortBy(2);
    QVERIFY(hasFirstSizes());
    openAgain();
    openTable();
    QCOMPARE(table()->header()->sortIndicatorSection(), 2);
    QVERIFY(hasFirstSizes());
    QCOMPARE(fWindow->content().panels.first().arrangement, savedArrangement("Table"));
    QVERIFY(!savedArrangement("Table").isEmpty());
    sortBy(first);
    openAgain();
    openTable();
    QCOMPARE(table()->header()->sortIndicatorSection(), first);
}

void TestWindowLook::aPanelShowsItsWholeTableAtFirst()
{
    openTable();
    QCOMPARE(table()->horizontalScrollBar()->maximum(), 0);
    QVERIFY(splitter()->sizes().at(1) > splitter()->sizes().at(0));
}

void TestWindowLook::settingsThatMakeNoSenseAreIgnored()
{
    openTable();
    fWindow->close();
    {
        QSettings store;
        for (const QString& key : store.allKeys())
            store.setValue(key, QByteArray(1000, '\xff'));
    }
    openWindow();
    openTable();
    QVERIFY(fWindow->frontDock()->isInSight());
    QCOMPARE(table()->horizontalScrollBar()->maximum(), 0);
}

REGISTER_TEST(TestWindowLook, HostApplication)
#include "tst_window_look.moc"
