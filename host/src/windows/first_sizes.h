// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QObject>
#include <QVector>

class QAbstractItemView;
class QHeaderView;
class QSplitter;
class QWidget;

/// Arranges a panel that nobody has arranged yet: the tables beside other things get the room for
/// all of their columns, if that leaves the others enough for their controls, and columns that want
/// more than there is get narrower, the widest first. Does so again whenever the size of the panel
/// changes, until the user moves one of its borders.
class FirstSizes : public QObject
{
    Q_OBJECT

public:
    /// The panel, which owns it, has its size and is shown.
    explicit FirstSizes(QWidget* panel);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void give();
    void shareOut(QSplitter& splitter) const;
    void fitColumns(const QAbstractItemView& view);
    void watch(const QHeaderView& header);
    int wishOf(const QWidget& pane) const;
    QVector<int> wantedWidths(const QAbstractItemView& view) const;

    QWidget* fPanel;
    QHash<const QHeaderView*, QVector<int>> fWidths; ///< of the columns, as the panel made them
    bool fIsHeadPressed = false;                     ///< by the mouse
};

/// Lets the panes of the panel's splitters get narrower than the controls in them would like: two
/// panels side by side, or large letters, would push the window over the edge of the screen.
void letPanesShrink(const QWidget& panel);

/// `widths`, the widest ones made narrower until all fit into `room`, but none below its own of
/// `leasts`.
QVector<int> fittedColumns(const QVector<int>& widths, int room, const QVector<int>& leasts);

/// Shares `room` out among panes beside each other: one gets what it wishes; those that wish
/// nothing (0) share the rest, at least `least` each, if need be at the cost of the others.
QVector<int> sharesOf(const QVector<int>& wishes, int room, int least);
