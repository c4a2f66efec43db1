// SPDX-License-Identifier: MIT
#include "windows/table_text.h"

#include "windows/columns_of.h"

#include <QApplication>
#include <QHeaderView>
#include <QListView>
#include <QTableView>
#include <QTreeView>

#include <functional>

namespace {

bool isShown(const QAbstractItemView& view, const QModelIndex& row)
{
    if (const auto* tree = qobject_cast<const QTreeView*>(&view))
        return !tree->isRowHidden(row.row(), row.parent());
    if (const auto* table = qobject_cast<const QTableView*>(&view))
        return !table->isRowHidden(row.row());
    const auto* list = qobject_cast<const QListView*>(&view);
    return !list || !list->isRowHidden(row.row());
}

/// Calls `visit` with each row, those below it after it.
void visitRows(const QAbstractItemView& view, const QModelIndex& parent,
               const std::function<void(const QModelIndex& row)>& visit)
{
    const auto* tree = qobject_cast<const QTreeView*>(&view);
    const int rows = view.model()->rowCount(parent);
    for (int i = 0; i < rows; ++i) {
        const QModelIndex row = view.model()->index(i, 0, parent);
        if (!isShown(view, row))
            continue;
        visit(row);
        if (tree && tree->isExpanded(row))
            visitRows(view, row, visit);
    }
}

bool isTable(const QAbstractItemView* view)
{
    return view && view->model() && view->isVisible() && !qobject_cast<const QHeaderView*>(view);
}

QString quoted(QString text)
{
    static const QString special = "\",\r\n";
    for (const QChar c : text)
        if (special.contains(c))
            return '"' + text.replace('"', "\"\"") + '"';
    return text;
}

} // namespace

QAbstractItemView* tableIn(const QWidget& panel)
{
    for (QWidget* widget = QApplication::focusWidget(); widget; widget = widget->parentWidget()) {
        auto* view = qobject_cast<QAbstractItemView*>(widget);
        if (isTable(view) && panel.isAncestorOf(view))
            return view;
    }
    QAbstractItemView* largest = nullptr;
    for (auto* view : panel.findChildren<QAbstractItemView*>()) {
        const bool isLarger =
            !largest || view->width() * view->height() > largest->width() * largest->height();
        if (isTable(view) && view->window() == panel.window() && isLarger)
            largest = view;
    }
    return largest;
}

QVector<int> shownColumns(const QAbstractItemView& view)
{
    const QHeaderView* header = columnsOf(view);
    if (!header)
        return {0};
    QVector<int> columns;
    for (int place = 0; place < header->count(); ++place)
        if (!header->isSectionHidden(header->logicalIndex(place)))
            columns += header->logicalIndex(place);
    return columns;
}

QString textOf(const QModelIndex& cell)
{
    QString text = cell.data(Qt::DisplayRole).toString();
    const QVariant ticked = cell.data(Qt::CheckStateRole);
    if (!text.isEmpty() || !ticked.isValid())
        return text;
    return ticked.toInt() == Qt::Unchecked ? "0" : "1";
}

QStringList rowTexts(const QAbstractItemView& view, const QModelIndex& row)
{
    QStringList texts;
    for (const int column : shownColumns(view))
        texts += textOf(row.sibling(row.row(), column));
    return texts;
}

QVector<QStringList> allTexts(const QAbstractItemView& view)
{
    QVector<QStringList> rows;
    const QVector<int> columns = shownColumns(view);
    if (columnsOf(view)) {
        QStringList heads;
        for (const int column : columns)
            heads += view.model()->headerData(column, Qt::Horizontal).toString();
        rows += heads;
    }
    visitRows(view, view.rootIndex(), [&](const QModelIndex& row) {
        QStringList texts;
        for (const int column : columns)
            texts += textOf(row.sibling(row.row(), column));
        rows += texts;
    });
    return rows;
}

QString tabbed(const QVector<QStringList>& rows)
{
    QStringList lines;
    for (QStringList cells : rows) {
        for (QString& cell : cells)
            for (const char end : {'\t', '\r', '\n'})
                cell.replace(end, ' ');
        lines += cells.join('\t');
    }
    return lines.join('\n');
}

QByteArray csv(const QVector<QStringList>& rows)
{
    QByteArray bytes;
    for (QStringList cells : rows) {
        for (QString& cell : cells)
            cell = quoted(cell);
        bytes += cells.join(',').toUtf8() + "\r\n";
    }
    return bytes;
}
