// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QTreeWidgetItem>
#include <QVarLengthArray>
#include <QVector>

struct Color;

/// One row of the key table: a tree item that holds its texts and check states by itself, where
/// they cost less. The base class looks for its row by a search through all rows whenever the table
/// has been sorted, and for its texts through three pointers; this class remembers its row. What is
/// neither a text nor a check state, and what a stream brought, the base class holds as ever.
class KeyRow : public QTreeWidgetItem
{
public:
    static constexpr int fColumns = 6; ///< that a row has from the start

    /// The row of the key that is plotted in `color`, which must outlive the row.
    explicit KeyRow(Color& color);

    Color& color() const { return fColor; }

    /// A row of the same colour.
    QTreeWidgetItem* clone() const override;
    QVariant data(int column, int role) const override;
    void setData(int column, int role, const QVariant& value) override;
    /// Orders by the sort column of the table, as the base class does.
    bool operator<(const QTreeWidgetItem& other) const override;
    void read(QDataStream& in) override;
    void write(QDataStream& out) const override;

private:
    struct Cell
    {
        QString text;     ///< null: held by the base class, or never written
        quint64 head = 0; ///< its first four characters: most comparisons end here
        int check = -1;   ///< a Qt::CheckState; -1: held by the base class, or never written
    };

    const Cell& xCell(int column) const;
    Cell& xMakeCell(int column);
    bool xHolds(int column, int role) const;
    void xSetText(int column, const QString& text);
    void xSetCheck(int column, int check);
    void xSetOther(int column, int role, const QVariant& value);
    void xAnnounce(int column, const QVector<int>& roles);
    bool xFindsItsRow();

    Color& fColor;
    QVarLengthArray<Cell, fColumns> fCells;
    int fRow = -1; ///< where the row stood when last asked: to be checked before use
};
