#include "graph_config.h"
#include "support/guarded_test.h"
#include "support/panel.h"

#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPointer>
#include <QSplitter>
#include <QtTest>

namespace {

const char sentinel[] = "vieux flan rabougri";

/// Calls one of the panel's slots as a timer would.
void call(Widget& widget, const char* slot)
{
    QVERIFY(QMetaObject::invokeMethod(&widget, slot));
}

QStringList slotsOf(const QMetaObject& meta)
{
    QStringList signatures;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        signatures += QString("%1 %2").arg(QString(method.methodSignature()),
                                           QString(method.parameterNames().join(',')));
    }
    return signatures;
}

QStringList textsOf(const QTreeWidget& tree, int column)
{
    QStringList texts;
    for (int i = 0; i < tree.topLevelItemCount(); ++i)
        texts += tree.topLevelItem(i)->text(column);
    return texts;
}

} // namespace

class WidgetTest : public GuardedTest
{
    Q_OBJECT

private slots:
    void slotsStandInTheirOrderWithTheirParameterNames();
    void constantsHaveTheirValues();
    void newPanelIsWholeAndEmpty();
    void layoutIsTableLeftAndGraphRight();
    void subscriptionBoxOffersTwoModesAndAsksForNoPeriod();
    void timersRunWithTheirPeriods();
    void aNewPanelSetsTheModulesModeAndKeepsItsPeriod();
    void panelWithoutModuleIsWholeAndIdle();
    void panelOfAModuleWithoutModelIsWholeAndIdle();
    void rowsShowAliasFlagsTypeValueAndColour();
    void rowsAreEnabledAndCheckableAndNothingElse();
    void bytesOfTextsAreShownAsLatin1();
    void graphedKeysArePlottedInTheirColourAfterAReset();
    void resetReplacesRowsButtonsAndCurves();
    void emptyModelGivesAnEmptyTableWithColumnsAsWideAsTheirHeaders();
    void columnsFitTheirContentsAfterAReset();
    void resetKeepsTheSortColumn();
    void twoAnnouncementsGiveOnePass();
    void aPassRewritesTypeAndValueOfEveryRow();
    void aPassWritesEachNameTwiceAndOnlyThat();
    void aPassPutsRowsIntoTheOrderOfTheSortColumn();
    void tickWithoutNewsWritesNothing();
    void rowsOutliveTheirKeysInTheModel();
    void nameUpdateOfNoRowDoesNothing();
    void nameUpdatesOfManySortedRowsAreQuick();
    void watchedKeysAreFetchedOneAfterTheOther();
    void refreshButtonFetchesEveryKey();
    void afterADisconnectionNothingIsFetchedButTheTableTicks();
    void clickOnARowDoesNotSelectIt();
    void tenThousandRowsAreBuiltWrittenAndSorted();
    void hundredThousandRowsOpenScrollRefreshAndClose();
    void panelCanBeMadeSmall();
    void panelCanBeClosedWhileValuesArrive();
};

void WidgetTest::slotsStandInTheirOrderWithTheirParameterNames()
{
    QCOMPARE(slotsOf(Widget::staticMetaObject),
             (QStringList{"xRefreshTree() ", "xOnRefresh() ", "xOnRefreshAll() ",
                          "xOnChangeSubscription(int) pIndex",
                          "xOnItemClicked(QTreeWidgetItem*,int) pItem,pColumn",
                          "xUselessNameUpdate(QTreeWidgetItem*) pItem", "xSaveConfig() ",
                          "xLoadConfig() ", "xOnWatchAll(int) pCheckState",
                          "xOnGraphAll(int) pCheckState"}));
}

void WidgetTest::constantsHaveTheirValues()
{
    QCOMPARE(Widget::fRefreshInterval, 100);
    QCOMPARE(int(Widget::fDefaultInterval), 150);
    QCOMPARE(Widget::fRefreshImg, QString("buttons/refresh.png"));
    QCOMPARE(Widget::fOpenImg, QString("buttons/open.png"));
    QCOMPARE(Widget::fSaveImg, QString("buttons/save.png"));
    QCOMPARE(Widget::fFileExtension, QString("xml"));
}

