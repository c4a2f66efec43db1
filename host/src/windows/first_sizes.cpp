// SPDX-License-Identifier: MIT
#include "windows/first_sizes.h"

#include "windows/columns_of.h"

#include <QEvent>
#include <QHeaderView>
#include <QScrollBar>
#include <QSplitter>
#include <QStyle>
#include <QTableView>
#include <QTimer>
#include <QTreeView>

#include <algorithm>
#include <numeric>

namespace {

constexpr int usefulWidth = 150; ///< px, of a pane
constexpr int leastColumn = 50;  ///< px
constexpr int tightColumn = 40;  ///< px, rather than to have columns out of sight
constexpr int usefulText = 14;   ///< characters

int sum(const QVector<int>& numbers)
{
    return std::accumulate(numbers.begin(), numbers.end(), 0);
}

/// What a column's head needs. The header itself would leave room for a mark of sorting in each.
int headWidth(const QHeaderView& header, int column)
{
    const QStyle& style = *header.style();
    const QString text = header.model()->headerData(column, header.orientation()).toString();
    const bool isMarked = header.isSortIndicatorShown() && header.sortIndicatorSection() == column;
    const int mark = isMarked ? style.pixelMetric(QStyle::PM_HeaderMarkSize) : 0;
    const int margins = 2 * style.pixelMetric(QStyle::PM_HeaderMargin) + mark;
    return header.fontMetrics().size(0, text).width() + margins;
}

/// What a column needs to be of use: its head, and of its texts what tells them apart.
int leastWidth(const QAbstractItemView& view, int column)
{
    const QHeaderView& header = *columnsOf(view);
    const int texts = std::min(view.sizeHintForColumn(column),
                               usefulText * view.fontMetrics().averageCharWidth());
    return std::max({leastColumn, headWidth(header, column), texts});
}

QVector<int> leastWidths(const QAbstractItemView& view)
{
    QVector<int> leasts;
    for (int i = 0; i < columnsOf(view)->count(); ++i)
        leasts += leastWidth(view, i);
    return leasts;
}

/// Frame, row numbers, and a bar to scroll rows with, if there is need of one: beside the columns.
int besideColumns(const QAbstractItemView& view)
{
    const QMargins margins = view.contentsMargins();
    const auto* table = qobject_cast<const QTableView*>(&view);
    const int numbers =
        table && table->verticalHeader()->isVisible() ? table->verticalHeader()->width() : 0;
    const QScrollBar& bar = *view.verticalScrollBar();
    const int scrolling = bar.maximum() > 0 ? bar.sizeHint().width() : 0;
    return margins.left() + margins.right() + numbers + scrolling;
}

/// Itself among them.
QList<const QAbstractItemView*> tablesIn(const QWidget& widget)
{
    QList<const QAbstractItemView*> views;
    for (const auto* view : widget.findChildren<QAbstractItemView*>())
        views += view;
    views += qobject_cast<const QAbstractItemView*>(&widget);
    const auto isNone = [&widget](const QAbstractItemView* view) {
        return !view || !columnsOf(*view) || !view->isVisibleTo(&widget);
    };
    views.erase(std::remove_if(views.begin(), views.end(), isNone), views.end());
    return views;
}

/// What the tables of a pane need besides their columns.
int aroundColumns(const QWidget& pane, const QAbstractItemView& view)
{
    return besideColumns(view) + pane.width() - view.width();
}

/// What a pane needs for its controls, and for its tables when they are narrowed.
int leastOf(const QWidget& pane)
{
    int least = std::max(usefulWidth, pane.minimumSizeHint().width());
    for (const QAbstractItemView* view : tablesIn(pane))
        least = std::max(least, sum(leastWidths(*view)) + aroundColumns(pane, *view));
    return least;
}

QList<QSplitter*> rowsIn(const QWidget& panel)
{
    QList<QSplitter*> splitters = panel.findChildren<QSplitter*>();
    const auto isColumn = [](const QSplitter* splitter) {
        return splitter->orientation() != Qt::Horizontal;
    };
    splitters.erase(std::remove_if(splitters.begin(), splitters.end(), isColumn), splitters.end());
    return splitters;
}

} // namespace

QVector<int> fittedColumns(const QVector<int>& widths, int room, const QVector<int>& leasts)
{
    const auto cappedAt = [&](int cap) {
        QVector<int> capped;
        for (int i = 0; i < widths.size(); ++i)
            capped += std::min(widths.at(i), std::max(cap, leasts.at(i)));
        return capped;
    };
    int cap = widths.isEmpty() ? 0 : *std::max_element(widths.begin(), widths.end());
    while (cap > 0 && sum(cappedAt(cap)) > room)
        --cap;
    return cappedAt(cap);
}

