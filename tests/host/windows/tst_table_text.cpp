// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/patience.h"
#include "support/register_test.h"
#include "windows/table_text.h"

#include <QHeaderView>
#include <QListWidget>
#include <QTableWidget>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <QtTest>

using Rows = QVector<QStringList>;

/// Tables as text.
class TestTableText : public GuardedTest
{
    Q_OBJECT

private slots:
    void readsATableAsItIsSeen();
    void readsATreeAsItIsUnfolded();
    void readsAListAndATable();
    void csvFollowsItsRule();
    void tabsSeparateCellsOnly();
    void findsTheTableThatIsMeant();
};

void TestTableText::readsATableAsItIsSeen()
{
    QTreeWidget tree;
    tree.setHeaderLabels({"Name", "On", "Hidden", "Value"});
    for (const char* name : {"b", "gone", "a"}) {
        auto* row = new QTreeWidgetItem(&tree, {name, "", "x", QString("%1 value").arg(name)});
        row->setCheckState(1, *name == 'a' ? Qt::Checked : Qt::Unchecked);
        row->setHidden(row->text(0) == "gone");
    }
    tree.setColumnHidden(2, true);
    tree.header()->moveSection(3, 0);
    tree.setSortingEnabled(true);
    tree.sortByColumn(0, Qt::AscendingOrder);
    QCOMPARE(shownColumns(tree), QVector<int>({3, 0, 1}));
    QCOMPARE(allTexts(tree),
             Rows({{"Value", "Name", "On"}, {"a value", "a", "1"}, {"b value", "b", "0"}}));
    QCOMPARE(rowTexts(tree, tree.model()->index(0, 2)), QStringList({"a value", "a", "1"}));
}

void TestTableText::readsATreeAsItIsUnfolded()
{
    QTreeWidget tree;
    tree.setHeaderLabels({"Name"});
    auto* open = new QTreeWidgetItem(&tree, {"open"});
    new QTreeWidgetItem(open, {"in it"});
    auto* closed = new QTreeWidgetItem(&tree, {"closed"});
    new QTreeWidgetItem(closed, {"unseen"});
    tree.expandItem(open);
    QCOMPARE(allTexts(tree), Rows({{"Name"}, {"open"}, {"in it"}, {"closed"}}));
}

void TestTableText::readsAListAndATable()
{
    QListWidget list;
    list.addItems({"a", "b"});
    QCOMPARE(allTexts(list), Rows({{"a"}, {"b"}}));
    QTableWidget table(1, 2);
    table.setItem(0, 1, new QTableWidgetItem("x"));
    QCOMPARE(allTexts(table), Rows({{"1", "2"}, {"", "x"}}));
}

void TestTableText::csvFollowsItsRule()
{
    QCOMPARE(
        csv({{"a", "b c"}, {"1,5", "say \"x\""}, {"line\nline", QString::fromUtf8("\xc3\xa4")}}),
        QByteArray("a,b c\r\n\"1,5\",\"say \"\"x\"\"\"\r\n\"line\nline\",\xc3\xa4\r\n"));
    QCOMPARE(csv({}), QByteArray());
}

void TestTableText::tabsSeparateCellsOnly()
{
    QCOMPARE(tabbed({{"a\tb", "c\r\nd"}, {"e", ""}}), QString("a b\tc  d\ne\t"));
}

void TestTableText::findsTheTableThatIsMeant()
{
    QWidget panel;
    auto* layout = new QVBoxLayout(&panel);
    QCOMPARE(tableIn(panel), nullptr);
    auto* small = new QListWidget(&panel);
    small->setFixedHeight(50);
    auto* large = new QTreeWidget(&panel);
    layout->addWidget(small);
    layout->addWidget(large);
    panel.resize(300, 400);
    panel.show();
    QVERIFY(QTest::qWaitForWindowActive(&panel, patience));
    panel.setFocus();
    QCOMPARE(tableIn(panel), large);
    small->setFocus();
    QCOMPARE(tableIn(panel), small);
    small->clearFocus();
    large->hide();
    QCOMPARE(tableIn(panel), small);
}

REGISTER_TEST(TestTableText, QApplication)
#include "tst_table_text.moc"
