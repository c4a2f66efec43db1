// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

class QKeyEvent;
class QTreeWidget;

/// Lets the keyboard do in the current cell of a table what the mouse does there: press its button,
/// tick its check box.
class CellKeys
{
public:
    explicit CellKeys(QTreeWidget& tree) : fTree(tree) {}

    /// Answers a pressed key, if it is none of these by `otherwise`, which is what the view does.
    void answer(const QKeyEvent& event, const std::function<void()>& otherwise);

private:
    bool xPressButton(const QKeyEvent& event);

    QTreeWidget& fTree;
};
