// SPDX-License-Identifier: MIT
#include "key_tree.h"

#include "cell_delegate.h"

#include <QKeyEvent>
#include <QStyle>

#include <algorithm>
#include <utility>

KeyTree::KeyTree(QWidget* parent) : QTreeWidget(parent)
{
    setItemDelegate(new CellDelegate(this));
    setUniformRowHeights(true);
    // Nothing can be selected; but this has Left and Right go from cell to cell.
    setSelectionBehavior(SelectItems);
}

void KeyTree::installButtons(int column, ButtonMaker maker)
{
    fButtons.install(column, std::move(maker));
}

void KeyTree::leaveRoom(int column, const QString& text)
{
    fRooms[column] = text;
}

int KeyTree::sizeHintForColumn(int column) const
{
    const int hint = QTreeWidget::sizeHintForColumn(column);
    if (hint < 0 || !fRooms.contains(column)) // < 0: this column has no rows to tell it
        return hint;
    const int margins = 2 * (style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, this) + 1);
    return std::max(hint, fontMetrics().horizontalAdvance(fRooms[column]) + margins);
}

void KeyTree::dataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight,
                          const QVector<int>& roles)
{
    if (!fButtons.isAtWork() && !fWrites.takes(topLeft, bottomRight))
        QTreeWidget::dataChanged(topLeft, bottomRight, roles);
}

void KeyTree::reset()
{
    fButtons.deleteAll();
    QTreeWidget::reset();
}

/// A button is no higher than a line of text: those that come into sight need no layout.
void KeyTree::doItemsLayout()
{
    if (fButtons.isAtWork())
        return;
    QTreeWidget::doItemsLayout();
    fButtons.place();
}

/// Comes in the midst of other work, such as for each row that goes, when looking for the rows in
/// sight would force a layout. The base class searches the place of every widget in the table.
void KeyTree::updateEditorGeometries()
{
    fButtons.placeSoon();
}

void KeyTree::scrollContentsBy(int dx, int dy)
{
    QTreeWidget::scrollContentsBy(dx, dy);
    fButtons.place();
}

void KeyTree::keyPressEvent(QKeyEvent* event)
{
    fKeys.answer(*event, [this, event] { QTreeWidget::keyPressEvent(event); });
}
