// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

class QModelIndex;
class QTreeWidget;

/// Keeps the rows of a flat table where they are while many of its cells are written, and puts
/// them in order at the end, once, and only if the writing broke the order.
class BatchedWrites
{
public:
    explicit BatchedWrites(QTreeWidget& tree) : fTree(tree) {}

    void begin(); ///< nests
    /// The end of the outermost batch sorts, paints anew and tells accessibility.
    void end();

    /// Takes the change of these cells over from the view, if a batch is open.
    bool takes(const QModelIndex& topLeft, const QModelIndex& bottomRight);

private:
    struct Rows
    {
        int first;
        int last;
    };

    bool xAreTouchedInOrder() const;
    void xTellAccessibility();

    QTreeWidget& fTree;
    int fDepth = 0;       ///< open batches, one within the other
    int fSortColumn = -1; ///< while a batch is open
    Rows fTouched{0, -1}; ///< whose cell of that column was written in the batch
};
