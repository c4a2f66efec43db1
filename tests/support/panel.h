// SPDX-License-Identifier: MIT
#pragma once

#include "color_button.h"
#include "graph.h"
#include "module.h"
#include "support/fake_memory.h"
#include "support/patience.h"
#include "widget.h"

#include <QCheckBox>
#include <QComboBox>
#include <QPushButton>
#include <QTreeWidget>
#include <QtTest>

#include <boost/make_shared.hpp>

#include <memory>

/// A panel on a robot's memory that the test controls, or on another, and its parts as a user knows
/// them.
class Panel
{
public:
    Panel() : Panel(nullptr) {}
    /// On `proxy`; null: on `memory`.
    explicit Panel(const boost::shared_ptr<ZoMemoryProxy>& proxy)
    {
        module = boost::make_shared<Module>(proxy ? proxy : memory.proxy());
        widget = std::make_unique<Widget>(module, QString(), nullptr);
        module->fGCInterface = widget.get();
    }

    /// Adds a key called by its alias with "Key/" in front.
    STMVal& add(const std::string& alias)
    {
        module->addSTMVal("Key/" + alias, alias);
        return *module->fModel->fSTMVals.back();
    }

    /// Shows the rows of all keys. The graph is paused: it would drop keys that are no numbers.
    void show()
    {
        graph()->setPlay(false);
        widget->resetTree();
        widget->show();
        QVERIFY(QTest::qWaitForWindowExposed(widget.get(), patience));
    }

    QTreeWidget* tree() const { return widget->findChild<QTreeWidget*>(); }
    Graph* graph() const { return widget->findChild<Graph*>(); }
    QComboBox* subscriptionBox() const { return widget->findChild<QComboBox*>(); }

    QTreeWidgetItem* row(const QString& alias) const
    {
        return tree()->findItems(alias, Qt::MatchExactly, Widget::fColName).value(0);
    }

    QCheckBox* box(const QString& text) const
    {
        for (QCheckBox* box : widget->findChildren<QCheckBox*>())
            if (box->text() == text)
                return box;
        return nullptr;
    }

    QPushButton* button(const QString& toolTip) const
    {
        for (QPushButton* button : widget->findChildren<QPushButton*>())
            if (button->toolTip() == toolTip)
                return button;
        return nullptr;
    }

    QTimer* dataTimer() const { return timer(true); }
    QTimer* treeTimer() const { return timer(false); }

    /// Where the check box of a cell stands in the table's viewport, once scrolled to.
    QPoint boxPlace(int row, int column) const
    {
        QTreeWidget* table = tree();
        const QModelIndex index = table->model()->index(row, column);
        table->scrollTo(index);
        QStyleOptionViewItem option;
        option.initFrom(table);
        option.rect = table->visualRect(index);
        option.features = QStyleOptionViewItem::HasCheckIndicator;
        const QStyle* style = table->style();
        return style->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &option, table)
            .center();
    }
    QPoint boxPlace(const QString& alias, int column) const
    {
        return boxPlace(tree()->indexOfTopLevelItem(row(alias)), column);
    }

    /// One click of the mouse on a cell, at its check box if it has one.
    void click(const QString& alias, int column) const
    {
        QPoint place = boxPlace(alias, column);
        if (column != Widget::fColWatch && column != Widget::fColGraph) {
            QTreeWidget* table = tree();
            const int y = table->visualItemRect(row(alias)).center().y();
            place = {table->columnViewportPosition(column) + table->columnWidth(column) / 2, y};
        }
        QTest::mouseClick(tree()->viewport(), Qt::LeftButton, Qt::NoModifier, place);
    }

    FakeMemory memory;
    boost::shared_ptr<Module> module;
    std::unique_ptr<Widget> widget;

private:
    QTimer* timer(bool singleShot) const
    {
        for (QTimer* timer : widget->findChildren<QTimer*>(QString(), Qt::FindDirectChildrenOnly))
            if (timer->isSingleShot() == singleShot)
                return timer;
        return nullptr;
    }
};
