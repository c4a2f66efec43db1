// SPDX-License-Identifier: MIT
#include "cell_keys.h"

#include <QAbstractButton>
#include <QKeyEvent>
#include <QTreeWidget>

void CellKeys::answer(const QKeyEvent& event, const std::function<void()>& otherwise)
{
    if (xPressButton(event))
        return;
    const QPersistentModelIndex cell = fTree.currentIndex();
    const QVariant before = cell.data(Qt::CheckStateRole);
    otherwise();
    if (cell.isValid() && cell.data(Qt::CheckStateRole) != before)
        emit fTree.itemClicked(fTree.topLevelItem(cell.row()), cell.column());
}

bool CellKeys::xPressButton(const QKeyEvent& event)
{
    const QPersistentModelIndex cell = fTree.currentIndex();
    auto* button = qobject_cast<QAbstractButton*>(fTree.indexWidget(cell));
    const bool presses = event.key() == Qt::Key_Space || event.key() == Qt::Key_Select ||
                         event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
    if (!button || !presses || fTree.isColumnHidden(cell.column()))
        return false;
    // A key that is held would answer the dialog that a button opens.
    if (event.isAutoRepeat())
        return true;
    fTree.scrollTo(cell);
    // Not now: a click may delete the table. Nor later, if the table was filled anew meanwhile.
    const auto click = [&tree = fTree, cell, button] {
        if (tree.indexWidget(cell) == button)
            button->click();
    };
    QMetaObject::invokeMethod(button, click, Qt::QueuedConnection);
    return true;
}
