// SPDX-License-Identifier: MIT
#include "key_row.h"
#include "support/growth.h"
#include "support/guarded_test.h"
#include "support/panel.h"
#include "support/register_test.h"

#include <QtTest>

namespace {

/// Checks both boxes of a row and both flags of its record.
void expect(const Panel& panel, const STMVal& value, bool watch, bool graph)
{
    const QTreeWidgetItem* row = panel.row(QString::fromStdString(value.names.second));
    QCOMPARE(value.watch, watch);
    QCOMPARE(value.graph, graph);
    QCOMPARE(row->checkState(Widget::fColWatch) == Qt::Checked, watch);
    QCOMPARE(row->checkState(Widget::fColGraph) == Qt::Checked, graph);
}

} // namespace

class TestWidgetCommands : public GuardedTest
{
    Q_OBJECT

private slots:
    void graphingAKeyWatchesItAndPlotsItInItsColour();
    void unwatchingAGraphedKeyTakesItOffThePlot();
    void ungraphingKeepsWatching();
    void clickBesideTheBoxChangesNothing();
    void clickOnOtherCellsOnlyWritesTheNameTwice();
    void doubleClickOnABoxLeavesBoxAndFlagAlike();
    void spaceKeyTicksBoxesLikeTheMouse();
    void clickOnARowOfAnotherMakerPlotsWithoutColour();
    void ofKeysWithTheSameAliasTheFirstIsChanged();
    void watchAllAndGraphAllTickEveryRow();
    void graphAllPlotsEveryKeyInItsOwnColour();
    void rowsThatThePanelDidNotMakeHaveNoColour();
    void allBoxesDoNothingOnAnEmptyTable();
    void rowClicksLeaveTheAllBoxesAlone();
    void graphAllOfManyRowsIsLinear();
};

void TestWidgetCommands::graphingAKeyWatchesItAndPlotsItInItsColour()
{
    Panel panel;
    STMVal& value = panel.add("a");
    panel.add("b");
    panel.show();
    panel.click("a", Widget::fColGraph);
    expect(panel, value, true, true);
    QCOMPARE(panel.graph()->fSeries.keys(), QStringList{"a"});
    QCOMPARE(panel.graph()->fSeries["a"].first, &value.color);
}

void TestWidgetCommands::unwatchingAGraphedKeyTakesItOffThePlot()
{
    Panel panel;
    STMVal& value = panel.add("a");
    value.watch = value.graph = true;
    panel.show();
    panel.click("a", Widget::fColWatch);
    expect(panel, value, false, false);
    QVERIFY(panel.graph()->fSeries.isEmpty());
    panel.click("a", Widget::fColWatch);
    expect(panel, value, true, false);
}

void TestWidgetCommands::ungraphingKeepsWatching()
{
    Panel panel;
    STMVal& value = panel.add("a");
    value.watch = value.graph = true;
    panel.show();
    panel.click("a", Widget::fColGraph);
    expect(panel, value, true, false);
    QVERIFY(panel.graph()->fSeries.isEmpty());
}

void TestWidgetCommands::clickBesideTheBoxChangesNothing()
{
    Panel panel;
    STMVal& value = panel.add("a");
    value.watch = true;
    panel.show();
    QTreeWidget* tree = panel.tree();
    tree->setColumnWidth(Widget::fColWatch, 100);
    const QRect cell = tree->visualRect(tree->model()->index(0, Widget::fColWatch));
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, Qt::NoModifier,
                      cell.center() + QPoint(40, 0));
    expect(panel, value, true, false);
}

void TestWidgetCommands::clickOnOtherCellsOnlyWritesTheNameTwice()
{
    Panel panel;
    STMVal& value = panel.add("a");
    value.watch = value.graph = true;
    panel.show();
    panel.treeTimer()->stop();
    for (const int column : {Widget::fColName, Widget::fColType, Widget::fColValue}) {
        QSignalSpy writes(panel.tree()->model(), &QAbstractItemModel::dataChanged);
        panel.click("a", column);
        QCOMPARE(writes.size(), 2);
        QCOMPARE(writes[0][0].toModelIndex().column(), int(Widget::fColName));
        expect(panel, value, true, true);
    }
}

