// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/key_table.h"
#include "support/patience.h"
#include "support/register_test.h"

#include <QHeaderView>
#include <QtTest>

#include <memory>
#include <utility>

class TestCellKeys : public GuardedTest
{
    Q_OBJECT

private slots:
    void arrowKeysGoFromCellToCell();
    void spaceTicksACheckBoxAndIsHeardAsAClick();
    void spaceAndReturnPressTheButtonOfTheCurrentCell();
    void leftAndRightTakeUpACellWhereThereIsNone();
    void leftAndRightDoNothingInAnEmptyTable();
    void leftAndRightGoWhereTheirArrowsPoint();
    void downGoesPastRowsThatAreHiddenOrDisabled();
    void nothingIsSelectedWhereRowsAreNotSelectable();
    void keysAreTheButtonsInItsCellAndTheTablesBesideIt();
    void aButtonThatGetsTheFocusMakesItsCellTheCurrentOne();
    void everyKeyThatPressesABarePushButtonPressesTheOneOfTheCell();
    void aKeyThatIsHeldPressesTheButtonOnce();
    void aButtonIsPressedOnceTheKeyIsAnswered();
    void theButtonOfAHiddenColumnIsNotPressed();
    void aPressedCellComesInSight();
    void aClickMayDeleteTheTable();
    void aButtonThatLeftItsCellIsNotClicked();
    void onlyATickedBoxIsHeardAsAClick();
    void aTickedRowThatMovesIsHeardWhereItWent();
    void aTickedRowThatLeavesTheTableIsNotHeard();
};

void TestCellKeys::arrowKeysGoFromCellToCell()
{
    KeyTable f({"a", "b"});
    f.show();
    f.tree.setCurrentItem(f.rows[0], 0);
    QTest::keyClick(&f.tree, Qt::Key_Right);
    QCOMPARE(f.tree.currentColumn(), 1);
    QTest::keyClick(&f.tree, Qt::Key_Down);
    QCOMPARE(f.tree.currentItem(), f.rows[1]);
    QCOMPARE(f.tree.currentColumn(), 1);
    QTest::keyClick(&f.tree, Qt::Key_Left);
    QTest::keyClick(&f.tree, Qt::Key_Left);
    QCOMPARE(f.tree.currentColumn(), 0);
    f.tree.hideColumn(1);
    QTest::keyClick(&f.tree, Qt::Key_Right);
    QCOMPARE(f.tree.currentColumn(), 2);
    QTest::keyClick(&f.tree, Qt::Key_Right);
    QCOMPARE(f.tree.currentColumn(), 2);
}

void TestCellKeys::spaceTicksACheckBoxAndIsHeardAsAClick()
{
    KeyTable f({"a"});
    f.rows[0]->setFlags(Qt::ItemIsUserCheckable | Qt::ItemIsEnabled);
    f.rows[0]->setCheckState(1, Qt::Unchecked);
    f.show();
    f.tree.setCurrentItem(f.rows[0], 1);
    QVector<QPair<QTreeWidgetItem*, int>> clicks;
    const auto remember = [&](QTreeWidgetItem* item, int column) {
        clicks.append(qMakePair(item, column));
    };
    connect(&f.tree, &QTreeWidget::itemClicked, remember);
    QTest::keyClick(&f.tree, Qt::Key_Space);
    QCOMPARE(f.rows[0]->checkState(1), Qt::Checked);
    QCOMPARE(clicks.size(), 1);
    QCOMPARE(clicks[0].first, f.rows[0]);
    QCOMPARE(clicks[0].second, 1);
    f.tree.setCurrentItem(f.rows[0], 0);
    QTest::keyClick(&f.tree, Qt::Key_Space);
    QCOMPARE(clicks.size(), 1);
}

