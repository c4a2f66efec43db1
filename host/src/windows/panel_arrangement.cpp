// SPDX-License-Identifier: MIT
#include "windows/panel_arrangement.h"

#include <QHeaderView>
#include <QSplitter>
#include <QVector>

#include <algorithm>
#include <functional>
#include <optional>

namespace {

using Numbers = QVector<int>;

constexpr int mostParts = 1000;  ///< panes of a splitter, columns of a table
constexpr int largest = 1 << 20; ///< px

QString textOf(const Numbers& numbers)
{
    QStringList texts;
    for (const int number : numbers)
        texts += QString::number(number);
    return texts.join(',');
}

/// `count` numbers from `least` to `most`; nothing if `text` is anything else.
std::optional<Numbers> numbersOf(const QString& text, int count, int least, int most)
{
    const QStringList texts = text.split(',');
    if (texts.size() != count || count > mostParts)
        return std::nullopt;
    Numbers numbers;
    for (const QString& word : texts) {
        bool isNumber = false;
        numbers += word.toInt(&isNumber);
        if (!isNumber || numbers.last() < least || numbers.last() > most)
            return std::nullopt;
    }
    return numbers;
}

Numbers ofSections(const QHeaderView& header, int (QHeaderView::*value)(int) const)
{
    Numbers numbers;
    for (int i = 0; i < header.count(); ++i)
        numbers += (header.*value)(i);
    return numbers;
}

/// What stands in place of a table's widths where they are not known.
constexpr char noWidths[] = ";";

/// Widths by column; columns from left to right; the column sorted by, and in which direction.
QString textOf(const QHeaderView& header)
{
    const QStringList parts{
        textOf(ofSections(header, &QHeaderView::sectionSize)),
        textOf(ofSections(header, &QHeaderView::logicalIndex)),
        textOf({header.sortIndicatorSection(), static_cast<int>(header.sortIndicatorOrder())})};
    return parts.join(';');
}

void setWidths(QHeaderView& header, const Numbers& widths)
{
    for (int i = 0; i < widths.size(); ++i)
        if (widths.at(i) > 0 && !header.isSectionHidden(i))
            header.resizeSection(i, widths.at(i));
}

void setOrder(QHeaderView& header, const Numbers& columns)
{
    Numbers sorted = columns;
    std::sort(sorted.begin(), sorted.end());
    for (int i = 0; i < sorted.size(); ++i)
        if (sorted.at(i) != i)
            return;
    for (int place = 0; place < columns.size(); ++place)
        header.moveSection(header.visualIndex(columns.at(place)), place);
}

void setText(QHeaderView& header, const QString& text)
{
    const QStringList parts = text.split(';');
    if (parts.size() != 3)
        return;
    const int last = header.count() - 1;
    if (const auto widths = numbersOf(parts.at(0), header.count(), 0, largest))
        setWidths(header, *widths);
    if (const auto columns = numbersOf(parts.at(1), header.count(), 0, last))
        setOrder(header, *columns);
    const auto sorting = numbersOf(parts.at(2), 2, 0, last);
    if (sorting && header.isSortIndicatorShown())
        header.setSortIndicator(sorting->at(0),
                                sorting->at(1) ? Qt::DescendingOrder : Qt::AscendingOrder);
}

QString textOf(const QSplitter& splitter)
{
    return textOf(splitter.sizes().toVector());
}

void setText(QSplitter& splitter, const QString& text)
{
    const auto sizes = numbersOf(text, splitter.count(), 0, largest);
    if (sizes && std::any_of(sizes->begin(), sizes->end(), [](int size) { return size > 0; }))
        splitter.setSizes(sizes->toList());
}

/// Calls `visit` with each part and its place: kinds and numbers from the panel down, which are the
/// same each time a panel is made.
void visitParts(const QWidget& widget, const QString& place,
                const std::function<void(QWidget& part, const QString& place)>& visit)
{
    QMap<QString, int> counts;
    for (QObject* child : widget.children()) {
        auto* part = qobject_cast<QWidget*>(child);
        if (!part || part->isWindow())
            continue;
        const QString kind = part->metaObject()->className();
        const QString here = QString("%1 %2%3").arg(place, kind, QString::number(++counts[kind]));
        visit(*part, here);
        visitParts(*part, here, visit);
    }
}

QHeaderView* columnsOf(QWidget& part)
{
    auto* header = qobject_cast<QHeaderView*>(&part);
    return header && header->orientation() == Qt::Horizontal && header->count() > 0 ? header
                                                                                    : nullptr;
}

} // namespace

PanelArrangement arrangementOf(const QWidget& panel)
{
    PanelArrangement arrangement;
    visitParts(panel, {}, [&arrangement](QWidget& part, const QString& place) {
        if (const auto* splitter = qobject_cast<QSplitter*>(&part))
            arrangement[place.trimmed()] = textOf(*splitter);
        else if (const QHeaderView* header = columnsOf(part))
            arrangement[place.trimmed()] = textOf(*header);
    });
    return arrangement;
}

PanelArrangement withoutSizes(const PanelArrangement& arrangement, const PanelArrangement& before)
{
    PanelArrangement rest;
    for (auto part = arrangement.begin(); part != arrangement.end(); ++part) {
        const auto widths = part.value().indexOf(';');
        const QString columns = part.value().mid(widths);
        if (widths >= 0 && !before.value(part.key()).endsWith(columns))
            rest[part.key()] = columns;
    }
    return rest;
}

bool hasSizes(const PanelArrangement& arrangement)
{
    return std::any_of(arrangement.begin(), arrangement.end(),
                       [](const QString& part) { return !part.startsWith(noWidths); });
}

void arrange(const QWidget& panel, const PanelArrangement& arrangement)
{
    visitParts(panel, {}, [&arrangement](QWidget& part, const QString& place) {
        const QString text = arrangement.value(place.trimmed());
        if (text.isEmpty())
            return;
        if (auto* splitter = qobject_cast<QSplitter*>(&part))
            setText(*splitter, text);
        else if (QHeaderView* header = columnsOf(part))
            setText(*header, text);
    });
}
