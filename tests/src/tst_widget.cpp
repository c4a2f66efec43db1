// SPDX-License-Identifier: MIT
#include "graph_config.h"
#include "support/guarded_test.h"
#include "support/modal_driver.h"
#include "support/panel.h"
#include "support/patience.h"
#include "support/register_test.h"

#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPointer>
#include <QSplitter>
#include <QTemporaryDir>
#include <QtTest>

namespace {

/// Calls one of the panel's slots as a timer would.
void call(Widget& widget, const char* slot)
{
    QVERIFY(QMetaObject::invokeMethod(&widget, slot));
}

/// What stands in a row of a layout, from the left: texts and tool tips, "|" for a stretch.
QStringList contentsOf(const QLayout* row)
{
    QStringList contents;
    for (int i = 0; row && i < row->count(); ++i) {
        const QWidget* widget = row->itemAt(i)->widget();
        if (row->itemAt(i)->spacerItem())
            contents += "|";
        else if (!widget)
            contents += "?";
        else if (!widget->toolTip().isEmpty())
            contents += widget->toolTip();
        else if (qobject_cast<const QComboBox*>(widget))
            contents += "<modes>";
        else
            contents += widget->property("text").toString();
    }
    return contents;
}

/// The colour in the middle of a button's icon.
QColor colorOf(const QPushButton& button)
{
    return button.icon().pixmap(16).toImage().pixelColor(8, 8);
}

} // namespace

class TestWidget : public GuardedTest
{
    Q_OBJECT

private slots:
    void constantsHaveTheirValues();
    void newPanelIsWholeAndEmpty();
    void newPanelShowsNoKeyUntilItIsReset();
    void layoutIsTableLeftAndGraphRight();
    void commandsStandInRowsBelowTheTable();
    void everyButtonHasItsOwnImage();
    void subscriptionBoxOffersTwoModesAndAsksForNoPeriod();
    void timersRunWithTheirPeriods();
    void aNewPanelSetsTheModulesModeAndKeepsItsPeriod();
    void panelWithoutModuleIsWholeAndIdle();
    void panelOfAModuleWithoutModelIsWholeAndIdle();
    void watchedKeysAreFetchedOneAfterTheOther();
    void refreshButtonFetchesEveryKey();
    void afterADisconnectionNothingIsFetchedButTheTableTicks();
    void panelCanBeMadeSmall();
    void panelCanBeClosedWhileValuesArrive();
};

void TestWidget::constantsHaveTheirValues()
{
    QCOMPARE(Widget::fRefreshInterval, 100);
    QCOMPARE(int(Widget::fDefaultInterval), 150);
    QCOMPARE(Widget::fRefreshImg, QString("buttons/refresh.png"));
    QCOMPARE(Widget::fOpenImg, QString("buttons/open.png"));
    QCOMPARE(Widget::fSaveImg, QString("buttons/save.png"));
    QCOMPARE(Widget::fFileExtension, QString("xml"));
}

void TestWidget::newPanelIsWholeAndEmpty()
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

void TestWidget::newPanelShowsNoKeyUntilItIsReset()
{
    FakeMemory memory;
    const auto module = boost::make_shared<Module>(memory.proxy());
    module->addSTMVal("k", "a");
    module->graphStmVal("a", true);
    Widget widget(module, QString(), nullptr);
    const auto* tree = widget.findChild<QTreeWidget*>();
    QCOMPARE(tree->topLevelItemCount(), 0);
    QVERIFY(widget.findChild<Graph*>()->fSeries.isEmpty());
    widget.resetTree();
    QCOMPARE(tree->topLevelItemCount(), 1);
    QCOMPARE(widget.findChild<Graph*>()->fSeries.keys(), QStringList{"a"});
    QVERIFY(memory.calls.empty());
}

