// SPDX-License-Identifier: MIT
#include "key_row.h"

#include <QSignalBlocker>
#include <QTreeWidget>

#include <typeinfo>

namespace {

bool isTextRole(int role)
{
    return role == Qt::DisplayRole || role == Qt::EditRole;
}

/// Ordered as the texts are, but for those that begin with the same characters.
quint64 headOf(const QString& text)
{
    quint64 head = 0;
    for (int i = 0; i < 4; ++i)
        head = head << 16 | (i < text.size() ? text.at(i).unicode() : 0);
    return head;
}

/// The base class counts the columns that it holds something of: nothing, in a role that only
/// headers have, will do.
constexpr int columnMark = Qt::InitialSortOrderRole;

/// Copies share what it holds.
const QTreeWidgetItem& blankRow()
{
    static const QTreeWidgetItem* const blank = [] {
        auto* item = new QTreeWidgetItem;
        item->setData(KeyRow::fColumns - 1, columnMark, QVariant());
        return item;
    }();
    return *blank;
}

QAbstractItemModel* modelOf(const QTreeWidgetItem& item)
{
    const QTreeWidget* tree = item.treeWidget();
    return tree ? tree->model() : nullptr;
}

} // namespace

KeyRow::KeyRow(Color& color) : QTreeWidgetItem(blankRow()), fColor(color) {}

QTreeWidgetItem* KeyRow::clone() const
{
    auto* copy = new KeyRow(*this);
    for (int i = 0; i < childCount(); ++i)
        copy->addChild(child(i)->clone());
    return copy;
}

const KeyRow::Cell& KeyRow::xCell(int column) const
{
    static const Cell empty;
    return column >= 0 && column < fCells.size() ? fCells[column] : empty;
}

KeyRow::Cell& KeyRow::xMakeCell(int column)
{
    if (column >= columnCount()) {
        const QSignalBlocker quiet(modelOf(*this));
        QTreeWidgetItem::setData(column, columnMark, QVariant());
    }
    if (column >= fCells.size())
        fCells.resize(column + 1);
    return fCells[column];
}

bool KeyRow::xHolds(int column, int role) const
{
    const Cell& cell = xCell(column);
    return isTextRole(role) ? !cell.text.isNull() : role == Qt::CheckStateRole && cell.check >= 0;
}

QVariant KeyRow::data(int column, int role) const
{
    if (!xHolds(column, role))
        return QTreeWidgetItem::data(column, role);
    const Cell& cell = fCells[column];
    return isTextRole(role) ? QVariant(cell.text) : QVariant(cell.check);
}

void KeyRow::setData(int column, int role, const QVariant& value)
{
    if (column < 0)
        return;
    const bool isText = isTextRole(role) && value.userType() == QMetaType::QString;
    const bool isCheck =
        role == Qt::CheckStateRole && value.userType() == QMetaType::Int && value.toInt() >= 0;
    // What the base class holds once, it goes on to hold.
    if (!(isText || isCheck) ||
        (!xHolds(column, role) && QTreeWidgetItem::data(column, role).isValid()))
        xSetOther(column, role, value);
    else if (isCheck)
        xSetCheck(column, value.toInt());
    else
        xSetText(column, value.toString());
}

void KeyRow::xSetText(int column, const QString& text)
{
    static const QVector<int> roles{Qt::DisplayRole, Qt::EditRole};
    Cell& cell = xMakeCell(column);
    if (!cell.text.isNull() && cell.text == text)
        return;
    cell.text = text.isNull() ? QString("") : text;
    cell.head = headOf(text);
    xAnnounce(column, roles);
}

void KeyRow::xSetCheck(int column, int check)
{
    static const QVector<int> roles{Qt::CheckStateRole};
    Cell& cell = xMakeCell(column);
    if (cell.check == check)
        return;
    cell.check = check;
    xAnnounce(column, roles);
}

/// The base class takes over what the row held, and so knows whether anything changes.
void KeyRow::xSetOther(int column, int role, const QVariant& value)
{
    if (xHolds(column, role)) {
        const QSignalBlocker quiet(modelOf(*this));
        QTreeWidgetItem::setData(column, role, data(column, role));
        if (isTextRole(role))
            fCells[column].text = QString();
        else
            fCells[column].check = -1;
    }
    QTreeWidgetItem::setData(column, role, value);
}

bool KeyRow::operator<(const QTreeWidgetItem& other) const
{
    if (typeid(other) != typeid(KeyRow))
        return QTreeWidgetItem::operator<(other);
    const QTreeWidget* tree = treeWidget();
    const int column = tree ? tree->sortColumn() : 0;
    const Cell& mine = xCell(column);
    const Cell& theirs = static_cast<const KeyRow&>(other).xCell(column);
    if (mine.text.isNull() || theirs.text.isNull())
        return QTreeWidgetItem::operator<(other);
    return mine.head != theirs.head ? mine.head < theirs.head : mine.text < theirs.text;
}

/// The base class holds all of it from now on.
void KeyRow::read(QDataStream& in)
{
    fCells.clear();
    QTreeWidgetItem::read(in);
}

/// As plain items do, so that each can read what the other wrote.
void KeyRow::write(QDataStream& out) const
{
    QTreeWidgetItem plain(*this);
    for (int column = 0; column < fCells.size(); ++column) {
        for (const int role : {Qt::DisplayRole, Qt::CheckStateRole}) {
            const QVariant value = data(column, role);
            if (value.isValid())
                plain.setData(column, role, value);
        }
    }
    plain.write(out);
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