void WidgetTest::newPanelIsWholeAndEmpty()
{
    Panel panel;
    panel.add("a");
    QCOMPARE(panel.widget->size(), QSize(800, 400));
    QTreeWidget* tree = panel.tree();
    QCOMPARE(tree->topLevelItemCount(), 0);
    QStringList labels;
    for (int i = 0; i < tree->columnCount(); ++i)
        labels += tree->headerItem()->text(i);
    QCOMPARE(labels, (QStringList{"Name", "Watch", "Graph", "Type", "Value", "Color"}));
    QCOMPARE(tree->columnWidth(Widget::fColName), 300);
    QVERIFY(tree->isSortingEnabled());
    QCOMPARE(tree->selectionMode(), QAbstractItemView::ExtendedSelection);
    for (const char* text : {"Watch All", "Graph All"}) {
        QCOMPARE(panel.box(text)->checkState(), Qt::Unchecked);
        QVERIFY(!panel.box(text)->isTristate());
    }
    QVERIFY(panel.button("Refresh All")->text().isEmpty());
    for (const char* toolTip : {"Save", "Open"}) {
        QCOMPARE(panel.button(toolTip)->size(), QSize(20, 20));
        QVERIFY(panel.button(toolTip)->isFlat() && panel.button(toolTip)->text().isEmpty());
    }
}

void WidgetTest::layoutIsTableLeftAndGraphRight()
{
    Panel panel;
    auto* splitter = panel.widget->findChild<QSplitter*>();
    QCOMPARE(splitter->orientation(), Qt::Horizontal);
    QCOMPARE(splitter->count(), 2);
    QVERIFY(splitter->widget(0)->isAncestorOf(panel.tree()));
    QVERIFY(splitter->widget(1)->isAncestorOf(panel.graph()));
    auto* left = qobject_cast<QGridLayout*>(splitter->widget(0)->layout());
    auto* right = qobject_cast<QGridLayout*>(splitter->widget(1)->layout());
    QCOMPARE(left->itemAtPosition(0, 0)->widget(), panel.tree());
    QVERIFY(left->itemAtPosition(1, 0)->layout() && left->itemAtPosition(2, 0)->layout());
    QCOMPARE(right->itemAtPosition(0, 0)->widget(), panel.graph());
    QVERIFY(qobject_cast<GraphConfig*>(right->itemAtPosition(1, 0)->widget()));
    QCOMPARE(right->rowStretch(0), 1);
    QStringList labels;
    for (const QLabel* label : splitter->widget(0)->findChildren<QLabel*>())
        labels += label->text();
    QCOMPARE(labels, (QStringList{"Subscription Mode:", "Save/Merge config:"}));
}

void WidgetTest::subscriptionBoxOffersTwoModesAndAsksForNoPeriod()
{
    Panel panel;
    const QComboBox* box = panel.subscriptionBox();
    QCOMPARE(box->count(), 2);
    QCOMPARE(box->itemText(0), QString("Every <nb> ms"));
    QCOMPARE(box->itemText(1), QString("No subcription"));
    QCOMPARE(box->currentIndex(), 0);
    QVERIFY(!QApplication::activeModalWidget());
}

void WidgetTest::timersRunWithTheirPeriods()
{
    Panel panel;
    QVERIFY(panel.treeTimer()->isActive() && panel.dataTimer()->isActive());
    QCOMPARE(panel.treeTimer()->interval(), 100);
    QCOMPARE(panel.dataTimer()->interval(), 100);
}

void WidgetTest::aNewPanelSetsTheModulesModeAndKeepsItsPeriod()
{
    FakeMemory memory;
    const auto module = boost::make_shared<Module>(memory.proxy());
    module->fModel->setTimePolicy(450);
    const Widget widget(module, QString(), nullptr);
    QCOMPARE(module->fModel->fSubscribeMode, Model::SUBSCRIBE_EVERY);
    QCOMPARE(module->fModel->fTimePolicy, 450);
    QList<int> intervals;
    for (const QTimer* timer : widget.findChildren<QTimer*>(QString(), Qt::FindDirectChildrenOnly))
        intervals += timer->interval();
    QVERIFY(intervals.contains(450));
}

void WidgetTest::panelWithoutModuleIsWholeAndIdle()
{
    Widget widget(boost::shared_ptr<Module>(), QString(), nullptr);
    widget.show();
    QVERIFY(QTest::qWaitForWindowExposed(&widget));
    widget.resetTree();
    widget.refreshTree();
    for (const char* slot :
         {"xRefreshTree", "xOnRefresh", "xOnRefreshAll", "xSaveConfig", "xLoadConfig"})
        call(widget, slot);
    auto* box = widget.findChild<QComboBox*>();
    box->setCurrentIndex(1);
    box->setCurrentIndex(0);
    for (QCheckBox* check : widget.findChildren<QCheckBox*>())
        check->click();
    QVERIFY(!QApplication::activeModalWidget());
    QCOMPARE(widget.findChild<QTreeWidget*>()->topLevelItemCount(), 0);
    // Not started again, since there was nothing to fetch from.
    const auto isFetching = [&widget] {
        for (const QTimer* timer : widget.findChildren<QTimer*>())
            if (timer->isSingleShot() && timer->interval() == 100 && timer->isActive())
                return true;
        return false;
    };
    QTRY_VERIFY(!isFetching());
}