void TestCellKeys::spaceAndReturnPressTheButtonOfTheCurrentCell()
{
    KeyTable f(manyNames(50));
    f.installButtons();
    f.show();
    f.tree.setCurrentItem(f.rows[1], KeyTable::fButtonColumn);
    QSignalSpy spy(f.button(1), &QPushButton::clicked);
    QTest::keyClick(&f.tree, Qt::Key_Space);
    TRY_COMPARE(spy.size(), 1);
    QTest::keyClick(&f.tree, Qt::Key_Return);
    TRY_COMPARE(spy.size(), 2);
}

void TestCellKeys::leftAndRightTakeUpACellWhereThereIsNone()
{
    for (const Qt::Key key : {Qt::Key_Left, Qt::Key_Right, Qt::Key_Up, Qt::Key_Down}) {
        KeyTable f;
        f.show();
        f.tree.addTopLevelItems({new KeyRow(f.color), new KeyRow(f.color)});
        f.tree.hideColumn(0);
        QVERIFY(!f.tree.currentIndex().isValid());
        press(key);
        QCOMPARE(f.tree.currentItem(), f.tree.topLevelItem(0));
        QCOMPARE(f.tree.currentColumn(), 1);
    }
}

void TestCellKeys::leftAndRightDoNothingInAnEmptyTable()
{
    KeyTable f;
    f.show();
    press(Qt::Key_Left);
    press(Qt::Key_Right);
    QVERIFY(!f.tree.currentIndex().isValid());
}

void TestCellKeys::leftAndRightGoWhereTheirArrowsPoint()
{
    KeyTable f({"a"});
    f.tree.setLayoutDirection(Qt::RightToLeft);
    f.tree.header()->moveSection(2, 1);
    f.show();
    f.tree.setCurrentItem(f.rows[0], 0);
    press(Qt::Key_Right);
    QCOMPARE(f.tree.currentColumn(), 0);
    press(Qt::Key_Left);
    QCOMPARE(f.tree.currentColumn(), 2);
    press(Qt::Key_Left);
    QCOMPARE(f.tree.currentColumn(), 1);
    press(Qt::Key_Left);
    QCOMPARE(f.tree.currentColumn(), 1);
    press(Qt::Key_Right);
    QCOMPARE(f.tree.currentColumn(), 2);
}

void TestCellKeys::downGoesPastRowsThatAreHiddenOrDisabled()
{
    KeyTable f({"a", "b", "c", "d"});
    f.rows[1]->setDisabled(true);
    f.rows[2]->setHidden(true);
    f.show();
    f.tree.setCurrentItem(f.rows[0], 1);
    press(Qt::Key_Down);
    QCOMPARE(f.tree.currentItem(), f.rows[3]);
    QCOMPARE(f.tree.currentColumn(), 1);
}

void TestCellKeys::nothingIsSelectedWhereRowsAreNotSelectable()
{
    KeyTable f({"a", "b"});
    f.tree.setSelectionMode(QAbstractItemView::ExtendedSelection);
    for (QTreeWidgetItem* row : std::as_const(f.rows))
        row->setFlags(Qt::ItemIsUserCheckable | Qt::ItemIsEnabled);
    f.show();
    for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Right, Qt::Key_Space, Qt::Key_Down})
        press(key, Qt::ShiftModifier);
    QTest::keyClick(&f.tree, Qt::Key_A, Qt::ControlModifier);
    QVERIFY(f.tree.selectionModel()->selectedIndexes().isEmpty());
}

void TestCellKeys::keysAreTheButtonsInItsCellAndTheTablesBesideIt()
{
    KeyTable f({"a", "b"});
    f.installButtons();
    f.show();
    f.tree.setCurrentItem(f.rows[0], 1);
    f.rows[0]->setCheckState(1, Qt::Unchecked);
    press(Qt::Key_Right);
    QCOMPARE(f.tree.currentColumn(), int(KeyTable::fButtonColumn));
    QVERIFY(f.button(0)->hasFocus());
    QSignalSpy clicks(f.button(0), &QPushButton::clicked);
    press(Qt::Key_Space);
    TRY_COMPARE(clicks.size(), 1);
    press(Qt::Key_Left);
    press(Qt::Key_Space);
    QCOMPARE(f.rows[0]->checkState(1), Qt::Checked);
    QCoreApplication::processEvents();
    QCOMPARE(clicks.size(), 1);
}

