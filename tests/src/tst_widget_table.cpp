// SPDX-License-Identifier: MIT
#include "support/growth.h"
#include "support/guarded_test.h"
#include "support/lock_state.h"
#include "support/panel.h"
#include "support/patience.h"
#include "support/register_test.h"

#include <QHeaderView>
#include <QPointer>
#include <QtTest>

#include <optional>

namespace {

const char sentinel[] = "vieux flan rabougri";

/// Calls one of the panel's slots as a timer would.
void call(Widget& widget, const char* slot)
{
    QVERIFY(QMetaObject::invokeMethod(&widget, slot));
}

QStringList textsOf(const QTreeWidget& tree, int column)
{
    QStringList texts;
    for (int i = 0; i < tree.topLevelItemCount(); ++i)
        texts += tree.topLevelItem(i)->text(column);
    return texts;
}

} // namespace

class TestWidgetTable : public GuardedTest
{
    Q_OBJECT

private slots:
    void rowsShowAliasFlagsTypeValueAndColour();
    void rowsAreEnabledAndCheckableAndNothingElse();
    void bytesOfTextsAreShownAsLatin1();
    void graphedKeysArePlottedInTheirColourAfterAReset();
    void resetReplacesRowsButtonsAndCurves();
    void emptyModelGivesAnEmptyTableWithColumnsAsWideAsTheirHeaders();
    void columnsFitTheirContentsAfterAReset();
    void aRebuildHoldsTheModelForReadingToItsEnd();
    void colourButtonsAreCalledLikeTheirKeys();
    void resetKeepsTheSortColumn();
    void twoAnnouncementsGiveOnePass();
    void aPassRewritesTypeAndValueOfEveryRow();
    void aPassWritesEachNameTwiceAndOnlyThat();
    void aPassPutsRowsIntoTheOrderOfTheSortColumn();
    void tickWithoutNewsWritesNothing();
    void rowsOutliveTheirKeysInTheModel();
    void nameUpdateOfNoRowDoesNothing();
    void nameUpdatesOfManySortedRowsAreLinear();
    void clickOnARowDoesNotSelectIt();
    void tenThousandRowsAreBuiltWrittenAndSorted();
    void buildingWritingAndSortingAreLinear();
    void hundredThousandRowsOpenScrollRefreshAndClose();
    void panelMayBeDeletedWhileALayoutIsPending();
};

void TestWidgetTable::rowsShowAliasFlagsTypeValueAndColour()
{
    Panel panel;
    STMVal& value = panel.add("Arm/Elbow");
    value.type = "float";
    value.value = "0.5";
    value.watch = true;
    panel.add("plain");
    panel.show();
    QCOMPARE(panel.tree()->topLevelItemCount(), 2);
    const QTreeWidgetItem* row = panel.row("Arm/Elbow");
    QCOMPARE(row->type(), 0);
    QVERIFY(!row->parent());
    QCOMPARE(row->text(Widget::fColType), QString("float"));
    QCOMPARE(row->text(Widget::fColValue), QString("0.5"));
    QCOMPARE(row->data(Widget::fColWatch, Qt::CheckStateRole).toInt(), int(Qt::Checked));
    QCOMPARE(row->data(Widget::fColGraph, Qt::CheckStateRole).toInt(), int(Qt::Unchecked));
    QCOMPARE(panel.row("plain")->checkState(Widget::fColWatch), Qt::Unchecked);
    auto* button = qobject_cast<ColorButton*>(
        panel.tree()->itemWidget(panel.row("Arm/Elbow"), Widget::fColColor));
    QVERIFY(button);
    TRY_VERIFY(button->isVisible());
    const QColor shown = button->icon().pixmap(16).toImage().pixelColor(8, 8);
    QCOMPARE(shown, QColor(value.color.red, value.color.green, value.color.blue));
}

void TestWidgetTable::rowsAreEnabledAndCheckableAndNothingElse()
{
    Panel panel;
    panel.add("a");
    panel.show();
    QCOMPARE(panel.row("a")->flags(), Qt::ItemIsUserCheckable | Qt::ItemIsEnabled);
}

void TestWidgetTable::bytesOfTextsAreShownAsLatin1()
{
    Panel panel;
    STMVal& value = panel.add("caf\xe9");
    value.value = std::string("a\0\xfc", 3);
    panel.show();
    const QTreeWidgetItem* row = panel.tree()->topLevelItem(0);
    QCOMPARE(row->text(Widget::fColName), QString("caf") + QChar(0xe9));
    QCOMPARE(row->text(Widget::fColValue), QString("a") + QChar(0) + QChar(0xfc));
    panel.click(row->text(Widget::fColName), Widget::fColWatch);
    QVERIFY(value.watch);
}