void WidgetTest::panelOfAModuleWithoutModelIsWholeAndIdle()
{
    FakeMemory memory;
    const auto module = boost::make_shared<Module>(memory.proxy());
    module->fModel.reset();
    Widget widget(module, QString(), nullptr);
    widget.show();
    QVERIFY(QTest::qWaitForWindowExposed(&widget));
    widget.resetTree();
    QCOMPARE(widget.findChild<QTreeWidget*>()->topLevelItemCount(), 0);
}

void WidgetTest::rowsShowAliasFlagsTypeValueAndColour()
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
    QTRY_VERIFY(button->isVisible());
    const QColor shown = button->icon().pixmap(16).toImage().pixelColor(8, 8);
    QCOMPARE(shown, QColor(value.color.red, value.color.green, value.color.blue));
}

void WidgetTest::rowsAreEnabledAndCheckableAndNothingElse()
{
    Panel panel;
    panel.add("a");
    panel.show();
    QCOMPARE(panel.row("a")->flags(), Qt::ItemIsUserCheckable | Qt::ItemIsEnabled);
}

void WidgetTest::bytesOfTextsAreShownAsLatin1()
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

void WidgetTest::graphedKeysArePlottedInTheirColourAfterAReset()
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

void WidgetTest::resetReplacesRowsButtonsAndCurves()
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
    QTRY_VERIFY(!button);
}

void WidgetTest::emptyModelGivesAnEmptyTableWithColumnsAsWideAsTheirHeaders()
{
    Panel panel;
    panel.show();
    QCOMPARE(panel.tree()->topLevelItemCount(), 0);
    QVERIFY(panel.graph()->fSeries.isEmpty());
    const QHeaderView* header = panel.tree()->header();
    for (int column = 0; column < 5; ++column)
        QCOMPARE(panel.tree()->columnWidth(column), header->sectionSizeHint(column));
}

void WidgetTest::columnsFitTheirContentsAfterAReset()
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

void WidgetTest::resetKeepsTheSortColumn()
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

void WidgetTest::twoAnnouncementsGiveOnePass()
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
    QTRY_VERIFY(ticks.size() >= 3);
    QCOMPARE(writes.size(), 2);
}

void WidgetTest::aPassRewritesTypeAndValueOfEveryRow()
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

void WidgetTest::aPassWritesEachNameTwiceAndOnlyThat()
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

void WidgetTest::aPassPutsRowsIntoTheOrderOfTheSortColumn()
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

void WidgetTest::tickWithoutNewsWritesNothing()
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

void WidgetTest::rowsOutliveTheirKeysInTheModel()
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

void WidgetTest::nameUpdateOfNoRowDoesNothing()
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

void WidgetTest::nameUpdatesOfManySortedRowsAreQuick()
{
    Panel panel;
    for (int i = 0; i < 10000; ++i)
        panel.add(std::to_string(i * 7919 % 10000));
    panel.show();
    const QStringList before = textsOf(*panel.tree(), Widget::fColName);
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < 10000; ++i)
        QMetaObject::invokeMethod(panel.widget.get(), "xUselessNameUpdate",
                                  Q_ARG(QTreeWidgetItem*, panel.tree()->topLevelItem(i)));
    QVERIFY2(timer.elapsed() < 5000, qPrintable(QString::number(timer.elapsed())));
    QCOMPARE(textsOf(*panel.tree(), Widget::fColName), before);
}

void WidgetTest::watchedKeysAreFetchedOneAfterTheOther()
{
    Panel panel;
    panel.add("a").watch = true;
    panel.add("b");
    panel.show();
    bool isScheduled = false;
    panel.memory.answer = [&](const ZoValue& request) {
        isScheduled = isScheduled || panel.dataTimer()->isActive();
        return FakeMemory::echo(request);
    };
    QTRY_VERIFY(panel.memory.calls.size() >= 3);
    QVERIFY(!isScheduled);
    for (const auto& call : panel.memory.calls)
        QCOMPARE(call.second.getSize(), 1);
    QTRY_COMPARE(panel.row("a")->text(Widget::fColValue), QString("Key/a"));
    QCOMPARE(panel.row("b")->text(Widget::fColValue), QString());
}

