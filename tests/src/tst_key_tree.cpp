// SPDX-License-Identifier: MIT
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

QString randomText(std::mt19937& random)
{
    static const QVector<QChar> alphabet{'a',      'b',         'B',           '1',          ' ',
                                         QChar(0), QChar(0xe4), QChar(0xd800), QChar(0xffff)};
    QString text;
    for (auto length = random() % 7; length > 0; --length)
        text += alphabet[random() % 4 ? 0 : static_cast<int>(random() % 9)];
    return text;
}

/// The same rows in a table of keys and in a tree of the toolkit's own; column 2 tells them apart.
class Twins
{
public:
    explicit Twins(unsigned seed) : random(seed)
    {
        plain.setColumnCount(3);
        for (int i = 0; i < 12; ++i) {
            table.tree.addTopLevelItem(new KeyRow(table.color));
            plain.addTopLevelItem(new QTreeWidgetItem);
            both(i, [i](QTreeWidgetItem& item) { item.setText(2, QString::number(i)); });
        }
    }

    /// One random thing that happens to a table. Cells that were never written stay among them.
    void change()
    {
        const int row = static_cast<int>(random() % 12);
        const int column = static_cast<int>(random() % 2);
        const QString text = randomText(random);
        const auto order = random() % 2 ? Qt::AscendingOrder : Qt::DescendingOrder;
        const bool isOn = random() % 4 != 0;
        switch (random() % 6) {
        case 0:
            table.tree.sortByColumn(column, order);
            plain.sortByColumn(column, order);
            break;
        case 1:
            table.tree.setSortingEnabled(isOn);
            plain.setSortingEnabled(isOn);
            break;
        case 2:
            both(row, [&](QTreeWidgetItem& item) { item.setData(column, Qt::DisplayRole, isOn); });
            break;
        default:
            both(row, [&](QTreeWidgetItem& item) { item.setText(column, text); });
        }
    }

    QStringList rowsOf(const QTreeWidget& tree) const
    {
        QStringList rows;
        for (int i = 0; i < tree.topLevelItemCount(); ++i)
            rows += tree.topLevelItem(i)->text(2);
        return rows;
    }

    std::mt19937 random;
    KeyTable table;
    QTreeWidget plain;

private:
    template <class Change>
    void both(int row, Change change)
    {
        change(*table.tree.topLevelItem(row));
        change(*plain.topLevelItem(row));
    }
};

} // namespace

class TestKeyTree : public GuardedTest
{
    Q_OBJECT

private slots:
    void writesOutsideOfABatchSortAtOnce();
    void clickOnTheHeaderSorts();
    void foreignItemsSortAmongRows();
    void rowsStayOneLineHighWhateverTheirTexts();
    void leavesRoomForTextsStillToCome();
    void sortsAsTheToolkitsOwnTreeDoes();
    void textsThatBeginAlikeAreOrderedByWhatFollows();
    void rowsOfEqualTextStayAsTheyAre();
};

void TestKeyTree::writesOutsideOfABatchSortAtOnce()
{
    KeyTable f({"a", "b", "c"});
    f.tree.setSortingEnabled(true);
    f.tree.sortByColumn(0, Qt::AscendingOrder);
    f.rows[0]->setText(0, "bb");
    QCOMPARE(f.names(), (QStringList{"b", "bb", "c"}));
}

void TestKeyTree::clickOnTheHeaderSorts()
{
    KeyTable f({"b", "c", "a"});
    f.tree.setSortingEnabled(true);
    f.show();
    QHeaderView* header = f.tree.header();
    const QPoint name(header->sectionViewportPosition(0) + 10, header->height() / 2);
    QTest::mouseClick(header->viewport(), Qt::LeftButton, Qt::NoModifier, name);
    QCOMPARE(f.names(), (QStringList{"a", "b", "c"}));
    QTest::mouseClick(header->viewport(), Qt::LeftButton, Qt::NoModifier, name);
    QCOMPARE(f.names(), (QStringList{"c", "b", "a"}));
}

void TestKeyTree::foreignItemsSortAmongRows()
{
    KeyTable f({"a", "c"});
    f.tree.addTopLevelItem(new QTreeWidgetItem({"b"}));
    f.tree.sortItems(0, Qt::AscendingOrder);
    QCOMPARE(f.names(), (QStringList{"a", "b", "c"}));
}

void TestKeyTree::rowsStayOneLineHighWhateverTheirTexts()
{
    KeyTable f({"a", "b"});
    f.show();
    const int height = f.tree.visualItemRect(f.rows[0]).height();
    f.rows[0]->setText(1, QString("line\n").repeated(200));
    f.tree.doItemsLayout();
    TRY_COMPARE(f.tree.visualItemRect(f.rows[1]).y(), height);
    QCOMPARE(f.rows[0]->text(1).count('\n'), 200);
}

void TestKeyTree::leavesRoomForTextsStillToCome()
{
    KeyTable table({"a", "b", "c"});
    KeyTree& tree = table.tree;
    const auto fit = [&tree] {
        tree.resizeColumnToContents(1);
        return tree.columnWidth(1);
    };
    tree.show();
    const QString text = "-0.12345678";
    QVERIFY(fit() < tree.fontMetrics().horizontalAdvance(text));
    tree.leaveRoom(1, text);
    const int room = fit();
    tree.topLevelItem(0)->setText(1, text);
    QCOMPARE(fit(), room);
    tree.topLevelItem(0)->setText(1, text + text);
    QVERIFY(fit() > room);
}

void TestKeyTree::sortsAsTheToolkitsOwnTreeDoes()
{
    for (unsigned seed = 0; seed < 200; ++seed) {
        Twins twins(seed);
        for (int i = 0; i < 40; ++i) {
            twins.change();
            QCOMPARE(twins.rowsOf(twins.table.tree), twins.rowsOf(twins.plain));
        }
    }
}

void TestKeyTree::textsThatBeginAlikeAreOrderedByWhatFollows()
{
    const QStringList sorted{
        "", "abc", QString("abc") + QChar(0), "abcd", "abcd", "abcde", "abcdf", "abce", "b"};
    QStringList names = sorted;
    std::mt19937 random(1);
    for (int i = 0; i < 50; ++i) {
        std::shuffle(names.begin(), names.end(), random);
        KeyTable f(names);
        f.tree.sortItems(0, Qt::AscendingOrder);
        QCOMPARE(f.names(), sorted);
    }
}

void TestKeyTree::rowsOfEqualTextStayAsTheyAre()
{
    KeyTable f(manyNames(30));
    for (QTreeWidgetItem* row : std::as_const(f.rows))
        row->setText(1, "same text");
    const QStringList before = f.names();
    f.tree.setSortingEnabled(true);
    f.tree.sortByColumn(0, Qt::AscendingOrder);
    for (const Qt::SortOrder order : {Qt::AscendingOrder, Qt::DescendingOrder}) {
        f.tree.sortByColumn(1, order);
        QCOMPARE(f.names(), before);
    }
}

REGISTER_TEST(TestKeyTree, QApplication)
#include "tst_key_tree.moc"
