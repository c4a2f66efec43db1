#include "key_row.h"
#include "key_tree.h"
#include "model.h"
#include "support/guarded_test.h"

#include <QHeaderView>
#include <QPushButton>
#include <QScrollBar>
#include <QtTest>

namespace {

constexpr int buttonColumn = 2;

QStringList namesOf(const QTreeWidget& tree)
{
    QStringList names;
    for (int i = 0; i < tree.topLevelItemCount(); ++i)
        names += tree.topLevelItem(i)->text(0);
    return names;
}

/// A tree in a small window: columns name, value, button.
class Fixture
{
public:
    explicit Fixture(const QStringList& names = {})
    {
        tree.setColumnCount(3);
        tree.resize(400, 200);
        for (const QString& name : names) {
            auto* row = new KeyRow(color);
            row->setText(0, name);
            rows += row;
        }
        tree.addTopLevelItems(rows);
    }

    void installButtons()
    {
        tree.installButtons(buttonColumn, [this](QTreeWidgetItem& item) {
            auto* button = new QPushButton(item.text(0), &tree);
            button->setFixedSize(16, 16);
            ++buttonsMade;
            return button;
        });
    }

    void show()
    {
        tree.show();
        QVERIFY(QTest::qWaitForWindowExposed(&tree));
    }

    QPushButton* button(int row) const
    {
        return qobject_cast<QPushButton*>(tree.itemWidget(tree.topLevelItem(row), buttonColumn));
    }

    Color color;
    KeyTree tree;
    QList<QTreeWidgetItem*> rows;
    int buttonsMade = 0;
};

QStringList manyNames(int count)
{
    QStringList names;
    for (int i = 0; i < count; ++i)
        names += QString("key %1").arg(i, 6, 10, QChar('0'));
    return names;
}

bool isInCell(const Fixture& fixture, int row)
{
    QTreeWidgetItem* item = fixture.tree.topLevelItem(row);
    const QRect cell = fixture.tree.visualItemRect(item);
    const QRect place = fixture.button(row)->geometry();
    return place.center().y() >= cell.top() && place.center().y() <= cell.bottom() &&
           place.left() >= fixture.tree.columnViewportPosition(buttonColumn);
}

} // namespace

class KeyTreeTest : public GuardedTest
{
    Q_OBJECT

private slots:
    void everyWriteInABatchIsAnnouncedWithItsCellAndRoles();
    void writingTheSameTextAgainIsNotAnnounced();
    void announcedRowsAreRightAfterSorting();
    void aBatchLeavesOrderAloneUntilItEndsAndRestoresItThen();
    void aBatchSortsDownwardsToo();
    void rowsOfEqualTextKeepTheirOrderInABatch();
    void aBatchKeepsTheSortIndicatorAndTellsNobody();
    void nestedBatchesSortOnceAtTheEnd();
    void aBatchWithoutSortingMovesNothing();
    void writesOutsideOfABatchSortAtOnce();
    void clickOnTheHeaderSorts();
    void foreignItemsSortAmongRows();
    void buttonsInSightStandInTheirCells();
    void buttonsFollowScrollingSortingAndColumnMoves();
    void everyRowUpToTheLimitHasItsButtonAtOnce();
    void rowsBeyondTheLimitGetTheirButtonWhenTheyComeInSight();
    void widgetsOfTheToolkitsOwnWayArePlaced();
    void deletedItemsAndClearDeleteTheirButtons();
    void clearingWhileAButtonHasTheFocusKeepsItInTheTable();
    void tabGoesDownTheButtonsInSight();
    void arrowKeysGoFromCellToCell();
    void spaceTicksACheckBoxAndIsHeardAsAClick();
    void spaceAndReturnPressTheButtonOfTheCurrentCell();
    void rowsStayOneLineHighWhateverTheirTexts();
    void aPassOverAHundredThousandSortedRowsIsLinear();
};

void KeyTreeTest::everyWriteInABatchIsAnnouncedWithItsCellAndRoles()
{
    Fixture f({"a", "b"});
    QSignalSpy spy(f.tree.model(), &QAbstractItemModel::dataChanged);
    {
        const KeyTree::WriteBatch batch(f.tree);
        f.rows[1]->setText(1, "x");
        f.rows[1]->setCheckState(1, Qt::Checked);
    }
    QCOMPARE(spy.size(), 2);
    const QModelIndex cell = f.tree.model()->index(1, 1);
    for (const QList<QVariant>& call : qAsConst(spy)) {
        QCOMPARE(call.at(0).toModelIndex(), cell);
        QCOMPARE(call.at(1).toModelIndex(), cell);
    }
    QCOMPARE(spy[0][2].value<QVector<int>>(), (QVector<int>{Qt::DisplayRole, Qt::EditRole}));
    QCOMPARE(spy[1][2].value<QVector<int>>(), QVector<int>{Qt::CheckStateRole});
}

