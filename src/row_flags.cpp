#include "row_flags.h"

#include "graph.h"
#include "latin1.h"
#include "module.h"

#include <QHash>
#include <QTreeWidgetItem>

#include <algorithm>

namespace {

std::string aliasOf(const QTreeWidgetItem& item)
{
    return toLatin1(item.text(Widget::fColName));
}

std::vector<std::string> aliasesOf(const QList<QTreeWidgetItem*>& items)
{
    std::vector<std::string> aliases;
    aliases.reserve(static_cast<std::size_t>(items.size()));
    for (const QTreeWidgetItem* item : items)
        aliases.push_back(aliasOf(*item));
    return aliases;
}

bool isChecked(const QTreeWidgetItem& item, int column)
{
    return item.data(column, Qt::CheckStateRole) == Qt::Checked;
}

/// A curve takes its colour from the record itself, which never is a constant one.
Color* colorOf(const boost::shared_ptr<const STMVal>& value)
{
    return value ? const_cast<Color*>(&value->color) : nullptr;
}

Color* colorOf(const Widget::Rows& rows, const QTreeWidgetItem& item)
{
    const auto row = std::find_if(rows.begin(), rows.end(),
                                  [&item](const auto& each) { return each.second == &item; });
    return row == rows.end() ? nullptr : colorOf(row->first);
}

QHash<const QTreeWidgetItem*, Color*> colorsOf(const Widget::Rows& rows)
{
    QHash<const QTreeWidgetItem*, Color*> colors;
    colors.reserve(rows.size());
    for (const auto& row : rows)
        colors.insert(row.second, colorOf(row.first));
    return colors;
}

} // namespace

void RowFlags::takeWatch(QTreeWidgetItem& item)
{
    const bool on = isChecked(item, Widget::fColWatch);
    fModule.watchStmVal(aliasOf(item), on);
    xShowWatched(item, on);
}

void RowFlags::takeGraph(QTreeWidgetItem& item)
{
    const bool on = isChecked(item, Widget::fColGraph);
    fModule.graphStmVal(aliasOf(item), on);
    xShowGraphed(item, on, on ? colorOf(fRows, item) : nullptr);
}

void RowFlags::takeWatch(const QList<QTreeWidgetItem*>& items, bool on)
{
    fModule.watchStmVals(aliasesOf(items), on);
    for (QTreeWidgetItem* item : items)
        xShowWatched(*item, on);
}

void RowFlags::takeGraph(const QList<QTreeWidgetItem*>& items, bool on)
{
    fModule.graphStmVals(aliasesOf(items), on);
    const auto colors = on ? colorsOf(fRows) : QHash<const QTreeWidgetItem*, Color*>();
    for (QTreeWidgetItem* item : items)
        xShowGraphed(*item, on, colors.value(item));
}

void RowFlags::xShowWatched(QTreeWidgetItem& item, bool on)
{
    if (on)
        return;
    if (fGraph)
        fGraph->deleteSTMValue(item.text(Widget::fColName));
    item.setCheckState(Widget::fColGraph, Qt::Unchecked);
}

void RowFlags::xShowGraphed(QTreeWidgetItem& item, bool on, Color* color)
{
    if (on)
        item.setCheckState(Widget::fColWatch, Qt::Checked);
    if (!fGraph)
        return;
    if (on)
        fGraph->addSTMValue(item.text(Widget::fColName), color);
    else
        fGraph->deleteSTMValue(item.text(Widget::fColName));
}
