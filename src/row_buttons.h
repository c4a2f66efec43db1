// SPDX-License-Identifier: MIT
#pragma once

#include <QModelIndex>
#include <QPointer>
#include <QTimer>
#include <QVector>

#include <functional>

class QTreeWidget;
class QTreeWidgetItem;
class QWidget;

/// The buttons in one column of a flat table whose rows are all of one height. Those of rows in
/// sight are children of its viewport; the others wait in small drawers, so that scrolling and
/// painting do not meet them.
class RowButtons
{
public:
    /// Makes the button of a row. The table becomes its owner.
    using Maker = std::function<QWidget*(QTreeWidgetItem&)>;

    /// So many rows have their button from the start, the others once they came into sight.
    static constexpr int fLimit = 5000;

    explicit RowButtons(QTreeWidget& tree);
    RowButtons(const RowButtons&) = delete;
    RowButtons& operator=(const RowButtons&) = delete;

    void install(int column, Maker maker);
    /// Puts the buttons of the rows in sight into their cells, and the others away. A button
    /// without an accessible name gets the text of its row's first column.
    void place();
    void placeSoon() { fPlaceTimer.start(0); }
    /// Deletes all, later. The focus stays in the table if one of them had it.
    void deleteAll();

    /// While true, the view is asked for things that it would ask for each widget in a cell.
    bool isAtWork() const { return fIsAtWork; }

private:
    QModelIndexList xCellsInSight() const;
    QWidget* xButton(const QModelIndex& cell);
    void xShow(const QModelIndexList& cells);
    void xPutAway(QWidget& button);
    void xPutIntoDrawer(QWidget& button);
    void xTakeFromDrawer(QWidget& button);

    QTreeWidget& fTree;
    QWidget* fDrawers;             ///< parent of all drawers, a child of the table, never shown
    QVector<QWidget*> fFreePlaces; ///< a drawer stands here for each place free in it
    QTimer fPlaceTimer;
    Maker fMaker;
    int fColumn = -1;
    QVector<QPointer<QWidget>> fShown; ///< from top to bottom
    bool fIsAtWork = false;
};