void WidgetTest::refreshButtonFetchesEveryKey()
{
    Panel panel;
    panel.add("a");
    panel.add("b");
    panel.show();
    panel.dataTimer()->stop();
    QTest::mouseClick(panel.button("Refresh All"), Qt::LeftButton);
    QCOMPARE(panel.memory.calls.size(), std::size_t(1));
    QVERIFY(!panel.dataTimer()->isActive());
    QTRY_COMPARE(panel.row("a")->text(Widget::fColValue), QString("Key/a"));
    QCOMPARE(panel.row("b")->text(Widget::fColValue), QString("Key/b"));
}

void WidgetTest::afterADisconnectionNothingIsFetchedButTheTableTicks()
{
    Panel panel;
    STMVal& value = panel.add("a");
    value.watch = true;
    panel.show();
    QTRY_VERIFY(!panel.memory.calls.empty());
    emit panel.widget->disconnected(nullptr);
    const std::size_t calls = panel.memory.calls.size();
    QVERIFY(!panel.dataTimer()->isActive());
    value.value = "later";
    panel.widget->refreshTree();
    QTRY_COMPARE(panel.row("a")->text(Widget::fColValue), QString("later"));
    QSignalSpy ticks(panel.treeTimer(), &QTimer::timeout);
    QTRY_VERIFY(ticks.size() >= 3);
    QCOMPARE(panel.memory.calls.size(), calls);
}

void WidgetTest::clickOnARowDoesNotSelectIt()
{
    Panel panel;
    panel.add("a");
    panel.show();
    panel.click("a", Widget::fColName);
    QVERIFY(panel.tree()->selectedItems().isEmpty());
}

void WidgetTest::tenThousandRowsAreBuiltWrittenAndSorted()
{
    Panel panel;
    for (int i = 0; i < 10000; ++i)
        panel.add("key" + std::to_string(100000 + i * 7919 % 10000));
    QElapsedTimer timer;
    timer.start();
    panel.show();
    for (const auto& value : panel.module->fModel->fSTMVals)
        value->value = value->names.second;
    panel.tree()->sortByColumn(Widget::fColValue, Qt::AscendingOrder);
    panel.widget->refreshTree();
    call(*panel.widget, "xRefreshTree");
    QVERIFY2(timer.elapsed() < 20000, qPrintable(QString::number(timer.elapsed())));
    for (const int row : {0, 5000, 9999}) {
        QTreeWidgetItem* item = panel.tree()->topLevelItem(row);
        QCOMPARE(item->text(Widget::fColValue), QString("key%1").arg(100000 + row));
        panel.tree()->scrollToItem(item);
        QTRY_VERIFY(panel.tree()->itemWidget(item, Widget::fColColor));
    }
}

void WidgetTest::hundredThousandRowsOpenScrollRefreshAndClose()
{
    Panel panel;
    for (int i = 0; i < 100000; ++i)
        panel.add("key" + std::to_string(i));
    panel.show();
    QTreeWidget* tree = panel.tree();
    for (const int row : {50000, 99999, 0, 75000}) {
        QTreeWidgetItem* item = tree->topLevelItem(row);
        tree->scrollToItem(item);
        QTRY_VERIFY(tree->itemWidget(item, Widget::fColColor));
        QTRY_VERIFY(tree->itemWidget(item, Widget::fColColor)->isVisible());
        QVERIFY(!panel.widget->grab().isNull());
    }
    panel.module->fModel->fSTMVals.back()->value = "new";
    panel.widget->refreshTree();
    QTRY_COMPARE(panel.row("key99999")->text(Widget::fColValue), QString("new"));
    QVERIFY(panel.widget->close());
}

void WidgetTest::panelCanBeMadeSmall()
{
    Panel panel;
    for (int i = 0; i < 100; ++i)
        panel.add("key" + std::to_string(i)).graph = true;
    panel.show();
    auto* splitter = panel.widget->findChild<QSplitter*>();
    for (const QList<int>& sizes : {QList<int>{0, 1}, QList<int>{1, 0}, QList<int>{1, 1}}) {
        splitter->setSizes(sizes);
        panel.widget->resize(0, 0);
        panel.widget->refreshTree();
        call(*panel.widget, "xRefreshTree");
        panel.widget->resize(800, 400);
        QVERIFY(!panel.widget->grab().isNull());
    }
    panel.tree()->resize(0, 0);
    panel.widget->resetTree();
    QCOMPARE(panel.tree()->topLevelItemCount(), 100);
}

void WidgetTest::panelCanBeClosedWhileValuesArrive()
{
    Panel panel;
    panel.add("a").watch = true;
    panel.show();
    QTRY_VERIFY(!panel.memory.calls.empty());
    const QPointer<QTimer> fetching = panel.dataTimer();
    QVERIFY(panel.widget->close());
    panel.widget.reset();
    QVERIFY(!fetching);
}

QTEST_MAIN(WidgetTest)
#include "tst_widget.moc"