void KeyTreeTest::writingTheSameTextAgainIsNotAnnounced()
{
    Fixture f({"a"});
    f.rows[0]->setText(1, "");
    f.rows[0]->setCheckState(1, Qt::Unchecked);
    QSignalSpy spy(f.tree.model(), &QAbstractItemModel::dataChanged);
    f.rows[0]->setText(0, "a");
    f.rows[0]->setText(1, "");
    f.rows[0]->setCheckState(1, Qt::Unchecked);
    QCOMPARE(spy.size(), 0);
}

void KeyTreeTest::announcedRowsAreRightAfterSorting()
{
    Fixture f({"c", "a", "b"});
    f.tree.sortItems(0, Qt::AscendingOrder);
    QSignalSpy spy(f.tree.model(), &QAbstractItemModel::dataChanged);
    f.rows[0]->setText(1, "x");
    QCOMPARE(spy.size(), 1);
    QCOMPARE(spy[0][0].toModelIndex(), f.tree.model()->index(2, 1));
}

void KeyTreeTest::aBatchLeavesOrderAloneUntilItEndsAndRestoresItThen()
{
    Fixture f({"a", "b", "c"});
    f.tree.setSortingEnabled(true);
    f.tree.sortByColumn(0, Qt::AscendingOrder);
    {
        const KeyTree::WriteBatch batch(f.tree);
        f.rows[0]->setText(0, "z");
        QCOMPARE(namesOf(f.tree), (QStringList{"z", "b", "c"}));
    }
    QCOMPARE(namesOf(f.tree), (QStringList{"b", "c", "z"}));
}

void KeyTreeTest::aBatchSortsDownwardsToo()
{
    Fixture f({"a", "b", "c"});
    f.tree.setSortingEnabled(true);
    QCOMPARE(f.tree.header()->sortIndicatorOrder(), Qt::DescendingOrder);
    {
        const KeyTree::WriteBatch batch(f.tree);
        f.rows[0]->setText(0, "bb");
    }
    QCOMPARE(namesOf(f.tree), (QStringList{"c", "bb", "b"}));
}

void KeyTreeTest::rowsOfEqualTextKeepTheirOrderInABatch()
{
    Fixture f({"a", "b", "c", "d"});
    f.tree.setSortingEnabled(true);
    f.tree.sortByColumn(0, Qt::AscendingOrder);
    f.tree.sortByColumn(1, Qt::AscendingOrder);
    const QStringList texts{"2", "1", "2", "1"};
    {
        const KeyTree::WriteBatch batch(f.tree);
        for (int i = 0; i < 4; ++i)
            f.rows[i]->setText(1, texts[i]);
    }
    QCOMPARE(namesOf(f.tree), (QStringList{"b", "d", "a", "c"}));
    f.tree.sortByColumn(1, Qt::DescendingOrder);
    QCOMPARE(namesOf(f.tree), (QStringList{"a", "c", "b", "d"}));
}

void KeyTreeTest::aBatchKeepsTheSortIndicatorAndTellsNobody()
{
    Fixture f({"a", "b"});
    f.tree.setSortingEnabled(true);
    f.tree.sortByColumn(1, Qt::AscendingOrder);
    int told = 0;
    connect(f.tree.header(), &QHeaderView::sortIndicatorChanged, [&told] { ++told; });
    {
        const KeyTree::WriteBatch batch(f.tree);
        f.rows[0]->setText(1, "x");
    }
    QCOMPARE(told, 0);
    QCOMPARE(f.tree.sortColumn(), 1);
    QCOMPARE(f.tree.header()->sortIndicatorOrder(), Qt::AscendingOrder);
    QVERIFY(f.tree.isSortingEnabled());
}

void KeyTreeTest::nestedBatchesSortOnceAtTheEnd()
{
    Fixture f({"a", "b", "c"});
    f.tree.setSortingEnabled(true);
    f.tree.sortByColumn(0, Qt::AscendingOrder);
    int sorted = 0;
    connect(f.tree.model(), &QAbstractItemModel::layoutChanged, [&sorted] { ++sorted; });
    {
        const KeyTree::WriteBatch outer(f.tree);
        for (QTreeWidgetItem* row : qAsConst(f.rows)) {
            const KeyTree::WriteBatch inner(f.tree);
            row->setText(0, "z" + row->text(0));
        }
        f.rows[0]->setText(0, "zz");
    }
    QCOMPARE(sorted, 1);
    QCOMPARE(namesOf(f.tree), (QStringList{"zb", "zc", "zz"}));
}