void TestWidgetTable::graphedKeysArePlottedInTheirColourAfterAReset()
{
    Panel panel;
    panel.add("a");
    STMVal& value = panel.add("b");
    value.watch = value.graph = true;
    value.type = "int";
    value.value = "3";
    panel.show();
    QCOMPARE(panel.graph()->fSeries.keys(), QStringList{"b"});
    QCOMPARE(panel.graph()->fSeries["b"].first, &value.color);
    QCOMPARE(panel.row("b")->checkState(Widget::fColGraph), Qt::Checked);
}

void TestWidgetTable::resetReplacesRowsButtonsAndCurves()
{
    Panel panel;
    panel.add("a").graph = true;
    panel.show();
    const QPointer<QWidget> button = panel.tree()->itemWidget(panel.row("a"), Widget::fColColor);
    panel.module->fModel->resetSTMVals();
    panel.add("b");
    panel.widget->resetTree();
    QCOMPARE(textsOf(*panel.tree(), Widget::fColName), QStringList{"b"});
    QVERIFY(panel.graph()->fSeries.isEmpty());
    TRY_VERIFY(!button);
}

void TestWidgetTable::emptyModelGivesAnEmptyTableWithColumnsAsWideAsTheirHeaders()
{
    Panel panel;
    panel.show();
    QCOMPARE(panel.tree()->topLevelItemCount(), 0);
    QVERIFY(panel.graph()->fSeries.isEmpty());
    const QHeaderView* header = panel.tree()->header();
    for (int column = 0; column < 5; ++column)
        QCOMPARE(panel.tree()->columnWidth(column), header->sectionSizeHint(column));
}

void TestWidgetTable::columnsFitTheirContentsAfterAReset()
{
    Panel panel;
    panel.add(std::string(80, 'm')).value = std::string(90, 'w');
    panel.show();
    const QFontMetrics metrics = panel.tree()->fontMetrics();
    QVERIFY(panel.tree()->columnWidth(Widget::fColName) >
            metrics.horizontalAdvance(QString(80, 'm')));
    QVERIFY(panel.tree()->columnWidth(Widget::fColValue) >
            metrics.horizontalAdvance(QString(90, 'w')));
}

void TestWidgetTable::aRebuildHoldsTheModelForReadingToItsEnd()
{
    Panel panel;
    panel.add("a");
    panel.show();
    panel.add(std::string(200, 'm')).value = std::string(200, 'w');
    const auto& mutex = panel.module->fModel->fMutex;
    std::optional<LockAttempt> change; // outlives the rebuild
    QList<bool> waits;
    bool couldRead = false;
    connect(panel.tree()->model(), &QAbstractItemModel::rowsInserted, [&] {
        couldRead = LockAttempt::with<ZoCriticalSectionRead>(mutex).succeeds();
        change.emplace(LockAttempt::with<ZoCriticalSectionWrite>(mutex));
        waits += change->waits();
    });
    connect(panel.tree()->header(), &QHeaderView::sectionResized, [&] {
        if (change)
            waits += change->waits();
    });
    panel.widget->resetTree();
    QVERIFY(couldRead);
    QVERIFY(change->succeeds());
    QVERIFY(waits.size() >= 3); // rows, and the widths of the columns of name and value
    QVERIFY(!waits.contains(false));
}

void TestWidgetTable::colourButtonsAreCalledLikeTheirKeys()
{
    Panel panel;
    panel.add("Arm/Elbow");
    for (int i = 0; i < 6000; ++i) // more than have their button from the start
        panel.add("key" + std::to_string(i));
    panel.add("caf\xe9");
    panel.show();
    const QString cafe = QString("caf") + QChar(0xe9);
    for (const QString& alias : {QString("Arm/Elbow"), cafe}) {
        QTreeWidgetItem* row = panel.row(alias);
        panel.tree()->scrollToItem(row);
        TRY_VERIFY(panel.tree()->itemWidget(row, Widget::fColColor));
        const QWidget* button = panel.tree()->itemWidget(row, Widget::fColColor);
        TRY_VERIFY(button->isVisible());
        QCOMPARE(button->accessibleName(), alias);
    }
}

void TestWidgetTable::resetKeepsTheSortColumn()
{
    Panel panel;
    const char* values[] = {"3", "1", "2"};
    for (const char* value : values)
        panel.add(std::string("key") + value).value = value;
    panel.show();
    QCOMPARE(textsOf(*panel.tree(), Widget::fColName), (QStringList{"key3", "key2", "key1"}));
    panel.tree()->sortByColumn(Widget::fColValue, Qt::AscendingOrder);
    panel.widget->resetTree();
    QCOMPARE(textsOf(*panel.tree(), Widget::fColValue), (QStringList{"1", "2", "3"}));
    QCOMPARE(panel.tree()->sortColumn(), int(Widget::fColValue));
}

