// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/key_table.h"
#include "support/patience.h"
#include "support/register_test.h"

#include <QHeaderView>
#include <QLineEdit>
#include <QScrollBar>
#include <QtTest>

#include <functional>

#include <algorithm>
#include <memory>

namespace {

bool isInCell(const KeyTable& table, int row)
{
    QTreeWidgetItem* item = table.tree.topLevelItem(row);
    const QRect cell = table.tree.visualItemRect(item);
    const QRect place = table.button(row)->geometry();
    const int left = table.tree.columnViewportPosition(KeyTable::fButtonColumn);
    const int width = table.tree.columnWidth(KeyTable::fButtonColumn);
    return table.button(row)->isVisible() && place.size() == QSize(16, 16) &&
           qAbs(place.center().y() - cell.center().y()) <= 1 && place.left() >= left &&
           place.right() < left + width;
}

int visibleButtons(const KeyTable& table)
{
    int count = 0;
    for (const QPushButton* button : table.tree.findChildren<QPushButton*>())
        count += button->isVisible() ? 1 : 0;
    return count;
}

/// Counts the events that come to all objects: what a piece of work costs, whatever the machine.
class EventCounter : public QObject
{
public:
    EventCounter() { qApp->installEventFilter(this); }

    int count = 0;

private:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        ++count;
        return QObject::eventFilter(watched, event);
    }
};

/// The most buttons that one widget holds: one that changes its parent is searched among them.
int mostButtonsTogether(const KeyTable& table)
{
    QHash<QObject*, int> counts;
    for (const QPushButton* button : table.tree.findChildren<QPushButton*>())
        ++counts[button->parent()];
    return *std::max_element(counts.cbegin(), counts.cend());
}

void seeAllRows(KeyTable& table)
{
    QScrollBar* bar = table.tree.verticalScrollBar();
    for (int row = 0; row <= bar->maximum(); row += bar->pageStep())
        bar->setValue(row);
    bar->setValue(bar->maximum());
}

/// Events while a table of so many rows is scrolled in its middle, over rows that were in sight
/// before.
int eventsOfAScroll(int rows)
{
    KeyTable f(manyNames(rows));
    f.installButtons();
    f.show();
    QScrollBar* bar = f.tree.verticalScrollBar();
    bar->setValue(rows / 2 + 20);
    bar->setValue(rows / 2);
    QCoreApplication::processEvents();
    const EventCounter events;
    for (int i = 1; i <= 20; ++i)
        bar->setValue(rows / 2 + i);
    return events.count;
}

} // namespace

Q_DECLARE_METATYPE(std::function<void(QTreeWidget&)>)

class TestRowButtons : public GuardedTest
{
    Q_OBJECT

private slots:
    void buttonsInSightStandInTheirCells();
    void buttonsFollowScrollingSortingAndColumnMoves();
    void everyRowUpToTheLimitHasItsButtonAtOnce();
    void rowsBeyondTheLimitGetTheirButtonWhenTheyComeInSight();
    void deletedItemsAndClearDeleteTheirButtons();
    void clearDeletesButtonsInTheOrderOfTheirRows();
    void tabGoesDownTheButtonsInSight();
    void buttonsInSightAreChildrenOfTheViewportAndTheOthersAreNot();
    void aScrollCostsTheSameWhateverTheNumberOfRows();
    void fewButtonsAreKeptTogetherWhateverTheNumberOfRows();
    void rowsThatComeInSightForTheFirstTimeNeedNoLayout();
    void aLayoutThatRowsNeedIsMade();
    void buttonsStandInTheirCellsFromRightToLeft();
    void buttonsFollowTheHorizontalScrollBar();
    void buttonsFollowScrollingByPixels();
    void hiddenRowsHaveNoButtonInSight();
    void aHiddenColumnHasNoButtonInSight();
    void asManyButtonsAreInSightAsRows();
    void aWidgetThatSomebodyElsePutIntoTheColumnIsPlaced();
    void rowsMayGoWithoutAButton();
    void aTableWithoutButtonsScrolls();
    void aButtonMayBeDeletedByOthers();
    void buttonsAreDeletedWithTheTable();
    void theFocusGoesStraightToTheTableWhenItsButtonGoes_data();
    void theFocusGoesStraightToTheTableWhenItsButtonGoes();
};

void TestRowButtons::buttonsInSightStandInTheirCells()
{
    KeyTable f(manyNames(50));
    f.installButtons();
    f.show();
    TRY_VERIFY(f.button(0)->isVisible());
    for (int row = 0; row < 5; ++row) {
        QVERIFY(f.button(row)->isVisible());
        QVERIFY(isInCell(f, row));
    }
    QVERIFY(!f.button(49)->isVisible());
}

