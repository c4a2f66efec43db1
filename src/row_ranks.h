#pragma once

#include <QVector>

class KeyRow;
class QTreeWidget;

/// While one exists, the rows of `tree` are sorted by numbers: their ranks among the texts of the
/// current sort column. The texts are compared in one place close together, which is several
/// times as fast for a large table. Rows of equal text have the same rank.
class RowRanks
{
public:
    explicit RowRanks(const QTreeWidget& tree);
    ~RowRanks();
    RowRanks(const RowRanks&) = delete;
    RowRanks& operator=(const RowRanks&) = delete;

private:
    QVector<KeyRow*> fRows;
};