void TestWidgetTable::twoAnnouncementsGiveOnePass()
{
    Panel panel;
    panel.add("a");
    panel.show();
    panel.dataTimer()->stop();
    QSignalSpy ticks(panel.treeTimer(), &QTimer::timeout);
    QSignalSpy writes(panel.tree()->model(), &QAbstractItemModel::dataChanged);
    panel.widget->refreshTree();
    panel.widget->refreshTree();
    QCOMPARE(writes.size(), 0);
    TRY_VERIFY(ticks.size() >= 3);
    QCOMPARE(writes.size(), 2);
}

void TestWidgetTable::aPassRewritesTypeAndValueOfEveryRow()
{
    Panel panel;
    STMVal& watched = panel.add("a");
    STMVal& other = panel.add("b");
    watched.watch = true;
    panel.show();
    watched.type = other.type = "int";
    watched.value = "1";
    other.value = "2";
    panel.widget->refreshTree();
    call(*panel.widget, "xRefreshTree");
    QCOMPARE(panel.row("a")->text(Widget::fColType), QString("int"));
    QCOMPARE(panel.row("a")->text(Widget::fColValue), QString("1"));
    QCOMPARE(panel.row("b")->text(Widget::fColType), QString("int"));
    QCOMPARE(panel.row("b")->text(Widget::fColValue), QString("2"));
}

void TestWidgetTable::aPassWritesEachNameTwiceAndOnlyThat()
{
    Panel panel;
    panel.add("a");
    panel.add("b");
    panel.show();
    panel.tree()->sortByColumn(Widget::fColName, Qt::AscendingOrder);
    QStringList seen;
    connect(panel.tree()->model(), &QAbstractItemModel::dataChanged,
            [&seen](const QModelIndex& first, const QModelIndex& last) {
                QCOMPARE(first, last);
                QCOMPARE(first.column(), int(Widget::fColName));
                seen += first.data().toString();
            });
    panel.widget->refreshTree();
    call(*panel.widget, "xRefreshTree");
    QCOMPARE(seen, (QStringList{sentinel, "a", sentinel, "b"}));
}

void TestWidgetTable::aPassPutsRowsIntoTheOrderOfTheSortColumn()
{
    Panel panel;
    STMVal& a = panel.add("a");
    STMVal& b = panel.add("b");
    panel.add("c").value = "5";
    panel.show();
    panel.tree()->sortByColumn(Widget::fColValue, Qt::AscendingOrder);
    for (const bool isUp : {true, false}) {
        a.value = isUp ? "1" : "9";
        b.value = isUp ? "9" : "1";
        panel.widget->refreshTree();
        call(*panel.widget, "xRefreshTree");
        QCOMPARE(textsOf(*panel.tree(), Widget::fColName),
                 isUp ? (QStringList{"a", "c", "b"}) : (QStringList{"b", "c", "a"}));
    }
}

void TestWidgetTable::tickWithoutNewsWritesNothing()
{
    Panel panel;
    STMVal& value = panel.add("a");
    panel.show();
    value.value = "new";
    QSignalSpy writes(panel.tree()->model(), &QAbstractItemModel::dataChanged);
    call(*panel.widget, "xRefreshTree");
    QCOMPARE(writes.size(), 0);
    QCOMPARE(panel.row("a")->text(Widget::fColValue), QString());
}

void TestWidgetTable::rowsOutliveTheirKeysInTheModel()
{
    Panel panel;
    panel.add("a").value = "kept";
    panel.show();
    panel.module->fModel->resetSTMVals();
    panel.widget->refreshTree();
    call(*panel.widget, "xRefreshTree");
    QCOMPARE(panel.row("a")->text(Widget::fColValue), QString("kept"));
    panel.click("a", Widget::fColGraph);
    QVERIFY(panel.graph()->fSeries["a"].first);
}

void TestWidgetTable::nameUpdateOfNoRowDoesNothing()
{
    Panel panel;
    panel.add("a");
    panel.show();
    QSignalSpy writes(panel.tree()->model(), &QAbstractItemModel::dataChanged);
    const auto update = [&panel](QTreeWidgetItem* item) {
        QVERIFY(QMetaObject::invokeMethod(panel.widget.get(), "xUselessNameUpdate",
                                          Q_ARG(QTreeWidgetItem*, item)));
    };
    update(nullptr);
    QCOMPARE(writes.size(), 0);
    update(panel.row("a"));
    QCOMPARE(writes.size(), 2);
    QCOMPARE(panel.row("a")->text(Widget::fColName), QString("a"));
}