QVector<int> sharesOf(const QVector<int>& wishes, int room, int least)
{
    const auto others = static_cast<int>(wishes.count(0));
    const int wished = sum(wishes);
    if (others == 0 || wished == 0)
        return wishes;
    const int share = std::max(least, (room - wished) / others);
    const int left = std::max(0, room - share * others);
    QVector<int> shares;
    for (const int wish : wishes)
        shares +=
            wish == 0 ? share : static_cast<int>(qint64(wish) * std::min(left, wished) / wished);
    return shares;
}

FirstSizes::FirstSizes(QWidget* panel) : QObject(panel), fPanel(panel)
{
    for (const QAbstractItemView* view : tablesIn(*panel)) {
        const QHeaderView& header = *columnsOf(*view);
        for (int i = 0; i < header.count(); ++i)
            fWidths[&header] += header.sectionSize(i);
        watch(header);
    }
    for (QSplitter* splitter : rowsIn(*panel))
        connect(splitter, &QSplitter::splitterMoved, this, &QObject::deleteLater);
    give();
    panel->installEventFilter(this);
}

/// Widths change with the table, too: the mouse tells whether it is the user's doing.
void FirstSizes::watch(const QHeaderView& header)
{
    header.viewport()->installEventFilter(this);
    connect(&header, &QHeaderView::sectionResized, this, [this] {
        if (fIsHeadPressed)
            deleteLater();
    });
}

bool FirstSizes::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonDblClick)
        fIsHeadPressed = watched != fPanel;
    else if (event->type() == QEvent::MouseButtonRelease)
        fIsHeadPressed = false;
    else if (event->type() == QEvent::Resize && watched == fPanel)
        QTimer::singleShot(0, this, &FirstSizes::give); // when what is in it has its size, too
    return QObject::eventFilter(watched, event);
}

void FirstSizes::give()
{
    for (QSplitter* splitter : rowsIn(*fPanel))
        shareOut(*splitter);
    for (const QAbstractItemView* view : tablesIn(*fPanel))
        fitColumns(*view);
}

void FirstSizes::shareOut(QSplitter& splitter) const
{
    const int room = sum(splitter.sizes().toVector());
    QVector<int> wishes;
    int tables = 0;
    int controls = 0;
    for (int i = 0; i < splitter.count(); ++i) {
        const QWidget& pane = *splitter.widget(i);
        wishes += wishOf(pane);
        if (wishes.last() > 0)
            tables += leastOf(pane);
        else
            controls = std::max(controls, leastOf(pane));
    }
    const auto others = static_cast<int>(wishes.count(0));
    if (others == 0 || sum(wishes) == 0)
        return;
    const int least = std::max(usefulWidth, std::min(controls, (room - tables) / others));
    splitter.setSizes(sharesOf(wishes, room, least).toList());
}

/// What a pane needs to show all columns of its tables; 0 without tables.
int FirstSizes::wishOf(const QWidget& pane) const
{
    int wish = 0;
    for (const QAbstractItemView* view : tablesIn(pane))
        wish = std::max(wish, sum(wantedWidths(*view)) + aroundColumns(pane, *view));
    return wish;
}

/// As wide as they were made; the last one, which takes what the others leave, as wide as it must
/// be.
QVector<int> FirstSizes::wantedWidths(const QAbstractItemView& view) const
{
    const QHeaderView& header = *columnsOf(view);
    QVector<int> widths = fWidths.value(&header);
    widths.resize(header.count()); // a column may have come or gone since
    if (header.stretchLastSection() && header.count() > 0) {
        const int last = header.logicalIndex(header.count() - 1);
        widths[last] = std::max(header.sectionSizeHint(last), view.sizeHintForColumn(last));
    }
    return widths;
}

void FirstSizes::fitColumns(const QAbstractItemView& view)
{
    QHeaderView& header = *columnsOf(view);
    const int room = view.width() - besideColumns(view);
    const QVector<int> wanted = wantedWidths(view);
    QVector<int> widths = fittedColumns(wanted, room, leastWidths(view));
    if (sum(widths) > room)
        widths = fittedColumns(wanted, room, QVector<int>(wanted.size(), tightColumn));
    for (int i = 0; i < widths.size(); ++i)
        if (widths.at(i) > 0)
            header.resizeSection(i, widths.at(i));
}

void letPanesShrink(const QWidget& panel)
{
    for (const QSplitter* splitter : rowsIn(panel)) {
        for (int i = 0; i < splitter->count(); ++i) {
            QWidget& pane = *splitter->widget(i);
            if (pane.minimumWidth() == 0 && pane.minimumSizeHint().width() > usefulWidth)
                pane.setMinimumWidth(usefulWidth);
        }
    }
}
