// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QStringList>
#include <QVector>

class QAbstractItemView;
class QModelIndex;
class QWidget;

/// Tables of panels, as text. Columns that are hidden count for nothing, the others stand as they
/// are seen, in the order of the user.

/// The table that the user means: the one with the focus, or else the largest that can be seen;
/// null when there is none.
QAbstractItemView* tableIn(const QWidget& panel);

/// From the first to the last, as they are seen.
QVector<int> shownColumns(const QAbstractItemView& view);

/// A cell's text; without one, 1 or 0 for a box, ticked or not.
QString textOf(const QModelIndex& cell);
QStringList rowTexts(const QAbstractItemView& view, const QModelIndex& row);
/// The columns' heads, if it has any, and every row but those that are hidden or folded up.
QVector<QStringList> allTexts(const QAbstractItemView& view);

/// Cells with tabs between, rows with line ends; those within a text become blanks.
QString tabbed(const QVector<QStringList>& rows);
/// As RFC 4180 has it, in UTF-8.
QByteArray csv(const QVector<QStringList>& rows);
