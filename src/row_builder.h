// SPDX-License-Identifier: MIT
#pragma once

#include "widget.h"

/// Fills the panel's table with a row for each key.
class RowBuilder
{
public:
    explicit RowBuilder(KeyTree& tree) : fTree(tree) {}

    /// The rows of all records, in the model's order; the table, empty before, shows them in the
    /// order of its sort column. Hold the model's lock.
    Widget::Rows build(const Model& model);

private:
    static QTreeWidgetItem* xNewRow(STMVal& value);
    Widget::Rows xAddRows(const Model& model);
    void xInstallButtons();

    KeyTree& fTree;
};
