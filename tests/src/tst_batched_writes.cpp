// SPDX-License-Identifier: MIT
#include "support/growth.h"
#include "support/guarded_test.h"
#include "support/key_table.h"
#include "support/patience.h"
#include "support/register_test.h"

#include <QHeaderView>
#include <QtTest>

#include <algorithm>
#include <random>
#include <utility>

namespace {

/// Counts how often it is compared.
class ComparedItem : public QTreeWidgetItem
{
public:
    ComparedItem(const QStringList& texts, int& compared)
        : QTreeWidgetItem(texts), fCompared(compared)
    {
    }
    bool operator<(const QTreeWidgetItem& other) const override
    {
        ++fCompared;
        return QTreeWidgetItem::operator<(other);
    }

private:
    int& fCompared;
};

class PaintCounter : public QObject
{
public:
    explicit PaintCounter(QWidget* widget) { widget->installEventFilter(this); }

    int count = 0;

private:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        count += event->type() == QEvent::Paint ? 1 : 0;
        return QObject::eventFilter(watched, event);
    }
};

/// Processor seconds of a pass that writes the name of each of so many sorted rows twice. It leaps
/// about, as the view finds a row quickly that is near the one before.
double secondsOfAPass(int count)
{
    KeyTable f(manyNames(count));
    f.tree.setSortingEnabled(true);
    f.installButtons();
    f.show();
    std::shuffle(f.rows.begin(), f.rows.end(), std::mt19937(1));
    const double start = processorSeconds();
    {
        const KeyTree::WriteBatch batch(f.tree);
        for (QTreeWidgetItem* row : std::as_const(f.rows)) {
            const QString name = row->text(0);
            row->setText(0, "between");
            row->setText(0, name);
        }
    }
    return processorSeconds() - start;
}

} // namespace

class TestBatchedWrites : public GuardedTest
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
    void randomBatchesEndInTheOrderOfAStableSort();
    void aBatchThatKeepsTheOrderDoesNotSort();
    void aBatchComparesTheRowsThatItWroteAndTheirNeighbours();
    void theRowsArePaintedAnewAfterABatch();
    void aPassOverManySortedRowsIsLinear();
};

void TestBatchedWrites::everyWriteInABatchIsAnnouncedWithItsCellAndRoles()
{
    KeyTable f({"a", "b"});
    QSignalSpy spy(f.tree.model(), &QAbstractItemModel::dataChanged);
    {
        const KeyTree::WriteBatch batch(f.tree);
        f.rows[1]->setText(1, "x");
        f.rows[1]->setCheckState(1, Qt::Checked);
    }
    QCOMPARE(spy.size(), 2);
    const QModelIndex cell = f.tree.model()->index(1, 1);
    for (const QList<QVariant>& call : std::as_const(spy)) {
        QCOMPARE(call.at(0).toModelIndex(), cell);
        QCOMPARE(call.at(1).toModelIndex(), cell);
    }
    QCOMPARE(spy[0][2].value<QVector<int>>(), (QVector<int>{Qt::DisplayRole, Qt::EditRole}));
    QCOMPARE(spy[1][2].value<QVector<int>>(), QVector<int>{Qt::CheckStateRole});
}

void TestBatchedWrites::writingTheSameTextAgainIsNotAnnounced()
{
    KeyTable f({"a"});
    f.rows[0]->setText(1, "");
    f.rows[0]->setCheckState(1, Qt::Unchecked);
    QSignalSpy spy(f.tree.model(), &QAbstractItemModel::dataChanged);
    f.rows[0]->setText(0, "a");
    f.rows[0]->setText(1, "");
    f.rows[0]->setCheckState(1, Qt::Unchecked);
    QCOMPARE(spy.size(), 0);
}

void TestBatchedWrites::announcedRowsAreRightAfterSorting()
{
    KeyTable f({"c", "a", "b"});
    f.tree.sortItems(0, Qt::AscendingOrder);
    QSignalSpy spy(f.tree.model(), &QAbstractItemModel::dataChanged);
    f.rows[0]->setText(1, "x");
    QCOMPARE(spy.size(), 1);
    QCOMPARE(spy[0][0].toModelIndex(), f.tree.model()->index(2, 1));
}

void TestBatchedWrites::aBatchLeavesOrderAloneUntilItEndsAndRestoresItThen()
{
    KeyTable f({"a", "b", "c"});
    f.tree.setSortingEnabled(true);
    f.tree.sortByColumn(0, Qt::AscendingOrder);
    {
        const KeyTree::WriteBatch batch(f.tree);
        f.rows[0]->setText(0, "z");
        QCOMPARE(f.names(), (QStringList{"z", "b", "c"}));
    }
    QCOMPARE(f.names(), (QStringList{"b", "c", "z"}));
}

void TestBatchedWrites::aBatchSortsDownwardsToo()
{
    KeyTable f({"a", "b", "c"});
    f.tree.setSortingEnabled(true);
    QCOMPARE(f.tree.header()->sortIndicatorOrder(), Qt::DescendingOrder);
    {
        const KeyTree::WriteBatch batch(f.tree);
        f.rows[0]->setText(0, "bb");
    }
    QCOMPARE(f.names(), (QStringList{"c", "bb", "b"}));
}

