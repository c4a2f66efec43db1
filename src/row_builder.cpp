// SPDX-License-Identifier: MIT
#include "row_builder.h"

#include "color_button.h"
#include "key_row.h"
#include "key_tree.h"
#include "latin1.h"

namespace {

/// Not when its window is being deleted: that leaves the order of the key Tab, then hides, which
/// may bring the table a last layout, and a new button would look for its place in that order.
bool takesButtons(const QWidget& widget)
{
    return widget.window()->nextInFocusChain() != nullptr;
}

} // namespace

Widget::Rows RowBuilder::build(const Model& model)
{
    fTree.setSortingEnabled(false);
    Widget::Rows rows = xAddRows(model);
    fTree.setSortingEnabled(true);
    // Only now: buttons of rows that do not move any more cost less.
    xInstallButtons();
    for (const int column : {Widget::fColName, Widget::fColType, Widget::fColValue,
                             Widget::fColWatch, Widget::fColGraph, Widget::fColColor})
        fTree.resizeColumnToContents(column);
    return rows;
}

/// Makes all rows before the table gets any: it looks at them once.
Widget::Rows RowBuilder::xAddRows(const Model& model)
{
    Widget::Rows rows;
    QList<QTreeWidgetItem*> items;
    rows.reserve(static_cast<int>(model.fSTMVals.size()));
    items.reserve(rows.capacity());
    for (const boost::shared_ptr<STMVal>& value : model.fSTMVals) {
        items.append(xNewRow(*value));
        rows.append({value, items.last()});
    }
    fTree.addTopLevelItems(items);
    return rows;
}

QTreeWidgetItem* RowBuilder::xNewRow(STMVal& value)
{
    auto* item = new KeyRow(value.color);
    item->setFlags(Qt::ItemIsUserCheckable | Qt::ItemIsEnabled);
    item->setText(Widget::fColName, fromLatin1(value.names.second));
    item->setText(Widget::fColType, fromLatin1(value.type));
    item->setText(Widget::fColValue, fromLatin1(value.value));
    item->setCheckState(Widget::fColWatch, value.watch ? Qt::Checked : Qt::Unchecked);
    item->setCheckState(Widget::fColGraph, value.graph ? Qt::Checked : Qt::Unchecked);
    return item;
}

void RowBuilder::xInstallButtons()
{
    QWidget* viewport = fTree.viewport();
    fTree.installButtons(Widget::fColColor, [viewport](QTreeWidgetItem& item) -> QWidget* {
        const auto* row = dynamic_cast<KeyRow*>(&item);
        return row && takesButtons(*viewport) ? new ColorButton(row->color(), viewport) : nullptr;
    });
}
