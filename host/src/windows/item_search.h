// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractItemModel>
#include <QPersistentModelIndex>
#include <QPointer>
#include <QTimer>
#include <QVector>

/// Looks for a text in the cells of a model, in capitals or not: row by row, and below a row its
/// children. It works in short slices between the events of the program, so that a model of any
/// size holds up nobody, and it looks at values as they are when it comes by.
class ItemSearch : public QObject
{
    Q_OBJECT

public:
    static constexpr int fSlice = 6; ///< ms; a frame has 16

    explicit ItemSearch(QObject* parent = nullptr);

    /// Where to look, and for what; forgets everything found so far. An empty text is found
    /// nowhere.
    void look(QAbstractItemModel* model, const QModelIndex& root, const QVector<int>& columns,
              const QString& text);
    const QString& text() const { return fText; }
    bool isMatch(const QModelIndex& cell) const;

    /// Looks for the next cell behind `from`, or before it, beyond the end from the beginning
    /// again; `from` itself is the last one, or with `orThere` the first. Ends in found().
    void step(const QModelIndex& from, bool isForward, bool orThere = false);
    /// Counts the cells that match. Ends in counted(), which tells of progress before.
    void count();

    int matches() const { return fMatches; }
    bool isCounting() const { return fIsCounting; }
    /// Of the count, from 0 to 100.
    int percent() const;

signals:
    void found(const QModelIndex& cell); ///< none when nothing matches
    void counted();

private slots:
    void xWork();
    void xForget();

private:
    QModelIndex cellIn(const QModelIndex& row, int first, int last) const;
    QModelIndex rowAfter(const QModelIndex& row) const;
    QModelIndex rowBefore(const QModelIndex& row) const;
    QModelIndex lastRowIn(QModelIndex row) const;
    void stepOnce();
    void endStep(const QModelIndex& cell);
    void countOnce();

    QPointer<QAbstractItemModel> fModel;
    QPersistentModelIndex fRoot;
    QVector<int> fColumns;
    QString fText;

    bool fIsStepping = false;
    bool fIsForward = true;
    QPersistentModelIndex fStart; ///< the row where the step began
    int fStartPlace = 0;          ///< of its cell among the columns; -1: before all
    QPersistentModelIndex fStepRow;
    int fRowsStepped = 0;

    bool fIsCounting = false;
    QPersistentModelIndex fCountRow;
    int fRowsCounted = 0;
    int fMatches = 0;

    QTimer fTimer;
};