void TestWidget::layoutIsTableLeftAndGraphRight()
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
    QCOMPARE(panel.widget->layout()->count(), 1);
    QCOMPARE(panel.widget->layout()->itemAt(0)->widget(), splitter);
    QVERIFY(qobject_cast<QVBoxLayout*>(panel.widget->layout()));
}

void TestWidget::commandsStandInRowsBelowTheTable()
{
    Panel panel;
    const auto* splitter = panel.widget->findChild<QSplitter*>();
    const auto* pane = qobject_cast<QGridLayout*>(splitter->widget(0)->layout());
    QCOMPARE(pane->rowCount(), 3);
    const auto* rows = qobject_cast<QVBoxLayout*>(pane->itemAtPosition(1, 0)->layout());
    QVERIFY(rows);
    QCOMPARE(rows->count(), 3);
    QCOMPARE(contentsOf(rows->itemAt(0)->layout()), (QStringList{"Watch All", "Graph All", "|"}));
    QCOMPARE(contentsOf(rows->itemAt(1)->layout()), (QStringList{"Refresh All", "|"}));
    QCOMPARE(contentsOf(rows->itemAt(2)->layout()),
             (QStringList{"Subscription Mode:", "<modes>", "|"}));
    QCOMPARE(contentsOf(pane->itemAtPosition(2, 0)->layout()),
             (QStringList{"Save/Merge config:", "Save", "Open", "|"}));
    const auto* label = qobject_cast<QLabel*>(rows->itemAt(2)->layout()->itemAt(0)->widget());
    QVERIFY(label);
    QCOMPARE(label->buddy(), panel.subscriptionBox());
}

void TestWidget::everyButtonHasItsOwnImage()
{
    const QTemporaryDir folder;
    const QMap<QString, QColor> colors{
        {"refresh", Qt::red}, {"save", Qt::green}, {"open", Qt::blue}};
    QVERIFY(QDir(folder.path()).mkdir("buttons"));
    for (auto color = colors.begin(); color != colors.end(); ++color) {
        QImage image(16, 16, QImage::Format_RGB32);
        image.fill(color.value());
        QVERIFY(image.save(folder.filePath("buttons/" + color.key() + ".png")));
    }
    const Widget widget(boost::shared_ptr<Module>(), folder.path() + '/', nullptr);
    QMap<QString, QColor> found;
    for (const QPushButton* button : widget.findChildren<QPushButton*>())
        if (!button->toolTip().isEmpty())
            found[button->toolTip()] = colorOf(*button);
    QCOMPARE(found.value("Refresh All"), colors["refresh"]);
    QCOMPARE(found.value("Save"), colors["save"]);
    QCOMPARE(found.value("Open"), colors["open"]);
}

void TestWidget::subscriptionBoxOffersTwoModesAndAsksForNoPeriod()
{
    const ModalDriver nobody;
    Panel panel;
    const QComboBox* box = panel.subscriptionBox();
    QCOMPARE(box->count(), 2);
    QCOMPARE(box->itemText(0), QString("Every <nb> ms"));
    QCOMPARE(box->itemText(1), QString("No subcription"));
    QCOMPARE(box->currentIndex(), 0);
    QVERIFY(!QApplication::activeModalWidget());
}

void TestWidget::timersRunWithTheirPeriods()
{
    Panel panel;
    QVERIFY(panel.treeTimer()->isActive() && panel.dataTimer()->isActive());
    QCOMPARE(panel.treeTimer()->interval(), 100);
    QCOMPARE(panel.dataTimer()->interval(), 100);
}

void TestWidget::aNewPanelSetsTheModulesModeAndKeepsItsPeriod()
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