void TestCellKeys::aButtonThatGetsTheFocusMakesItsCellTheCurrentOne()
{
    KeyTable f({"a", "b"});
    f.installButtons();
    f.show();
    f.tree.setCurrentItem(f.rows[1], 0);
    press(Qt::Key_Tab);
    QVERIFY(f.button(0)->hasFocus());
    QCOMPARE(f.tree.currentItem(), f.rows[0]);
    QCOMPARE(f.tree.currentColumn(), int(KeyTable::fButtonColumn));
    press(Qt::Key_Left);
    QCOMPARE(f.tree.currentItem(), f.rows[0]);
    QCOMPARE(f.tree.currentColumn(), 1);
    QVERIFY(f.tree.hasFocus());
}

void TestCellKeys::everyKeyThatPressesABarePushButtonPressesTheOneOfTheCell()
{
    KeyTable f({"a"});
    f.installButtons();
    f.show();
    f.tree.setCurrentItem(f.rows[0], KeyTable::fButtonColumn);
    QSignalSpy clicks(f.button(0), &QPushButton::clicked);
    int pressed = 0;
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Select, Qt::Key_Return, Qt::Key_Enter}) {
        QTest::sendKeyEvent(QTest::Click, &f.tree, key, QString(), Qt::NoModifier);
        ++pressed;
        TRY_COMPARE(clicks.size(), pressed);
    }
    press(Qt::Key_B);
    QCoreApplication::processEvents();
    QCOMPARE(clicks.size(), pressed);
}

void TestCellKeys::aKeyThatIsHeldPressesTheButtonOnce()
{
    KeyTable f({"a"});
    f.installButtons();
    f.show();
    f.tree.setCurrentItem(f.rows[0], KeyTable::fButtonColumn);
    QSignalSpy clicks(f.button(0), &QPushButton::clicked);
    for (const bool isRepeat : {false, true, true}) {
        QKeyEvent event(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, "\r", isRepeat);
        QCoreApplication::sendEvent(&f.tree, &event);
        QCoreApplication::processEvents();
    }
    QCOMPARE(clicks.size(), 1);
}