void KeyTreeTest::aBatchWithoutSortingMovesNothing()
{
    Fixture f({"c", "a"});
    {
        const KeyTree::WriteBatch batch(f.tree);
        f.rows[0]->setText(0, "d");
    }
    QCOMPARE(namesOf(f.tree), (QStringList{"d", "a"}));
}

void KeyTreeTest::writesOutsideOfABatchSortAtOnce()
{
    Fixture f({"a", "b", "c"});
    f.tree.setSortingEnabled(true);
    f.tree.sortByColumn(0, Qt::AscendingOrder);
    f.rows[0]->setText(0, "bb");
    QCOMPARE(namesOf(f.tree), (QStringList{"b", "bb", "c"}));
}

void KeyTreeTest::clickOnTheHeaderSorts()
{
    Fixture f({"b", "c", "a"});
    f.tree.setSortingEnabled(true);
    f.show();
    QHeaderView* header = f.tree.header();
    const QPoint name(header->sectionViewportPosition(0) + 10, header->height() / 2);
    QTest::mouseClick(header->viewport(), Qt::LeftButton, Qt::NoModifier, name);
    QCOMPARE(namesOf(f.tree), (QStringList{"a", "b", "c"}));
    QTest::mouseClick(header->viewport(), Qt::LeftButton, Qt::NoModifier, name);
    QCOMPARE(namesOf(f.tree), (QStringList{"c", "b", "a"}));
}

void KeyTreeTest::foreignItemsSortAmongRows()
{
    Fixture f({"a", "c"});
    f.tree.addTopLevelItem(new QTreeWidgetItem({"b"}));
    f.tree.sortItems(0, Qt::AscendingOrder);
    QCOMPARE(namesOf(f.tree), (QStringList{"a", "b", "c"}));
}

void KeyTreeTest::buttonsInSightStandInTheirCells()
{
    Fixture f(manyNames(50));
    f.installButtons();
    f.show();
    QTRY_VERIFY(f.button(0)->isVisible());
    for (int row = 0; row < 5; ++row) {
        QVERIFY(f.button(row)->isVisible());
        QVERIFY(isInCell(f, row));
    }
    QVERIFY(!f.button(49)->isVisible());
}

void KeyTreeTest::buttonsFollowScrollingSortingAndColumnMoves()
{
    Fixture f(manyNames(50));
    f.installButtons();
    f.show();
    f.tree.verticalScrollBar()->setValue(f.tree.verticalScrollBar()->maximum());
    QVERIFY(f.button(49)->isVisible() && isInCell(f, 49));
    QVERIFY(!f.button(0)->isVisible());

    QPushButton* first = f.button(0);
    f.tree.sortItems(0, Qt::DescendingOrder);
    QCOMPARE(f.button(49), first);
    QTRY_VERIFY(first->isVisible() && isInCell(f, 49));

    const int before = first->x();
    f.tree.header()->moveSection(buttonColumn, 0);
    QTRY_VERIFY(first->x() < before);
    f.tree.setColumnWidth(buttonColumn, 60);
    f.tree.header()->moveSection(0, buttonColumn);
    QTRY_VERIFY(first->x() > 60);
    f.tree.hideColumn(buttonColumn);
    QTRY_VERIFY(!first->isVisible());
}

void KeyTreeTest::everyRowUpToTheLimitHasItsButtonAtOnce()
{
    Fixture f(manyNames(KeyTree::fButtonLimit));
    f.installButtons();
    for (int row = 0; row < KeyTree::fButtonLimit; ++row)
        QVERIFY(f.button(row));
    QCOMPARE(f.buttonsMade, KeyTree::fButtonLimit);
}

void KeyTreeTest::rowsBeyondTheLimitGetTheirButtonWhenTheyComeInSight()
{
    const int count = KeyTree::fButtonLimit + 1000;
    Fixture f(manyNames(count));
    f.installButtons();
    f.show();
    QVERIFY(!f.button(count - 1));
    f.tree.scrollToItem(f.rows.last());
    QTRY_VERIFY(f.button(count - 1));
    QCOMPARE(f.button(count - 1)->text(), f.rows.last()->text(0));
    QVERIFY(f.button(count - 1)->isVisible() && isInCell(f, count - 1));
    QVERIFY(!f.button(count - 500));
}

void KeyTreeTest::widgetsOfTheToolkitsOwnWayArePlaced()
{
    Fixture f(manyNames(50));
    f.show();
    auto* near = new QPushButton("near");
    auto* far = new QPushButton("far");
    f.tree.setItemWidget(f.rows[2], 1, near);
    f.tree.setItemWidget(f.rows[40], 1, far);
    QTRY_COMPARE(near->y(), f.tree.visualItemRect(f.rows[2]).y());
    QCOMPARE(near->x(), f.tree.columnViewportPosition(1));
    QTRY_VERIFY(!far->isVisible());
    f.tree.scrollToItem(f.rows[40]);
    QVERIFY(far->isVisible());
    QVERIFY(!near->isVisible());
}

