#include "key_tree.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QStyle>
#include <QStyledItemDelegate>

namespace {

/// Draws and measures every text as one line: a robot may send a thousand of them.
class OneLineDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QString displayText(const QVariant& value, const QLocale& locale) const override
    {
        return QStyledItemDelegate::displayText(value, locale).replace(QChar::LineSeparator, ' ');
    }
};

QRect placeInCell(const QRect& cell, const QWidget& widget)
{
    const QSize size = cell.size().boundedTo(widget.maximumSize());
    return QStyle::alignedRect(widget.layoutDirection(), Qt::AlignLeft | Qt::AlignVCenter,
                               size.expandedTo(widget.minimumSize()), cell);
}

} // namespace

KeyTree::KeyTree(QWidget* parent) : QTreeWidget(parent)
{
    setItemDelegate(new OneLineDelegate(this));
    setUniformRowHeights(true);
    fPlaceTimer.setSingleShot(true);
    connect(&fPlaceTimer, &QTimer::timeout, this, &KeyTree::xPlaceWidgetsInSight);
}

/// The view's part of a change, which would search for the row: a batch does it once for all.
void KeyTree::dataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight,
                          const QVector<int>& roles)
{
    if (fInstalling)
        return;
    if (fBatches == 0) {
        QTreeWidget::dataChanged(topLeft, bottomRight, roles);
        return;
    }
    if (topLeft.column() > fSortColumn || bottomRight.column() < fSortColumn)
        return;
    const bool isFirst = fTouched.first > fTouched.last;
    fTouched.first = isFirst ? topLeft.row() : qMin(fTouched.first, topLeft.row());
    fTouched.last = isFirst ? bottomRight.row() : qMax(fTouched.last, bottomRight.row());
}

/// Without a sort column the base class leaves a written row where it is. Nobody hears of it:
/// the column is back before the event loop runs.
void KeyTree::xBeginBatch()
{
    if (fBatches++ > 0)
        return;
    fSortColumn = header()->sortIndicatorSection();
    fTouched = {0, -1};
    const QSignalBlocker quiet(header());
    header()->setSortIndicator(-1, header()->sortIndicatorOrder());
}

void KeyTree::xEndBatch()
{
    if (--fBatches > 0)
        return;
    {
        const QSignalBlocker quiet(header());
        header()->setSortIndicator(fSortColumn, header()->sortIndicatorOrder());
    }
    if (isSortingEnabled() && fSortColumn >= 0 && !xIsTouchedPartSorted())
        xSortRows();
    xTellAccessibility();
    viewport()->update();
}

/// Rows outside of the touched ones were in order before, so only these can have broken it.
bool KeyTree::xIsTouchedPartSorted() const
{
    const bool ascending = header()->sortIndicatorOrder() == Qt::AscendingOrder;
    const int last = qMin(fTouched.last + 1, topLevelItemCount() - 1);
    for (int i = qMax(fTouched.first, 1); i <= last; ++i) {
        const QTreeWidgetItem& above = *topLevelItem(i - 1);
        const QTreeWidgetItem& below = *topLevelItem(i);
        if (ascending ? below < above : above < below)
            return false;
    }
    return true;
}

void KeyTree::xSortRows()
{
    sortItems(header()->sortIndicatorSection(), header()->sortIndicatorOrder());
}

void KeyTree::xTellAccessibility()
{
    if (!QAccessible::isActive())
        return;
    QAccessibleTableModelChangeEvent event(this, QAccessibleTableModelChangeEvent::DataChanged);
    QAccessible::updateAccessibility(&event);
}

void KeyTree::installButtons(int column, ButtonMaker maker)
{
    fButtonColumn = column;
    fMaker = std::move(maker);
    const QScopedValueRollback<bool> installing(fInstalling, true);
    scheduleDelayedItemsLayout();
    // In a hidden viewport a button costs a third of what showing and hiding it costs.
    viewport()->hide();
    const int rows = qMin(topLevelItemCount(), fButtonLimit);
    for (int row = 0; row < rows; ++row)
        xInstallButton(model()->index(row, column));
    viewport()->show();
}

/// Each new button asks for a layout, unless one is pending: so those that the coming layout is
/// likely to bring in sight are made before it.
void KeyTree::xInstallButtonsAhead()
{
    if (fButtonColumn < 0 || fInstalling || verticalScrollMode() != ScrollPerItem)
        return;
    const QScopedValueRollback<bool> installing(fInstalling, true);
    scheduleDelayedItemsLayout();
    const int first = verticalScrollBar()->value();
    const int count = viewport()->height() / fontMetrics().height() + 1;
    const int last = qMin(first + count, topLevelItemCount() - 1);
    for (int row = first; row <= last; ++row)
        xInstallButton(model()->index(row, fButtonColumn));
}

