// SPDX-License-Identifier: MIT
#pragma once

#include "widget.h"

/// Brings the check boxes of the table's rows to where they take effect: into the module, to the
/// graph's curves, and to the other box of the row. What is graphed is watched, too; what is not
/// watched any more is not graphed either.
class RowFlags
{
public:
    /// All three must outlive this. Without a graph, only the curves are left out.
    RowFlags(Module& module, Graph* graph, const Widget::Rows& rows)
        : fModule(module), fGraph(graph), fRows(rows)
    {
    }

    /// Takes over the box of one row.
    void takeWatch(QTreeWidgetItem& item);
    void takeGraph(QTreeWidgetItem& item);

    /// The same for the boxes of many rows, which are all `on` or all off, at linear cost.
    void takeWatch(const QList<QTreeWidgetItem*>& items, bool on);
    void takeGraph(const QList<QTreeWidgetItem*>& items, bool on);

private:
    void xShowWatched(QTreeWidgetItem& item, bool on);
    void xShowGraphed(QTreeWidgetItem& item, bool on, Color* color);

    Module& fModule;
    Graph* fGraph;
    const Widget::Rows& fRows;
};
