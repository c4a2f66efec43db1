#include "row_ranks.h"

#include "key_row.h"

#include <QTreeWidget>

#include <algorithm>

namespace {

struct Entry
{
    quint64 head; ///< first four characters of the text: most comparisons end here
    const QString* text;
    KeyRow* row;
};

quint64 headOf(const QString& text)
{
    quint64 head = 0;
    for (int i = 0; i < 4; ++i)
        head = head << 16 | (i < text.size() ? text.at(i).unicode() : 0);
    return head;
}

bool isLess(const Entry& one, const Entry& other)
{
    return one.head != other.head ? one.head < other.head : *one.text < *other.text;
}

QVector<Entry> entriesOf(const QTreeWidget& tree)
{
    QVector<Entry> entries;
    const int count = tree.topLevelItemCount();
    const int column = tree.sortColumn();
    entries.reserve(count);
    for (int i = 0; i < count; ++i) {
        if (auto* row = dynamic_cast<KeyRow*>(tree.topLevelItem(i))) {
            const QString& text = row->cellText(column);
            entries.append({headOf(text), &text, row});
        }
    }
    return entries;
}

} // namespace

RowRanks::RowRanks(const QTreeWidget& tree)
{
    QVector<Entry> entries = entriesOf(tree);
    std::sort(entries.begin(), entries.end(), isLess);
    fRows.reserve(entries.size());
    int rank = 0;
    for (int i = 0; i < entries.size(); ++i) {
        if (i > 0 && isLess(entries.at(i - 1), entries.at(i)))
            ++rank;
        entries.at(i).row->setRank(rank);
        fRows.append(entries.at(i).row);
    }
}

RowRanks::~RowRanks()
{
    for (KeyRow* row : qAsConst(fRows))
        row->setRank(-1);
}