void KeyTreeTest::deletedItemsAndClearDeleteTheirButtons()
{
    Fixture f(manyNames(50));
    f.installButtons();
    f.show();
    const QPointer<QPushButton> first = f.button(0);
    const QPointer<QPushButton> second = f.button(1);
    const QPointer<QPushButton> last = f.button(49);
    delete f.tree.topLevelItem(0);
    QTRY_VERIFY(!first);
    QTRY_VERIFY(isInCell(f, 0));
    QCOMPARE(f.button(0), second);
    f.tree.clear();
    QTRY_VERIFY(!second && !last);
}

void KeyTreeTest::clearingWhileAButtonHasTheFocusKeepsItInTheTable()
{
    Fixture f(manyNames(3));
    f.installButtons();
    f.show();
    f.button(1)->setFocus();
    f.tree.clear();
    QVERIFY(f.tree.hasFocus());
}

void KeyTreeTest::tabGoesDownTheButtonsInSight()
{
    Fixture f(manyNames(50));
    f.installButtons();
    f.show();
    f.tree.sortItems(0, Qt::DescendingOrder);
    QTRY_VERIFY(f.button(0)->isVisible());
    f.tree.setFocus();
    for (int row = 0; row < 3; ++row) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), f.button(row));
    }
}

void KeyTreeTest::arrowKeysGoFromCellToCell()
{
    Fixture f({"a", "b"});
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

void KeyTreeTest::spaceTicksACheckBoxAndIsHeardAsAClick()
{
    Fixture f({"a"});
    f.rows[0]->setFlags(Qt::ItemIsUserCheckable | Qt::ItemIsEnabled);
    f.rows[0]->setCheckState(1, Qt::Unchecked);
    f.show();
    f.tree.setCurrentItem(f.rows[0], 1);
    QVector<QPair<QTreeWidgetItem*, int>> clicks;
    connect(&f.tree, &QTreeWidget::itemClicked, [&](QTreeWidgetItem* item, int column) {
        clicks.append({item, column});
    });
    QTest::keyClick(&f.tree, Qt::Key_Space);
    QCOMPARE(f.rows[0]->checkState(1), Qt::Checked);
    QCOMPARE(clicks.size(), 1);
    QCOMPARE(clicks[0].first, f.rows[0]);
    QCOMPARE(clicks[0].second, 1);
    f.tree.setCurrentItem(f.rows[0], 0);
    QTest::keyClick(&f.tree, Qt::Key_Space);
    QCOMPARE(clicks.size(), 1);
}

void KeyTreeTest::spaceAndReturnPressTheButtonOfTheCurrentCell()
{
    Fixture f(manyNames(50));
    f.installButtons();
    f.show();
    f.tree.setCurrentItem(f.rows[1], buttonColumn);
    QSignalSpy spy(f.button(1), &QPushButton::clicked);
    QTest::keyClick(&f.tree, Qt::Key_Space);
    QTRY_COMPARE(spy.size(), 1);
    QTest::keyClick(&f.tree, Qt::Key_Return);
    QTRY_COMPARE(spy.size(), 2);
}

void KeyTreeTest::rowsStayOneLineHighWhateverTheirTexts()
{
    Fixture f({"a", "b"});
    f.show();
    const int height = f.tree.visualItemRect(f.rows[0]).height();
    f.rows[0]->setText(1, QString("line\n").repeated(200));
    f.tree.doItemsLayout();
    QTRY_COMPARE(f.tree.visualItemRect(f.rows[1]).y(), height);
    QCOMPARE(f.rows[0]->text(1).count('\n'), 200);
}

void KeyTreeTest::aPassOverAHundredThousandSortedRowsIsLinear()
{
    // A search per write would take minutes here.
    Fixture f(manyNames(100000));
    f.tree.setSortingEnabled(true);
    f.installButtons();
    f.show();
    QElapsedTimer timer;
    timer.start();
    for (int pass = 0; pass < 2; ++pass) {
        const KeyTree::WriteBatch batch(f.tree);
        for (QTreeWidgetItem* row : qAsConst(f.rows)) {
            const QString name = row->text(0);
            row->setText(0, "between");
            row->setText(0, name);
        }
    }
    QVERIFY2(timer.elapsed() < 20000, qPrintable(QString::number(timer.elapsed())));
    QCOMPARE(f.tree.topLevelItem(0)->text(0), QString("key 099999"));
}

QTEST_MAIN(KeyTreeTest)
#include "tst_key_tree.moc"
