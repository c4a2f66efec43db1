// SPDX-License-Identifier: MIT
#pragma once

#include <QAction>
#include <QKeySequence>
#include <QMenu>

/// A new entry at the end of `menu`, which owns it: `keys` and the mouse call `slot` of `receiver`.
/// The toolkit's own function for that has its arguments in another order in each of its versions.
template <class Receiver, class Slot>
QAction* addCommand(QMenu& menu, const QString& text, const QKeySequence& keys,
                    const Receiver* receiver, Slot slot)
{
    QAction* action = menu.addAction(text, receiver, slot);
    action->setShortcut(keys);
    return action;
}