void TestWidget::panelWithoutModuleIsWholeAndIdle()
{
    const ModalDriver nobody;
    Widget widget(boost::shared_ptr<Module>(), QString(), nullptr);
    widget.show();
    QVERIFY(QTest::qWaitForWindowExposed(&widget, patience));
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
    auto* tree = widget.findChild<QTreeWidget*>();
    QCOMPARE(tree->topLevelItemCount(), 0);
    auto* item = new QTreeWidgetItem(tree, {"stranger"});
    QSignalSpy writes(tree->model(), &QAbstractItemModel::dataChanged);
    for (int column = 0; column < tree->columnCount(); ++column)
        emit tree->itemClicked(item, column);
    QCOMPARE(writes.size(), 0);
    // Not started again, since there was nothing to fetch from.
    const auto isFetching = [&widget] {
        for (const QTimer* timer : widget.findChildren<QTimer*>())
            if (timer->isSingleShot() && timer->interval() == 100 && timer->isActive())
                return true;
        return false;
    };
    TRY_VERIFY(!isFetching());
}

void TestWidget::panelOfAModuleWithoutModelIsWholeAndIdle()
{
    FakeMemory memory;
    const auto module = boost::make_shared<Module>(memory.proxy());
    module->fModel.reset();
    Widget widget(module, QString(), nullptr);
    widget.show();
    QVERIFY(QTest::qWaitForWindowExposed(&widget, patience));
    widget.resetTree();
    QCOMPARE(widget.findChild<QTreeWidget*>()->topLevelItemCount(), 0);
}

void TestWidget::watchedKeysAreFetchedOneAfterTheOther()
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
    TRY_VERIFY(panel.memory.calls.size() >= 3);
    QVERIFY(!isScheduled);
    for (const auto& call : panel.memory.calls)
        QCOMPARE(call.second.getSize(), 1);
    TRY_COMPARE(panel.row("a")->text(Widget::fColValue), QString("Key/a"));
    QCOMPARE(panel.row("b")->text(Widget::fColValue), QString());
}

void TestWidget::refreshButtonFetchesEveryKey()
{
    Panel panel;
    panel.add("a");
    panel.add("b");
    panel.show();
    panel.dataTimer()->stop();
    QTest::mouseClick(panel.button("Refresh All"), Qt::LeftButton);
    QCOMPARE(panel.memory.calls.size(), std::size_t(1));
    QVERIFY(!panel.dataTimer()->isActive());
    TRY_COMPARE(panel.row("a")->text(Widget::fColValue), QString("Key/a"));
    QCOMPARE(panel.row("b")->text(Widget::fColValue), QString("Key/b"));
}

void TestWidget::afterADisconnectionNothingIsFetchedButTheTableTicks()
{
    Panel panel;
    STMVal& value = panel.add("a");
    value.watch = true;
    panel.show();
    TRY_VERIFY(!panel.memory.calls.empty());
    emit panel.widget->disconnected(nullptr);
    const std::size_t calls = panel.memory.calls.size();
    QVERIFY(!panel.dataTimer()->isActive());
    value.value = "later";
    panel.widget->refreshTree();
    TRY_COMPARE(panel.row("a")->text(Widget::fColValue), QString("later"));
    QSignalSpy ticks(panel.treeTimer(), &QTimer::timeout);
    TRY_VERIFY(ticks.size() >= 3);
    QCOMPARE(panel.memory.calls.size(), calls);
}

void TestWidget::panelCanBeMadeSmall()
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
        panel.widget->grab(); // paints all of it
        for (int part = 0; part < 2; ++part)
            QCOMPARE(splitter->sizes().at(part) > 0, sizes.at(part) > 0);
    }
    panel.tree()->resize(0, 0);
    panel.widget->resetTree();
    QCOMPARE(panel.tree()->topLevelItemCount(), 100);
}

void TestWidget::panelCanBeClosedWhileValuesArrive()
{
    Panel panel;
    panel.add("a").watch = true;
    panel.show();
    TRY_VERIFY(!panel.memory.calls.empty());
    const QPointer<QTimer> fetching = panel.dataTimer();
    QVERIFY(panel.widget->close());
    panel.widget.reset();
    QVERIFY(!fetching);
}

REGISTER_TEST(TestWidget, QApplication)
#include "tst_widget.moc"
