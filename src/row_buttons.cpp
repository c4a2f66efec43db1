// SPDX-License-Identifier: MIT
#include "row_buttons.h"

#include <QApplication>
#include <QScopedValueRollback>
#include <QStyle>
#include <QTreeWidget>

#include <utility>

namespace {

/// A button that changes its parent is searched among the children of the old one.
constexpr int placesInDrawer = 64;

QRect placeInCell(const QRect& cell, const QWidget& widget)
{
    const QSize size = cell.size().boundedTo(widget.maximumSize());
    return QStyle::alignedRect(widget.layoutDirection(), Qt::AlignLeft | Qt::AlignVCenter,
                               size.expandedTo(widget.minimumSize()), cell);
}

/// For who cannot see it. Only once it comes into sight: thousands of names would slow down the
/// making of a table.
void callLikeItsRow(QWidget* button, const QModelIndex& cell)
{
    if (button && button->accessibleName().isNull())
        button->setAccessibleName(cell.siblingAtColumn(0).data().toString());
}

} // namespace

RowButtons::RowButtons(QTreeWidget& tree) : fTree(tree), fDrawers(new QWidget(&tree))
{
    fDrawers->hide();
    fPlaceTimer.setSingleShot(true);
    QObject::connect(&fPlaceTimer, &QTimer::timeout, &tree, [this] { place(); });
}

void RowButtons::install(int column, Maker maker)
{
    fColumn = column;
    fMaker = std::move(maker);
    // In a hidden viewport a button costs a third of what showing and hiding it costs.
    fTree.viewport()->hide();
    {
        const QScopedValueRollback<bool> atWork(fIsAtWork, true);
        const int rows = qMin(fTree.topLevelItemCount(), fLimit);
        for (int row = 0; row < rows; ++row)
            xButton(fTree.model()->index(row, column));
    }
    fTree.viewport()->show();
}

/// The button of a cell, made if there is none.
QWidget* RowButtons::xButton(const QModelIndex& cell)
{
    QWidget* button = fTree.indexWidget(cell);
    if (button)
        return button;
    button = fMaker(*fTree.topLevelItem(cell.row()));
    if (button) {
        fTree.setIndexWidget(cell, button);
        xPutIntoDrawer(*button);
    }
    return button;
}

void RowButtons::deleteAll()
{
    if (fTree.viewport()->isAncestorOf(QApplication::focusWidget()))
        fTree.setFocus();
    // The view would have them go in any order, and each be searched among those left.
    for (const QPointer<QWidget>& button : std::as_const(fShown))
        if (button)
            button->deleteLater();
    for (QObject* drawer : fDrawers->children()) {
        for (QObject* button : drawer->children())
            button->deleteLater();
        drawer->deleteLater();
    }
    fShown.clear();
    fFreePlaces.clear();
}

void RowButtons::place()
{
    if (fIsAtWork || fColumn < 0)
        return;
    fPlaceTimer.stop();
    const QModelIndexList cells = xCellsInSight();
    const QScopedValueRollback<bool> atWork(fIsAtWork, true);
    QVector<QPointer<QWidget>> before;
    before.swap(fShown);
    for (const QModelIndex& cell : cells) {
        fShown += xButton(cell);
        callLikeItsRow(fShown.last(), cell);
    }
    for (const QPointer<QWidget>& button : std::as_const(before))
        if (button && !fShown.contains(button))
            xPutAway(*button);
    xShow(cells);
}

QModelIndexList RowButtons::xCellsInSight() const
{
    QModelIndexList cells;
    QModelIndex cell = fTree.indexAt({fTree.columnViewportPosition(fColumn), 0});
    if (fTree.isColumnHidden(fColumn) || !cell.isValid())
        return cells;
    const QRect first = fTree.visualRect(cell);
    for (int top = first.top(); cell.isValid() && top < fTree.viewport()->height();
         top += first.height()) {
        cells += cell;
        cell = fTree.indexBelow(cell).siblingAtColumn(fColumn);
    }
    return cells;
}

/// Tab goes down the rows, whatever the order in which their buttons were made.
void RowButtons::xShow(const QModelIndexList& cells)
{
    QRect place = cells.isEmpty() ? QRect() : fTree.visualRect(cells.first());
    QWidget* above = &fTree;
    for (QWidget* button : std::as_const(fShown)) {
        if (button) {
            xTakeFromDrawer(*button);
            button->setGeometry(placeInCell(place, *button));
            button->show();
            QWidget::setTabOrder(above, button);
            above = button;
        }
        place.translate(0, place.height());
    }
}

void RowButtons::xPutAway(QWidget& button)
{
    if (button.hasFocus())
        fTree.setFocus();
    xPutIntoDrawer(button);
}

void RowButtons::xPutIntoDrawer(QWidget& button)
{
    if (fFreePlaces.isEmpty())
        fFreePlaces.fill(new QWidget(fDrawers), placesInDrawer);
    button.setParent(fFreePlaces.takeLast());
}

void RowButtons::xTakeFromDrawer(QWidget& button)
{
    QWidget* drawer = button.parentWidget();
    if (!drawer || drawer->parent() != fDrawers)
        return;
    button.setParent(fTree.viewport());
    fFreePlaces += drawer;
}