void TestWidgetCommands::doubleClickOnABoxLeavesBoxAndFlagAlike()
{
    Panel panel;
    STMVal& value = panel.add("a");
    panel.show();
    const QPoint place = panel.boxPlace("a", Widget::fColWatch);
    QWidget* viewport = panel.tree()->viewport();
    QTest::mouseClick(viewport, Qt::LeftButton, Qt::NoModifier, place);
    QTest::mouseDClick(viewport, Qt::LeftButton, Qt::NoModifier, place);
    const bool isTicked = panel.row("a")->checkState(Widget::fColWatch) == Qt::Checked;
    QCOMPARE(value.watch, isTicked);
}

void TestWidgetCommands::spaceKeyTicksBoxesLikeTheMouse()
{
    Panel panel;
    STMVal& value = panel.add("a");
    panel.show();
    panel.tree()->setFocus();
    QCOMPARE(panel.tree()->currentItem(), panel.row("a"));
    QTest::keyClick(panel.tree(), Qt::Key_Right);
    QTest::keyClick(panel.tree(), Qt::Key_Right);
    QTest::keyClick(panel.tree(), Qt::Key_Space);
    expect(panel, value, true, true);
    QTest::keyClick(panel.tree(), Qt::Key_Left);
    QTest::keyClick(panel.tree(), Qt::Key_Space);
    expect(panel, value, false, false);
    for (const char* text : {"Watch All", "Graph All"}) {
        panel.box(text)->setFocus();
        QTest::keyClick(panel.box(text), Qt::Key_Space);
    }
    expect(panel, value, true, true);
}

void TestWidgetCommands::clickOnARowOfAnotherMakerPlotsWithoutColour()
{
    Panel panel;
    panel.add("a");
    panel.show();
    auto* item = new QTreeWidgetItem(panel.tree(), {"stranger"});
    item->setCheckState(Widget::fColGraph, Qt::Checked);
    emit panel.tree()->itemClicked(item, Widget::fColGraph);
    QVERIFY(panel.graph()->fSeries.contains("stranger"));
    QVERIFY(!panel.graph()->fSeries["stranger"].first);
    QCOMPARE(item->checkState(Widget::fColWatch), Qt::Checked);
}

void TestWidgetCommands::ofKeysWithTheSameAliasTheFirstIsChanged()
{
    Panel panel;
    panel.add("same");
    panel.add("same");
    panel.show();
    panel.tree()->sortByColumn(Widget::fColName, Qt::AscendingOrder);
    QTest::mouseClick(panel.tree()->viewport(), Qt::LeftButton, Qt::NoModifier,
                      panel.boxPlace(1, Widget::fColWatch));
    QVERIFY(panel.module->fModel->fSTMVals[0]->watch);
    QVERIFY(!panel.module->fModel->fSTMVals[1]->watch);
    QTest::mouseClick(panel.box("Graph All"), Qt::LeftButton);
    QVERIFY(panel.module->fModel->fSTMVals[0]->graph);
    QVERIFY(!panel.module->fModel->fSTMVals[1]->graph);
    QCOMPARE(panel.graph()->fSeries.size(), 1);
}

