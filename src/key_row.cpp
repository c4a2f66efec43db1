#include "key_row.h"

#include <QTreeWidget>

#include <typeinfo>

KeyRow::KeyRow(Color& color) : fColor(color) {}

const KeyRow::Cell& KeyRow::xCell(int column) const
{
    static const Cell empty;
    return column >= 0 && column < fCells.size() ? fCells[column] : empty;
}

QVariant KeyRow::data(int column, int role) const
{
    const Cell& cell = xCell(column);
    if (role == Qt::DisplayRole || role == Qt::EditRole)
        return cell.text.isNull() ? QVariant() : QVariant(cell.text);
    if (role == Qt::CheckStateRole)
        return cell.check < 0 ? QVariant() : QVariant(cell.check);
    return QTreeWidgetItem::data(column, role);
}

void KeyRow::setData(int column, int role, const QVariant& value)
{
    static const QVector<int> textRoles{Qt::DisplayRole, Qt::EditRole};
    static const QVector<int> checkRoles{Qt::CheckStateRole};
    if (column < 0)
        return;
    if (column >= fCells.size())
        fCells.resize(column + 1);
    Cell& cell = fCells[column];
    if (role == Qt::DisplayRole || role == Qt::EditRole) {
        const QString text = value.toString();
        if (!cell.text.isNull() && cell.text == text)
            return;
        cell.text = text.isNull() ? QString("") : text;
        xAnnounce(column, textRoles);
    } else if (role == Qt::CheckStateRole) {
        const int check = value.isValid() ? value.toInt() : -1;
        if (cell.check == check)
            return;
        cell.check = check;
        xAnnounce(column, checkRoles);
    } else {
        QTreeWidgetItem::setData(column, role, value);
    }
}

bool KeyRow::operator<(const QTreeWidgetItem& other) const
{
    if (typeid(other) != typeid(KeyRow))
        return QTreeWidgetItem::operator<(other);
    const auto& row = static_cast<const KeyRow&>(other);
    if (fRank >= 0 && row.fRank >= 0)
        return fRank < row.fRank;
    const QTreeWidget* tree = treeWidget();
    const int column = tree ? tree->sortColumn() : 0;
    return xCell(column).text < row.xCell(column).text;
}

void KeyRow::xAnnounce(int column, const QVector<int>& roles)
{
    if (!xFindsItsRow()) {
        emitDataChanged();
        return;
    }
    QAbstractItemModel* model = treeWidget()->model();
    const QModelIndex index = model->index(fRow, column);
    emit model->dataChanged(index, index, roles);
}

/// Makes `fRow` true, if the row is one of a tree. The first row that finds its number stale
/// renumbers all, so that a pass over a table that was sorted meanwhile stays linear.
bool KeyRow::xFindsItsRow()
{
    const QTreeWidget* tree = treeWidget();
    if (!tree || parent())
        return false;
    if (tree->topLevelItem(fRow) == this)
        return true;
    const int rows = tree->topLevelItemCount();
    for (int i = 0; i < rows; ++i)
        if (auto* row = dynamic_cast<KeyRow*>(tree->topLevelItem(i)))
            row->fRow = i;
    return tree->topLevelItem(fRow) == this;
}