void KeyTree::xInstallButton(const QModelIndex& index)
{
    QTreeWidgetItem* item = itemFromIndex(index);
    if (!item || indexWidget(index))
        return;
    if (QWidget* button = fMaker(*item)) {
        setIndexWidget(index, button);
        button->hide();
    }
}

/// Deletes all widgets of cells. The focus stays in the table if one of them had it.
void KeyTree::reset()
{
    if (viewport()->isAncestorOf(QApplication::focusWidget()))
        setFocus();
    // The base class would have them go in any order, and each be searched among those left.
    for (QObject* child : viewport()->children())
        if (child->isWidgetType() && !static_cast<QWidget*>(child)->isWindow())
            child->deleteLater();
    QTreeWidget::reset();
}

void KeyTree::doItemsLayout()
{
    xInstallButtonsAhead();
    QTreeWidget::doItemsLayout();
    xPlaceWidgetsInSight();
}

/// Comes in the midst of other work, such as for each row that goes, when looking for the rows in
/// sight would force a layout.
void KeyTree::updateEditorGeometries()
{
    fPlaceTimer.start(0);
}

void KeyTree::scrollContentsBy(int dx, int dy)
{
    QTreeWidget::scrollContentsBy(dx, dy);
    xPlaceWidgetsInSight();
}

/// The base class searches the place of every widget in the table at every layout.
void KeyTree::xPlaceWidgetsInSight()
{
    if (fInstalling)
        return;
    fPlaceTimer.stop();
    const QScopedValueRollback<bool> installing(fInstalling, true);
    const QModelIndexList rows = xRowsInSight();
    // Each new button asks for a layout: all of them before the first question for a place.
    if (fButtonColumn >= 0)
        for (const QModelIndex& row : rows)
            xInstallButton(row.sibling(row.row(), fButtonColumn));
    executeDelayedItemsLayout();
    QVector<QWidget*> placed;
    for (const QModelIndex& row : rows)
        xPlaceWidgetsOf(row, placed);
    xHideAllBut(placed);
}

QModelIndexList KeyTree::xRowsInSight() const
{
    QModelIndexList rows;
    const int left = columnViewportPosition(header()->logicalIndex(0));
    QModelIndex row = indexAt({left, 0});
    while (row.isValid() && visualRect(row).top() < viewport()->height()) {
        rows += row;
        row = indexBelow(row);
    }
    return rows;
}

/// Tab goes down the rows, whatever the order in which their buttons were made.
void KeyTree::xPlaceWidgetsOf(const QModelIndex& row, QVector<QWidget*>& placed)
{
    for (int column = 0; column < columnCount(); ++column) {
        const QModelIndex cell = row.sibling(row.row(), column);
        QWidget* widget = indexWidget(cell);
        const QRect rect = widget ? visualRect(cell) : QRect();
        if (!rect.isValid())
            continue;
        widget->setGeometry(placeInCell(rect, *widget));
        widget->show();
        setTabOrder(placed.isEmpty() ? this : placed.last(), widget);
        placed += widget;
    }
}

void KeyTree::xHideAllBut(const QVector<QWidget*>& placed)
{
    const QObjectList& children = viewport()->children();
    for (QObject* child : children) {
        auto* widget = child->isWidgetType() ? static_cast<QWidget*>(child) : nullptr;
        if (!widget || widget->isHidden() || widget->isWindow() || placed.contains(widget))
            continue;
        if (widget->hasFocus())
            setFocus();
        widget->hide();
    }
}

/// Left and Right go from cell to cell: the rows are flat, there is nothing to fold.
QModelIndex KeyTree::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers)
{
    if (action != MoveLeft && action != MoveRight)
        return QTreeWidget::moveCursor(action, modifiers);
    const QModelIndex current = currentIndex();
    const int step = (action == MoveRight) == isLeftToRight() ? 1 : -1;
    int column = header()->visualIndex(current.column()) + step;
    while (isColumnHidden(header()->logicalIndex(column)))
        column += step;
    const QModelIndex next = current.sibling(current.row(), header()->logicalIndex(column));
    return next.isValid() ? next : current;
}

/// A check box or button of the current cell answers the keyboard as it answers the mouse.
void KeyTree::keyPressEvent(QKeyEvent* event)
{
    const QPersistentModelIndex cell = currentIndex();
    auto* button = qobject_cast<QAbstractButton*>(indexWidget(cell));
    const bool presses = event->key() == Qt::Key_Space || event->key() == Qt::Key_Select ||
                         event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (button && presses) {
        scrollTo(cell);
        // Not now: a click may delete this tree.
        QMetaObject::invokeMethod(button, "click", Qt::QueuedConnection);
        return;
    }
    const QVariant before = cell.data(Qt::CheckStateRole);
    QTreeWidget::keyPressEvent(event);
    if (cell.data(Qt::CheckStateRole) != before)
        emit itemClicked(itemFromIndex(cell), cell.column());
}
