// SPDX-License-Identifier: MIT
#include "windows/match_marks.h"

#include <QEvent>
#include <QPainter>

#include <utility>

MatchMarks::MatchMarks(QAbstractItemView& view, const QVector<int>& columns,
                       std::function<bool(const QModelIndex& cell)> isMatch)
    : QWidget(view.viewport()), fView(view), fColumns(columns), fIsMatch(std::move(isMatch))
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAttribute(Qt::WA_NoSystemBackground);
    setGeometry(view.viewport()->rect());
    view.viewport()->installEventFilter(this);
    show();
}

bool MatchMarks::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Resize)
        resize(fView.viewport()->size());
    return QWidget::eventFilter(watched, event);
}

/// A view that scrolls moves what is in its viewport.
void MatchMarks::moveEvent(QMoveEvent* /*event*/)
{
    move(0, 0);
    update();
}

void MatchMarks::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    int bottom = 0;
    while (bottom < height()) {
        const QModelIndex inRow = fView.indexAt(QPoint(width() / 2, bottom));
        const QRect rect = fView.visualRect(inRow);
        if (!inRow.isValid() || rect.bottom() < bottom)
            return;
        for (const int column : fColumns)
            mark(painter, inRow.sibling(inRow.row(), column));
        bottom = rect.bottom() + 1;
    }
}

void MatchMarks::mark(QPainter& painter, const QModelIndex& cell) const
{
    if (!fIsMatch(cell))
        return;
    const QRect rect = fView.visualRect(cell).adjusted(0, 0, -1, -1);
    QColor color = palette().color(QPalette::Active, QPalette::Highlight);
    const bool isCurrent = cell == fView.currentIndex();
    if (isCurrent) {
        painter.setPen(QPen(color, 2));
        painter.drawRect(rect.adjusted(1, 1, -1, -1));
    }
    constexpr int shine = 70;
    color.setAlpha(shine);
    painter.fillRect(rect, color);
}