void TestRowButtons::buttonsFollowScrollingSortingAndColumnMoves()
{
    KeyTable f(manyNames(50));
    f.installButtons();
    f.show();
    f.tree.verticalScrollBar()->setValue(f.tree.verticalScrollBar()->maximum());
    QVERIFY(f.button(49)->isVisible() && isInCell(f, 49));
    QVERIFY(!f.button(0)->isVisible());

    QPushButton* first = f.button(0);
    f.tree.sortItems(0, Qt::DescendingOrder);
    QCOMPARE(f.button(49), first);
    TRY_VERIFY(first->isVisible() && isInCell(f, 49));

    const int before = first->x();
    f.tree.header()->moveSection(KeyTable::fButtonColumn, 0);
    TRY_VERIFY(first->x() < before);
    f.tree.setColumnWidth(KeyTable::fButtonColumn, 60);
    f.tree.header()->moveSection(0, KeyTable::fButtonColumn);
    TRY_VERIFY(first->x() > 60);
    f.tree.hideColumn(KeyTable::fButtonColumn);
    TRY_VERIFY(!first->isVisible());
}

void TestRowButtons::everyRowUpToTheLimitHasItsButtonAtOnce()
{
    KeyTable f(manyNames(RowButtons::fLimit));
    f.installButtons();
    for (int row = 0; row < RowButtons::fLimit; ++row)
        QVERIFY(f.button(row));
    QCOMPARE(f.buttonsMade, RowButtons::fLimit);
}

void TestRowButtons::rowsBeyondTheLimitGetTheirButtonWhenTheyComeInSight()
{
    const int count = RowButtons::fLimit + 1000;
    KeyTable f(manyNames(count));
    f.installButtons();
    f.show();
    QVERIFY(!f.button(count - 1));
    f.tree.scrollToItem(f.rows.last());
    TRY_VERIFY(f.button(count - 1));
    QCOMPARE(f.button(count - 1)->text(), f.rows.last()->text(0));
    QVERIFY(f.button(count - 1)->isVisible() && isInCell(f, count - 1));
    QVERIFY(!f.button(count - 500));
}

void TestRowButtons::deletedItemsAndClearDeleteTheirButtons()
{
    KeyTable f(manyNames(50));
    f.installButtons();
    f.show();
    const QPointer<QPushButton> first = f.button(0);
    const QPointer<QPushButton> second = f.button(1);
    const QPointer<QPushButton> last = f.button(49);
    delete f.tree.topLevelItem(0);
    TRY_VERIFY(!first);
    TRY_VERIFY(isInCell(f, 0));
    QCOMPARE(f.button(0), second);
    f.tree.clear();
    TRY_VERIFY(!second && !last);
}

void TestRowButtons::clearDeletesButtonsInTheOrderOfTheirRows()
{
    // In any other each would be searched among those left.
    KeyTable f(manyNames(200));
    f.installButtons();
    QVector<int> deleted;
    QVector<int> expected;
    for (int row = 0; row < 200; ++row) {
        expected += row;
        connect(f.button(row), &QObject::destroyed, [row, &deleted] { deleted += row; });
    }
    f.tree.clear();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(deleted, expected);
}

void TestRowButtons::tabGoesDownTheButtonsInSight()
{
    KeyTable f(manyNames(50));
    f.installButtons();
    f.show();
    f.tree.sortItems(0, Qt::DescendingOrder);
    TRY_VERIFY(f.button(0)->isVisible());
    f.tree.setFocus();
    for (int row = 0; row < 3; ++row) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), f.button(row));
    }
}

void TestRowButtons::buttonsInSightAreChildrenOfTheViewportAndTheOthersAreNot()
{
    KeyTable f(manyNames(50));
    f.installButtons();
    f.show();
    TRY_VERIFY(f.button(0)->isVisible());
    f.tree.verticalScrollBar()->setValue(20);
    for (int row = 0; row < 50; ++row) {
        const bool isInSight = f.button(row)->isVisible();
        QCOMPARE(f.button(row)->parentWidget() == f.tree.viewport(), isInSight);
        QVERIFY(f.tree.isAncestorOf(f.button(row)));
    }
}

void TestRowButtons::aScrollCostsTheSameWhateverTheNumberOfRows()
{
    const int few = eventsOfAScroll(200);
    QVERIFY(few > 20);
    QCOMPARE(eventsOfAScroll(4000), few);
    QCOMPARE(eventsOfAScroll(RowButtons::fLimit + 4000), few);
}