void TestWidgetTable::nameUpdatesOfManySortedRowsAreLinear()
{
    const double growth = growthAtFourTimes(2000, [](int rows) {
        Panel panel;
        for (int i = 0; i < rows; ++i)
            panel.add(std::to_string(i * 7919 % rows));
        panel.show();
        const QStringList before = textsOf(*panel.tree(), Widget::fColName);
        const double start = processorSeconds();
        for (int i = 0; i < rows; ++i)
            QMetaObject::invokeMethod(panel.widget.get(), "xUselessNameUpdate",
                                      Q_ARG(QTreeWidgetItem*, panel.tree()->topLevelItem(i)));
        const double seconds = processorSeconds() - start;
        return textsOf(*panel.tree(), Widget::fColName) == before ? seconds : qInf();
    });
    QVERIFY2(growth < mostLinearGrowth, qPrintable(QString::number(growth)));
}

void TestWidgetTable::clickOnARowDoesNotSelectIt()
{
    Panel panel;
    panel.add("a");
    panel.show();
    panel.click("a", Widget::fColName);
    QVERIFY(panel.tree()->selectedItems().isEmpty());
}

void TestWidgetTable::tenThousandRowsAreBuiltWrittenAndSorted()
{
    Panel panel;
    for (int i = 0; i < 10000; ++i)
        panel.add("key" + std::to_string(100000 + i * 7919 % 10000));
    panel.show();
    for (const auto& value : panel.module->fModel->fSTMVals)
        value->value = value->names.second;
    panel.tree()->sortByColumn(Widget::fColValue, Qt::AscendingOrder);
    panel.widget->refreshTree();
    call(*panel.widget, "xRefreshTree");
    for (const int row : {0, 5000, 9999}) {
        QTreeWidgetItem* item = panel.tree()->topLevelItem(row);
        QCOMPARE(item->text(Widget::fColValue), QString("key%1").arg(100000 + row));
        panel.tree()->scrollToItem(item);
        TRY_VERIFY(panel.tree()->itemWidget(item, Widget::fColColor));
    }
}

void TestWidgetTable::buildingWritingAndSortingAreLinear()
{
    const double growth = growthAtFourTimes(2000, [](int rows) {
        Panel panel;
        for (int i = 0; i < rows; ++i)
            panel.add("key" + std::to_string(i * 7919 % rows));
        panel.show();
        const double start = processorSeconds();
        panel.widget->resetTree();
        for (const auto& value : panel.module->fModel->fSTMVals)
            value->value = value->names.second;
        panel.tree()->sortByColumn(Widget::fColValue, Qt::AscendingOrder);
        panel.widget->refreshTree();
        call(*panel.widget, "xRefreshTree");
        return processorSeconds() - start;
    });
    QVERIFY2(growth < mostLinearGrowth, qPrintable(QString::number(growth)));
}

void TestWidgetTable::hundredThousandRowsOpenScrollRefreshAndClose()
{
    Panel panel;
    for (int i = 0; i < 100000; ++i)
        panel.add("key" + std::to_string(i));
    panel.show();
    QTreeWidget* tree = panel.tree();
    for (const int row : {50000, 99999, 0, 75000}) {
        QTreeWidgetItem* item = tree->topLevelItem(row);
        tree->scrollTo(tree->model()->index(row, Widget::fColColor));
        TRY_VERIFY(tree->itemWidget(item, Widget::fColColor));
        TRY_VERIFY(tree->itemWidget(item, Widget::fColColor)->isVisible());
        const QWidget* button = tree->itemWidget(item, Widget::fColColor);
        const auto index = item->text(Widget::fColName).mid(3).toUInt(); // "key123"
        const QImage picture = panel.widget->grab().toImage();
        const QPoint middle = button->mapTo(panel.widget.get(), button->rect().center());
        const Color& color = panel.module->fModel->fSTMVals[index]->color;
        QCOMPARE(picture.pixelColor(middle), QColor(color.red, color.green, color.blue));
    }
    panel.module->fModel->fSTMVals.back()->value = "new";
    panel.widget->refreshTree();
    TRY_COMPARE(panel.row("key99999")->text(Widget::fColValue), QString("new"));
    QVERIFY(panel.widget->close());
}

void TestWidgetTable::panelMayBeDeletedWhileALayoutIsPending()
{
    auto panel = std::make_unique<Panel>();
    for (int i = 0; i < 8000; ++i) // more than have their button from the start
        panel->add("key" + std::to_string(i)).value = std::to_string(100000 - i);
    panel->show();
    panel->widget->resetTree();
    panel->tree()->sortByColumn(Widget::fColValue, Qt::AscendingOrder);
    const QPointer<QTreeWidget> tree = panel->tree();
    panel.reset();
    QVERIFY(!tree);
}

REGISTER_TEST(TestWidgetTable, QApplication)
#include "tst_widget_table.moc"