void TestWidgetCommands::watchAllAndGraphAllTickEveryRow()
{
    Panel panel;
    STMVal& a = panel.add("a");
    STMVal& b = panel.add("b");
    b.watch = true;
    panel.show();
    QTest::mouseClick(panel.box("Graph All"), Qt::LeftButton);
    expect(panel, a, true, true);
    expect(panel, b, true, true);
    QCOMPARE(panel.graph()->fSeries.keys(), (QStringList{"a", "b"}));
    QCOMPARE(panel.graph()->fSeries["b"].first, &b.color);
    QCOMPARE(panel.box("Watch All")->checkState(), Qt::Unchecked);

    QTest::mouseClick(panel.box("Graph All"), Qt::LeftButton);
    expect(panel, a, true, false);
    QVERIFY(panel.graph()->fSeries.isEmpty());
    panel.click("b", Widget::fColGraph);

    QTest::mouseClick(panel.box("Watch All"), Qt::LeftButton);
    expect(panel, a, true, false);
    expect(panel, b, true, true);
    QTest::mouseClick(panel.box("Watch All"), Qt::LeftButton);
    expect(panel, a, false, false);
    expect(panel, b, false, false);
    QVERIFY(panel.graph()->fSeries.isEmpty());
}

void TestWidgetCommands::allBoxesDoNothingOnAnEmptyTable()
{
    Panel panel;
    panel.show();
    for (const char* text : {"Watch All", "Graph All", "Watch All", "Graph All"})
        QTest::mouseClick(panel.box(text), Qt::LeftButton);
    QVERIFY(panel.graph()->fSeries.isEmpty());
    QCOMPARE(panel.tree()->topLevelItemCount(), 0);
}

void TestWidgetCommands::rowClicksLeaveTheAllBoxesAlone()
{
    Panel panel;
    panel.add("a");
    panel.show();
    panel.click("a", Widget::fColGraph);
    QVERIFY(!panel.box("Watch All")->isChecked() && !panel.box("Graph All")->isChecked());
    QTest::mouseClick(panel.box("Graph All"), Qt::LeftButton);
    panel.click("a", Widget::fColWatch);
    QVERIFY(panel.box("Graph All")->isChecked());
}

void TestWidgetCommands::graphAllPlotsEveryKeyInItsOwnColour()
{
    Panel panel;
    for (int i = 0; i < 100; ++i)
        panel.add("key" + std::to_string(i * 37 % 100));
    panel.show();
    panel.tree()->sortByColumn(Widget::fColName, Qt::AscendingOrder);
    QTest::mouseClick(panel.box("Graph All"), Qt::LeftButton);
    QCOMPARE(panel.graph()->fSeries.size(), 100);
    for (const auto& value : panel.module->fModel->fSTMVals)
        QCOMPARE(panel.graph()->fSeries[QString::fromStdString(value->names.second)].first,
                 &value->color);
}

void TestWidgetCommands::rowsThatThePanelDidNotMakeHaveNoColour()
{
    Panel panel;
    STMVal& value = panel.add("a");
    panel.show();
    Color color;
    QTreeWidgetItem* stranger = new KeyRow(color);
    stranger->setText(Widget::fColName, "stranger");
    stranger->setCheckState(Widget::fColGraph, Qt::Checked);
    panel.tree()->addTopLevelItem(stranger);
    const auto& series = panel.graph()->fSeries;
    emit panel.tree()->itemClicked(stranger, Widget::fColGraph);
    QVERIFY(series.contains("stranger") && !series["stranger"].first);
    panel.graph()->clear();
    QTest::mouseClick(panel.box("Graph All"), Qt::LeftButton);
    QVERIFY(series.contains("stranger") && !series["stranger"].first);
    QCOMPARE(series["a"].first, &value.color);
}

void TestWidgetCommands::graphAllOfManyRowsIsLinear()
{
    const double growth = growthAtFourTimes(4000, [](int rows) {
        Panel panel;
        for (int i = 0; i < rows; ++i)
            panel.add("key" + std::to_string(i));
        panel.show();
        const double start = processorSeconds();
        for (const char* text : {"Graph All", "Watch All", "Graph All", "Watch All"})
            QTest::mouseClick(panel.box(text), Qt::LeftButton);
        return processorSeconds() - start;
    });
    QVERIFY2(growth < mostLinearGrowth, qPrintable(QString::number(growth)));
}

REGISTER_TEST(TestWidgetCommands, QApplication)
#include "tst_widget_commands.moc"
