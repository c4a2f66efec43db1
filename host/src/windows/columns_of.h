// SPDX-License-Identifier: MIT
#pragma once

#include <QHeaderView>
#include <QTableView>
#include <QTreeView>

/// What shows the columns of a table or tree; null for every other widget.
inline QHeaderView* columnsOf(const QWidget& widget)
{
    if (const auto* tree = qobject_cast<const QTreeView*>(&widget))
        return tree->header();
    if (const auto* table = qobject_cast<const QTableView*>(&widget))
        return table->horizontalHeader();
    return nullptr;
}
