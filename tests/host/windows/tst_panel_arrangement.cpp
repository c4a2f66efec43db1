// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/register_test.h"
#include "windows/panel_arrangement.h"

#include <QHeaderView>
#include <QLabel>
#include <QSplitter>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <QtTest>

namespace {

/// Nothing in it has a name.
struct Panel
{
    Panel()
    {
        (new QVBoxLayout(&widget))->addWidget(splitter);
        table->setHeaderLabels({"a", "b", "c"});
        table->setSortingEnabled(true);
        splitter->addWidget(new QLabel("x"));
        widget.resize(800, 300);
        widget.show();
    }
    QHeaderView* header() const { return table->header(); }

    QWidget widget;
    QSplitter* splitter = new QSplitter(&widget);
    QTreeWidget* table = new QTreeWidget(splitter);
};

} // namespace

/// The inside of a panel, as the user left it.
class TestPanelArrangement : public GuardedTest
{
    Q_OBJECT

private slots:
    void bordersColumnsAndSortingComeBack();
    void columnsComeBackWithoutSizes();
    void aPanelOfAnotherVersionIsLeftAlone();
    void nonsenseIsIgnored_data();
    void nonsenseIsIgnored();
    void dialogsAreNoPartOfAPanel();
};

void TestPanelArrangement::bordersColumnsAndSortingComeBack()
{
    const Panel first;
    first.splitter->setSizes({200, 560});
    first.header()->resizeSection(0, 77);
    first.header()->moveSection(2, 0);
    first.table->sortByColumn(1, Qt::DescendingOrder);
    const Panel second;
    arrange(second.widget, arrangementOf(first.widget));
    QCOMPARE(second.splitter->sizes(), first.splitter->sizes());
    QCOMPARE(second.header()->sectionSize(0), 77);
    QCOMPARE(second.header()->visualIndex(2), 0);
    QCOMPARE(second.header()->sortIndicatorSection(), 1);
    QCOMPARE(second.header()->sortIndicatorOrder(), Qt::DescendingOrder);
    QCOMPARE(arrangementOf(second.widget), arrangementOf(first.widget));
}

void TestPanelArrangement::columnsComeBackWithoutSizes()
{
    const Panel first;
    const PanelArrangement before = arrangementOf(first.widget);
    QVERIFY(hasSizes(before) && !hasSizes({}));
    first.header()->resizeSection(0, 77);
    first.splitter->setSizes({200, 560});
    QVERIFY(withoutSizes(arrangementOf(first.widget), before).isEmpty());
    first.header()->moveSection(2, 0);
    first.table->sortByColumn(1, Qt::DescendingOrder);
    const PanelArrangement columns = withoutSizes(arrangementOf(first.widget), before);
    QCOMPARE(columns.size(), 1);
    QVERIFY(!hasSizes(columns));
    const Panel second;
    arrange(second.widget, columns);
    QCOMPARE(second.splitter->sizes(), Panel().splitter->sizes());
    QVERIFY(second.header()->sectionSize(0) != 77);
    QCOMPARE(second.header()->visualIndex(2), 0);
    QCOMPARE(second.header()->sortIndicatorSection(), 1);
}

void TestPanelArrangement::aPanelOfAnotherVersionIsLeftAlone()
{
    const Panel first;
    first.splitter->setSizes({200, 560});
    first.header()->resizeSection(0, 77);
    const Panel second;
    second.splitter->addWidget(new QLabel("y"));
    second.table->setHeaderLabels({"a", "b", "c", "d"});
    const PanelArrangement before = arrangementOf(second.widget);
    arrange(second.widget, arrangementOf(first.widget));
    QCOMPARE(arrangementOf(second.widget), before);
}

void TestPanelArrangement::nonsenseIsIgnored_data()
{
    QTest::addColumn<QString>("text");
    for (const char* text :
         {"", ";", ";;", ";;;", "a", "1", "1,2,3,4;1,2,3,4;1,2,3", "-1,50,50;0,0,0;3,0",
          "99999999999,50,50;0,1,1;-2,0", "50,50,2000000;2,1,3;0", "0,0", "-5,5", "1e2,3", ",",
          "999999999,1", "1, ;,;,"})
        QTest::newRow(text) << text;
    QTest::newRow("long") << QString(1 << 20, ',');
}

void TestPanelArrangement::nonsenseIsIgnored()
{
    QFETCH(QString, text);
    const Panel panel;
    const PanelArrangement before = arrangementOf(panel.widget);
    PanelArrangement nonsense = before;
    for (QString& value : nonsense)
        value = text;
    nonsense["QSplitter1 nowhere"] = text;
    arrange(panel.widget, nonsense);
    QCOMPARE(arrangementOf(panel.widget), before);
}

void TestPanelArrangement::dialogsAreNoPartOfAPanel()
{
    Panel panel;
    const PanelArrangement before = arrangementOf(panel.widget);
    auto* dialog = new QWidget(&panel.widget, Qt::Dialog);
    new QSplitter(dialog);
    QCOMPARE(arrangementOf(panel.widget), before);
    QCOMPARE(before.size(), 2);
}

REGISTER_TEST(TestPanelArrangement, QApplication)
#include "tst_panel_arrangement.moc"