void TestBatchedWrites::rowsOfEqualTextKeepTheirOrderInABatch()
{
    KeyTable f({"a", "b", "c", "d"});
    f.tree.setSortingEnabled(true);
    f.tree.sortByColumn(0, Qt::AscendingOrder);
    f.tree.sortByColumn(1, Qt::AscendingOrder);
    const QStringList texts{"2", "1", "2", "1"};
    {
        const KeyTree::WriteBatch batch(f.tree);
        for (int i = 0; i < 4; ++i)
            f.rows[i]->setText(1, texts[i]);
    }
    QCOMPARE(f.names(), (QStringList{"b", "d", "a", "c"}));
    f.tree.sortByColumn(1, Qt::DescendingOrder);
    QCOMPARE(f.names(), (QStringList{"a", "c", "b", "d"}));
}

void TestBatchedWrites::aBatchKeepsTheSortIndicatorAndTellsNobody()
{
    KeyTable f({"a", "b"});
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

void TestBatchedWrites::nestedBatchesSortOnceAtTheEnd()
{
    KeyTable f({"a", "b", "c"});
    f.tree.setSortingEnabled(true);
    f.tree.sortByColumn(0, Qt::AscendingOrder);
    int sorted = 0;
    connect(f.tree.model(), &QAbstractItemModel::layoutChanged, [&sorted] { ++sorted; });
    {
        const KeyTree::WriteBatch outer(f.tree);
        for (QTreeWidgetItem* row : std::as_const(f.rows)) {
            const KeyTree::WriteBatch inner(f.tree);
            row->setText(0, "z" + row->text(0));
        }
        f.rows[0]->setText(0, "zz");
    }
    QCOMPARE(sorted, 1);
    QCOMPARE(f.names(), (QStringList{"zb", "zc", "zz"}));
}

void TestBatchedWrites::aBatchWithoutSortingMovesNothing()
{
    KeyTable f({"c", "a"});
    {
        const KeyTree::WriteBatch batch(f.tree);
        f.rows[0]->setText(0, "d");
    }
    QCOMPARE(f.names(), (QStringList{"d", "a"}));
}

void TestBatchedWrites::randomBatchesEndInTheOrderOfAStableSort()
{
    for (unsigned seed = 0; seed < 100; ++seed) {
        std::mt19937 random(seed);
        KeyTable f(manyNames(8));
        QTreeWidget plain;
        plain.setColumnCount(2);
        for (QTreeWidgetItem* row : std::as_const(f.rows)) {
            row->setText(1, "");
            plain.addTopLevelItem(new QTreeWidgetItem({row->text(0), ""}));
        }
        const Qt::SortOrder order = random() % 2 ? Qt::AscendingOrder : Qt::DescendingOrder;
        f.tree.sortByColumn(1, order);
        f.tree.setSortingEnabled(true);
        plain.sortItems(1, order);
        for (int batch = 0; batch < 10; ++batch) {
            {
                const KeyTree::WriteBatch open(f.tree);
                for (auto writes = random() % 3; writes > 0; --writes) {
                    const QString text(static_cast<int>(random() % 3), QChar('a'));
                    const int row = static_cast<int>(random() % 8);
                    f.tree.topLevelItem(row)->setText(1, text);
                    plain.topLevelItem(row)->setText(1, text);
                }
            }
            plain.sortItems(1, order);
            QCOMPARE(f.names(), namesOf(plain));
        }
    }
}

void TestBatchedWrites::aBatchThatKeepsTheOrderDoesNotSort()
{
    KeyTable f({"a", "c", "e"});
    f.tree.setSortingEnabled(true);
    f.tree.sortByColumn(0, Qt::AscendingOrder);
    int sorted = 0;
    connect(f.tree.model(), &QAbstractItemModel::layoutChanged, [&sorted] { ++sorted; });
    {
        const KeyTree::WriteBatch batch(f.tree);
        f.rows[1]->setText(0, "d");
        f.rows[0]->setText(1, "z");
        f.rows[2]->setText(1, "a");
    }
    QCOMPARE(sorted, 0);
    QCOMPARE(f.names(), (QStringList{"a", "d", "e"}));
}

void TestBatchedWrites::aBatchComparesTheRowsThatItWroteAndTheirNeighbours()
{
    KeyTable f;
    int compared = 0;
    for (const QString& name : manyNames(50))
        f.tree.addTopLevelItem(new ComparedItem({name, ""}, compared));
    f.tree.sortByColumn(0, Qt::AscendingOrder);
    f.tree.setSortingEnabled(true);
    const auto comparisons = [&](int first, int last, int column) {
        compared = 0;
        {
            const KeyTree::WriteBatch batch(f.tree);
            for (int row = first; row <= last; ++row) {
                QTreeWidgetItem* item = f.tree.topLevelItem(row);
                item->setText(column, item->text(column) + "x");
            }
        }
        return compared;
    };
    QCOMPARE(comparisons(0, 49, 0), 49);
    QCOMPARE(comparisons(10, 12, 0), 4);
    QCOMPARE(comparisons(0, 49, 1), 0);
}

void TestBatchedWrites::theRowsArePaintedAnewAfterABatch()
{
    KeyTable f({"a"});
    f.show();
    QCoreApplication::processEvents();
    const QImage before = f.tree.viewport()->grab().toImage();
    {
        const KeyTree::WriteBatch batch(f.tree);
        f.rows[0]->setText(0, "wholly different");
    }
    PaintCounter paints(f.tree.viewport());
    TRY_VERIFY(paints.count > 0);
    QVERIFY(f.tree.viewport()->grab().toImage() != before);
}

void TestBatchedWrites::aPassOverManySortedRowsIsLinear()
{
    const double growth = growthAtFourTimes(10000, secondsOfAPass);
    QVERIFY2(growth < mostLinearGrowth, qPrintable(QString::number(growth)));
}

REGISTER_TEST(TestBatchedWrites, QApplication)
#include "tst_batched_writes.moc"
