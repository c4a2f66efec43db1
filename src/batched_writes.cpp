// SPDX-License-Identifier: MIT
#include "batched_writes.h"

#include <QAccessible>
#include <QHeaderView>
#include <QSignalBlocker>
#include <QTreeWidget>

/// Without a sort column the toolkit leaves a written row where it is. Nobody hears of it: the
/// column is back before the event loop runs.
void BatchedWrites::begin()
{
    if (fDepth++ > 0)
        return;
    QHeaderView* header = fTree.header();
    fSortColumn = header->sortIndicatorSection();
    fTouched = {0, -1};
    const QSignalBlocker quiet(header);
    header->setSortIndicator(-1, header->sortIndicatorOrder());
}

void BatchedWrites::end()
{
    if (--fDepth > 0)
        return;
    QHeaderView* header = fTree.header();
    const Qt::SortOrder order = header->sortIndicatorOrder();
    {
        const QSignalBlocker quiet(header);
        header->setSortIndicator(fSortColumn, order);
    }
    if (fTree.isSortingEnabled() && fSortColumn >= 0 && !xAreTouchedInOrder())
        fTree.sortItems(fSortColumn, order);
    xTellAccessibility();
    fTree.viewport()->update();
}

/// The view would search for the row of each cell; at the end it paints them all.
bool BatchedWrites::takes(const QModelIndex& topLeft, const QModelIndex& bottomRight)
{
    if (fDepth == 0)
        return false;
    if (topLeft.column() <= fSortColumn && bottomRight.column() >= fSortColumn) {
        const bool isFirst = fTouched.first > fTouched.last;
        fTouched.first = isFirst ? topLeft.row() : qMin(fTouched.first, topLeft.row());
        fTouched.last = isFirst ? bottomRight.row() : qMax(fTouched.last, bottomRight.row());
    }
    return true;
}

/// Rows outside of the touched ones were in order before, so only these can have broken it.
bool BatchedWrites::xAreTouchedInOrder() const
{
    const bool ascending = fTree.header()->sortIndicatorOrder() == Qt::AscendingOrder;
    const int last = qMin(fTouched.last + 1, fTree.topLevelItemCount() - 1);
    for (int i = qMax(fTouched.first, 1); i <= last; ++i) {
        const QTreeWidgetItem& above = *fTree.topLevelItem(i - 1);
        const QTreeWidgetItem& below = *fTree.topLevelItem(i);
        if (ascending ? below < above : above < below)
            return false;
    }
    return true;
}

void BatchedWrites::xTellAccessibility()
{
    if (!QAccessible::isActive())
        return;
    QAccessibleTableModelChangeEvent event(&fTree, QAccessibleTableModelChangeEvent::DataChanged);
    QAccessible::updateAccessibility(&event);
}