void TestRowButtons::fewButtonsAreKeptTogetherWhateverTheNumberOfRows()
{
    const int count = RowButtons::fLimit + 2000;
    KeyTable f(manyNames(count));
    f.show();
    const auto widgets = [&f] { return f.tree.findChildren<QWidget*>().size(); };
    const auto withoutButtons = widgets();
    f.installButtons();
    seeAllRows(f);
    QCOMPARE(f.buttonsMade, count);
    QVERIFY(mostButtonsTogether(f) <= 100);

    const auto withButtons = widgets();
    QVERIFY(withButtons - withoutButtons < count + count / 20);
    for (int round = 0; round < 2; ++round)
        seeAllRows(f);
    QVERIFY(mostButtonsTogether(f) <= 100);
    QCOMPARE(widgets(), withButtons);
    f.tree.clear();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(widgets(), withoutButtons);
}

void TestRowButtons::rowsThatComeInSightForTheFirstTimeNeedNoLayout()
{
    const int count = RowButtons::fLimit + 1000;
    KeyTable f(manyNames(count));
    f.installButtons();
    f.show();
    QCoreApplication::processEvents();
    f.tree.layouts = 0;
    for (const int first : {RowButtons::fLimit + 100, RowButtons::fLimit + 105}) {
        f.tree.verticalScrollBar()->setValue(first);
        QCOMPARE(f.tree.topLevelItem(first), f.tree.itemAt(0, 0));
        QVERIFY(isInCell(f, first) && isInCell(f, first + 5));
    }
    QCoreApplication::processEvents();
    QCOMPARE(f.tree.layouts, 0);
}

void TestRowButtons::aLayoutThatRowsNeedIsMade()
{
    KeyTable f(manyNames(3));
    f.show();
    f.tree.addTopLevelItem(new KeyRow(f.color));
    f.installButtons();
    TRY_VERIFY(f.button(3) && isInCell(f, 3));
    f.tree.insertTopLevelItem(0, new KeyRow(f.color));
    TRY_VERIFY(f.button(0) && isInCell(f, 0));
    for (int row = 1; row < 5; ++row)
        QVERIFY(isInCell(f, row));
    QCOMPARE(f.buttonsMade, 5);
}

void TestRowButtons::buttonsStandInTheirCellsFromRightToLeft()
{
    KeyTable f(manyNames(5));
    f.tree.setLayoutDirection(Qt::RightToLeft);
    f.installButtons();
    f.show();
    TRY_VERIFY(isInCell(f, 4));
    const int left = f.tree.columnViewportPosition(KeyTable::fButtonColumn);
    QCOMPARE(f.button(4)->geometry().right(),
             left + f.tree.columnWidth(KeyTable::fButtonColumn) - 1);
}

void TestRowButtons::buttonsFollowTheHorizontalScrollBar()
{
    KeyTable f(manyNames(5));
    f.installButtons();
    f.tree.setColumnWidth(0, 500);
    f.tree.setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    f.show();
    TRY_VERIFY(isInCell(f, 0));
    QVERIFY(f.button(0)->x() > f.tree.viewport()->width());
    QScrollBar* bar = f.tree.horizontalScrollBar();
    for (const int value : {bar->maximum(), 100}) {
        bar->setValue(value);
        QVERIFY(isInCell(f, 0) && isInCell(f, 4));
    }
}

void TestRowButtons::buttonsFollowScrollingByPixels()
{
    KeyTable f(manyNames(50));
    f.tree.setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    f.installButtons();
    f.show();
    TRY_VERIFY(isInCell(f, 0));
    f.tree.verticalScrollBar()->setValue(7);
    QVERIFY(isInCell(f, 0) && isInCell(f, 1));
    QVERIFY(f.button(0)->y() < 0);
}

void TestRowButtons::hiddenRowsHaveNoButtonInSight()
{
    KeyTable f(manyNames(5));
    f.installButtons();
    f.show();
    f.rows[1]->setHidden(true);
    TRY_VERIFY(!f.button(1)->isVisible());
    for (const int row : {0, 2, 3, 4})
        QVERIFY(isInCell(f, row));
    f.rows[1]->setHidden(false);
    f.tree.hideColumn(0);
    TRY_VERIFY(isInCell(f, 1));
    QCOMPARE(visibleButtons(f), 5);
}

void TestRowButtons::aHiddenColumnHasNoButtonInSight()
{
    KeyTable f(manyNames(5));
    f.installButtons();
    f.show();
    TRY_COMPARE(visibleButtons(f), 5);
    f.tree.hideColumn(KeyTable::fButtonColumn);
    TRY_COMPARE(visibleButtons(f), 0);
    f.tree.header()->moveSection(KeyTable::fButtonColumn, 1);
    f.tree.doItemsLayout();
    QCOMPARE(visibleButtons(f), 0);
    QCOMPARE(f.buttonsMade, 5);
    f.tree.showColumn(KeyTable::fButtonColumn);
    TRY_COMPARE(visibleButtons(f), 5);
}

