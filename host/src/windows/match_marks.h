// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractItemView>
#include <QPointer>
#include <QWidget>

#include <functional>

/// Marks cells of a view, the current one most, while it exists: over what the view itself paints,
/// and anew whenever it does. Clicks go through it.
class MatchMarks : public QWidget
{
public:
    MatchMarks(QAbstractItemView& view, const QVector<int>& columns,
               std::function<bool(const QModelIndex& cell)> isMatch);

protected:
    void paintEvent(QPaintEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void mark(QPainter& painter, const QModelIndex& cell) const;

    QAbstractItemView& fView;
    const QVector<int> fColumns;
    const std::function<bool(const QModelIndex& cell)> fIsMatch;
};