// What a click does may delete the table, which is still answering the key.
void TestCellKeys::aButtonIsPressedOnceTheKeyIsAnswered()
{
    KeyTable f({"a"});
    f.installButtons();
    f.show();
    f.tree.setCurrentItem(f.rows[0], KeyTable::fButtonColumn);
    const QSignalSpy clicks(f.button(0), &QPushButton::clicked);
    QKeyEvent event(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QCoreApplication::sendEvent(&f.tree, &event);
    QCOMPARE(clicks.size(), 0);
    TRY_COMPARE(clicks.size(), 1);
}

void TestCellKeys::theButtonOfAHiddenColumnIsNotPressed()
{
    KeyTable f({"a"});
    f.installButtons();
    f.show();
    f.tree.setCurrentItem(f.rows[0], KeyTable::fButtonColumn);
    f.tree.hideColumn(KeyTable::fButtonColumn);
    TRY_VERIFY(f.tree.hasFocus());
    QSignalSpy clicks(f.button(0), &QPushButton::clicked);
    press(Qt::Key_Space);
    press(Qt::Key_Return);
    QCoreApplication::processEvents();
    QCOMPARE(clicks.size(), 0);
}

void TestCellKeys::aPressedCellComesInSight()
{
    KeyTable f(manyNames(50));
    f.installButtons();
    f.show();
    f.tree.setCurrentItem(f.rows[0], KeyTable::fButtonColumn);
    f.tree.scrollToBottom();
    QVERIFY(!f.button(0)->isVisible());
    press(Qt::Key_Space);
    QVERIFY(f.button(0)->isVisible());
}

void TestCellKeys::aClickMayDeleteTheTable()
{
    auto* f = new KeyTable({"a"});
    f->installButtons();
    f->show();
    f->tree.setCurrentItem(f->rows[0], KeyTable::fButtonColumn);
    const QPointer<QTreeWidget> tree(&f->tree);
    connect(
        f->button(0), &QPushButton::clicked, f->button(0), [f] { delete f; }, Qt::QueuedConnection);
    press(Qt::Key_Space);
    TRY_VERIFY(!tree);
}

void TestCellKeys::aButtonThatLeftItsCellIsNotClicked()
{
    KeyTable f({"a", "b"});
    f.installButtons();
    f.show();
    f.tree.setCurrentItem(f.rows[0], KeyTable::fButtonColumn);
    int clicks = 0;
    connect(f.button(0), &QPushButton::clicked, [&clicks] { ++clicks; });
    QTest::keyClick(&f.tree, Qt::Key_Space);
    f.tree.sortItems(0, Qt::DescendingOrder);
    TRY_COMPARE(clicks, 1);
    const QPointer<QPushButton> button = f.button(1);
    QTest::keyClick(&f.tree, Qt::Key_Space);
    f.tree.clear();
    TRY_VERIFY(!button);
    QCOMPARE(clicks, 1);
}

void TestCellKeys::onlyATickedBoxIsHeardAsAClick()
{
    KeyTable f({"a", "b"});
    f.rows[0]->setCheckState(1, Qt::Unchecked);
    f.rows[1]->setCheckState(1, Qt::Checked);
    f.show();
    f.tree.setCurrentItem(f.rows[0], 1);
    int clicks = 0;
    connect(&f.tree, &QTreeWidget::itemClicked, [&clicks] { ++clicks; });
    for (const Qt::Key key :
         {Qt::Key_Down, Qt::Key_Up, Qt::Key_Left, Qt::Key_Right, Qt::Key_Return, Qt::Key_A})
        press(key);
    f.rows[0]->setCheckState(1, Qt::Checked);
    f.rows[0]->setText(0, "z");
    QCOMPARE(clicks, 0);
}

void TestCellKeys::aTickedRowThatMovesIsHeardWhereItWent()
{
    KeyTable f({"a", "b"});
    for (QTreeWidgetItem* row : std::as_const(f.rows)) {
        row->setCheckState(1, Qt::Unchecked);
        row->setText(1, row->text(0));
    }
    f.show();
    f.tree.setSortingEnabled(true);
    f.tree.sortByColumn(1, Qt::AscendingOrder);
    f.tree.setCurrentItem(f.rows[0], 1);
    connect(&f.tree, &QTreeWidget::itemChanged, [](QTreeWidgetItem* item) {
        if (item->checkState(1) == Qt::Checked)
            item->setText(1, "c");
    });
    QVector<QTreeWidgetItem*> clicked;
    connect(&f.tree, &QTreeWidget::itemClicked,
            [&clicked](QTreeWidgetItem* item) { clicked += item; });
    press(Qt::Key_Space);
    QCOMPARE(f.names(), (QStringList{"b", "a"}));
    QCOMPARE(clicked, QVector<QTreeWidgetItem*>{f.rows[0]});
}

void TestCellKeys::aTickedRowThatLeavesTheTableIsNotHeard()
{
    KeyTable f({"a", "b"});
    f.rows[0]->setCheckState(1, Qt::Unchecked);
    f.show();
    f.tree.setCurrentItem(f.rows[0], 1);
    std::unique_ptr<QTreeWidgetItem> taken;
    connect(&f.tree, &QTreeWidget::itemChanged, [&] { taken.reset(f.tree.takeTopLevelItem(0)); });
    int clicks = 0;
    connect(&f.tree, &QTreeWidget::itemClicked, [&clicks] { ++clicks; });
    press(Qt::Key_Space);
    QCOMPARE(taken.get(), f.rows[0]);
    QCOMPARE(clicks, 0);
}

REGISTER_TEST(TestCellKeys, QApplication)
#include "tst_cell_keys.moc"