void TestRowButtons::asManyButtonsAreInSightAsRows()
{
    KeyTable f(manyNames(50));
    f.installButtons();
    f.show();
    const int height = f.tree.visualItemRect(f.rows[0]).height();
    const int inSight = (f.tree.viewport()->height() + height - 1) / height;
    TRY_COMPARE(visibleButtons(f), inSight);
    f.tree.verticalScrollBar()->setValue(5);
    QCOMPARE(visibleButtons(f), inSight);
    f.tree.resize(400, 100);
    TRY_VERIFY(visibleButtons(f) < inSight);
    f.tree.resize(400, 200);
    TRY_COMPARE(visibleButtons(f), inSight);
}

void TestRowButtons::aWidgetThatSomebodyElsePutIntoTheColumnIsPlaced()
{
    KeyTable f(manyNames(50));
    f.installButtons();
    f.show();
    auto* other = new QPushButton("other");
    f.tree.setItemWidget(f.rows[2], KeyTable::fButtonColumn, other);
    TRY_COMPARE(other->y(), f.tree.visualItemRect(f.rows[2]).y());
    f.tree.verticalScrollBar()->setValue(20);
    QVERIFY(!other->isVisible());
    f.tree.verticalScrollBar()->setValue(0);
    QVERIFY(other->isVisible());
}

void TestRowButtons::rowsMayGoWithoutAButton()
{
    KeyTable f(manyNames(5));
    f.tree.installButtons(KeyTable::fButtonColumn, [&f](QTreeWidgetItem& item) -> QWidget* {
        return item.text(0) == "key 000001" ? nullptr : new QPushButton(&f.tree);
    });
    f.show();
    TRY_COMPARE(visibleButtons(f), 4);
    QVERIFY(!f.button(1));
    QCOMPARE(f.button(2)->y(), f.tree.visualItemRect(f.rows[2]).y());
}

void TestRowButtons::aTableWithoutButtonsScrolls()
{
    KeyTable f(manyNames(50));
    f.show();
    f.tree.verticalScrollBar()->setValue(20);
    QCOMPARE(f.tree.itemAt(0, 0), f.rows[20]);
    QCOMPARE(visibleButtons(f), 0);
}

void TestRowButtons::aButtonMayBeDeletedByOthers()
{
    KeyTable f(manyNames(50));
    f.installButtons();
    f.show();
    TRY_VERIFY(f.button(1)->isVisible());
    delete f.button(1);
    f.tree.verticalScrollBar()->setValue(20);
    f.tree.verticalScrollBar()->setValue(0);
    QVERIFY(isInCell(f, 0) && isInCell(f, 1));
    QCOMPARE(f.buttonsMade, 51);
}

void TestRowButtons::buttonsAreDeletedWithTheTable()
{
    auto f = std::make_unique<KeyTable>(manyNames(50));
    f->installButtons();
    f->show();
    const QPointer<QPushButton> first = f->button(0);
    const QPointer<QPushButton> last = f->button(49);
    f.reset();
    QVERIFY(!first && !last);
}

void TestRowButtons::theFocusGoesStraightToTheTableWhenItsButtonGoes_data()
{
    using Removal = std::function<void(QTreeWidget&)>;
    QTest::addColumn<Removal>("remove");
    const auto scroll = [](int steps) {
        return Removal([steps](QTreeWidget& tree) { tree.verticalScrollBar()->setValue(steps); });
    };
    QTest::newRow("cleared") << Removal([](QTreeWidget& tree) { tree.clear(); });
    QTest::newRow("scrolled away by a row") << scroll(3);
    QTest::newRow("scrolled far away") << scroll(20);
}

void TestRowButtons::theFocusGoesStraightToTheTableWhenItsButtonGoes()
{
    QFETCH(std::function<void(QTreeWidget&)>, remove);
    QList<QWidget*> visited;
    QWidget window;
    QLineEdit before(&window);
    KeyTable f(manyNames(50));
    f.installButtons();
    f.tree.setParent(&window);
    QLineEdit behind(&window);
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window, patience));
    TRY_VERIFY(f.button(2)->isVisible());
    f.button(2)->setFocus();
    QVERIFY(f.button(2)->hasFocus());
    connect(qApp, &QApplication::focusChanged, &window,
            [&visited](QWidget*, QWidget* now) { visited += now; });
    remove(f.tree);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(visited, QList<QWidget*>{&f.tree});
}

REGISTER_TEST(TestRowButtons, QApplication)
#include "tst_row_buttons.moc"
