#pragma once

#include <QString>
#include <QTreeWidgetItem>
#include <QVarLengthArray>
#include <QVector>

struct Color;

/// One row of the key table. To its users it is a tree item whose cells hold texts and check
/// states, and whose writes the model announces; it differs in what they cost. The base class
/// looks for its row by a search through all rows whenever the table has been sorted, and for its
/// texts through three pointers; this class remembers its row, and holds its texts.
class KeyRow : public QTreeWidgetItem
{
public:
    /// The row of the key that is plotted in `color`, which must outlive the row.
    explicit KeyRow(Color& color);

    Color& color() const { return fColor; }
    /// The text of a cell; null where none was written.
    const QString& cellText(int column) const { return xCell(column).text; }

    QVariant data(int column, int role) const override;
    void setData(int column, int role, const QVariant& value) override;
    /// Orders by the texts of the table's sort column.
    bool operator<(const QTreeWidgetItem& other) const override;

    /// Until it is set to -1, rows that have a rank are ordered by it instead of by their texts.
    void setRank(int rank) { fRank = rank; }

private:
    struct Cell
    {
        QString text;   ///< null: never written
        int check = -1; ///< a Qt::CheckState, or -1: none
    };

    const Cell& xCell(int column) const;
    void xAnnounce(int column, const QVector<int>& roles);
    bool xFindsItsRow();

    Color& fColor;
    QVarLengthArray<Cell, 6> fCells;
    int fRow = -1; ///< where the row stood when last asked: to be checked before use
    int fRank = -1;
};
