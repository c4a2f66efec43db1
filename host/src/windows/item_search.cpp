// SPDX-License-Identifier: MIT
#include "windows/item_search.h"

#include <QElapsedTimer>

#include <algorithm>
#include <utility>

ItemSearch::ItemSearch(QObject* parent) : QObject(parent)
{
    fTimer.setInterval(0);
    connect(&fTimer, &QTimer::timeout, this, &ItemSearch::xWork);
}

void ItemSearch::look(QAbstractItemModel* model, const QModelIndex& root,
                      const QVector<int>& columns, const QString& text)
{
    if (fModel)
        fModel->disconnect(this);
    xForget();
    fModel = model;
    fRoot = root;
    fColumns = columns;
    fText = text;
    fMatches = 0;
    if (!model)
        return;
    // A walk over rows that are no more ends; the next one is whole again.
    connect(model, &QAbstractItemModel::modelReset, this, &ItemSearch::xForget);
    connect(model, &QAbstractItemModel::rowsRemoved, this, &ItemSearch::xForget);
    connect(model, &QObject::destroyed, this, &ItemSearch::xForget);
}

void ItemSearch::xForget()
{
    fTimer.stop();
    const bool wasCounting = fIsCounting;
    fIsStepping = false;
    fIsCounting = false;
    if (wasCounting)
        emit counted();
}

bool ItemSearch::isMatch(const QModelIndex& cell) const
{
    return !fText.isEmpty() &&
           cell.data(Qt::DisplayRole).toString().contains(fText, Qt::CaseInsensitive);
}

void ItemSearch::step(const QModelIndex& from, bool isForward, bool orThere)
{
    if (!fModel || fText.isEmpty()) {
        emit found({});
        return;
    }
    fIsForward = isForward;
    const QModelIndex row = from.sibling(from.row(), 0);
    fStart = row.isValid() ? row : isForward ? rowAfter({}) : rowBefore({});
    fStartPlace = row.isValid() ? static_cast<int>(fColumns.indexOf(from.column())) : -1;
    if (!isForward && !row.isValid())
        fStartPlace = static_cast<int>(fColumns.size());
    if (orThere && fStartPlace >= 0)
        fStartPlace += isForward ? -1 : 1;
    fStepRow = fStart;
    fRowsStepped = 0;
    fIsStepping = true;
    fTimer.start();
    xWork(); // what is near is found at once
}

void ItemSearch::count()
{
    fMatches = 0;
    fRowsCounted = 0;
    fIsCounting = fModel && !fText.isEmpty();
    fCountRow = fIsCounting ? rowAfter({}) : QModelIndex();
    fTimer.start();
}

int ItemSearch::percent() const
{
    const int rows = fModel ? std::max(1, fModel->rowCount(fRoot)) : 1;
    return fIsCounting ? std::min(100, static_cast<int>(100LL * fRowsCounted / rows)) : 100;
}

void ItemSearch::xWork()
{
    QElapsedTimer clock;
    clock.start();
    while (fIsStepping && clock.elapsed() < fSlice)
        stepOnce();
    while (fIsCounting && clock.elapsed() < fSlice)
        countOnce();
    if (!fIsStepping && !fIsCounting)
        fTimer.stop();
    emit counted();
}

/// The match between these places among the columns, the nearest to the first of them.
QModelIndex ItemSearch::cellIn(const QModelIndex& row, int first, int last) const
{
    const int direction = first <= last ? 1 : -1;
    for (int place = first; place != last + direction; place += direction) {
        const QModelIndex cell = row.sibling(row.row(), fColumns.at(place));
        if (isMatch(cell))
            return cell;
    }
    return {};
}

/// Looks at one row: the one where the step began is the first one, from its cell on, and the last.
void ItemSearch::stepOnce()
{
    const int end = static_cast<int>(fColumns.size()) - 1;
    const int first = fIsForward ? 0 : end;
    const int last = fIsForward ? end : 0;
    const int behind = fStartPlace + (fIsForward ? 1 : -1);
    const bool isFirst = fRowsStepped++ == 0;
    if (!fStepRow.isValid()) { // beyond the end, or there is nothing
        fStepRow = fIsForward ? rowAfter({}) : rowBefore({});
        if (isFirst || !fStepRow.isValid())
            endStep({});
        return;
    }
    const bool isStart = fStepRow == fStart;
    QModelIndex cell;
    if (!isFirst || !isStart)
        cell = cellIn(fStepRow, first, last);
    else if (behind >= 0 && behind <= end)
        cell = cellIn(fStepRow, behind, last);
    if (cell.isValid() || (isStart && !isFirst))
        endStep(cell);
    else
        fStepRow = fIsForward ? rowAfter(fStepRow) : rowBefore(fStepRow);
}

void ItemSearch::endStep(const QModelIndex& cell)
{
    fIsStepping = false;
    emit found(cell);
}

void ItemSearch::countOnce()
{
    if (!fCountRow.isValid()) {
        fIsCounting = false;
        return;
    }
    for (const int column : std::as_const(fColumns))
        fMatches += isMatch(fCountRow.sibling(fCountRow.row(), column)) ? 1 : 0;
    if (fCountRow.parent() == fRoot)
        ++fRowsCounted;
    fCountRow = rowAfter(fCountRow);
}

/// The first one behind none.
QModelIndex ItemSearch::rowAfter(const QModelIndex& row) const
{
    if (!row.isValid())
        return fModel->index(0, 0, fRoot);
    if (fModel->rowCount(row) > 0)
        return fModel->index(0, 0, row);
    for (QModelIndex above = row; above.isValid() && above != fRoot; above = above.parent()) {
        const QModelIndex next = fModel->index(above.row() + 1, 0, above.parent());
        if (next.isValid())
            return next;
    }
    return {};
}

/// The last one before none.
QModelIndex ItemSearch::rowBefore(const QModelIndex& row) const
{
    if (!row.isValid())
        return fModel->rowCount(fRoot) > 0 ? lastRowIn(fRoot) : QModelIndex();
    if (row.row() > 0)
        return lastRowIn(fModel->index(row.row() - 1, 0, row.parent()));
    const QModelIndex above = row.parent();
    return above == fRoot ? QModelIndex() : above;
}

QModelIndex ItemSearch::lastRowIn(QModelIndex row) const
{
    for (int rows = fModel->rowCount(row); rows > 0; rows = fModel->rowCount(row))
        row = fModel->index(rows - 1, 0, row);
    return row;
}
