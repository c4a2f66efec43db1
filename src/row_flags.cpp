// SPDX-License-Identifier: MIT
#include "row_flags.h"

#include "graph.h"
#include "latin1.h"
#include "module.h"

#include <QTreeWidgetItem>

#include <algorithm>
#include <functional>
#include <utility>

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

/// All colours, found by item. Rows are made one after the other, so they mostly stand in the order
/// of their addresses already, and a search among these costs less than a hash table.
class Colors
{
public:
    explicit Colors(const Widget::Rows& rows)
    {
        fByItem.reserve(static_cast<std::size_t>(rows.size()));
        for (const auto& row : rows)
            fByItem.emplace_back(row.second, colorOf(row.first));
        if (!std::is_sorted(fByItem.begin(), fByItem.end(), xIsBefore))
            std::sort(fByItem.begin(), fByItem.end(), xIsBefore);
    }

    Color* of(const QTreeWidgetItem* item) const
    {
        const Entry wanted(item, nullptr);
        const auto found = std::lower_bound(fByItem.begin(), fByItem.end(), wanted, xIsBefore);
        return found != fByItem.end() && found->first == item ? found->second : nullptr;
    }

private:
    using Entry = std::pair<const QTreeWidgetItem*, Color*>;

    /// A plain `<` has no say on pointers to objects apart.
    static bool xIsBefore(const Entry& one, const Entry& other)
    {
        return std::less<>()(one.first, other.first);
    }

    std::vector<Entry> fByItem;
};

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
    const Colors colors(on ? fRows : Widget::Rows());
    for (QTreeWidgetItem* item : items)
        xShowGraphed(*item, on, colors.of(item));
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
