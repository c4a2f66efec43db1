// SPDX-License-Identifier: MIT
#pragma once

#include "batched_writes.h"
#include "cell_keys.h"
#include "row_buttons.h"

#include <QMap>
#include <QTreeWidget>

/// A tree widget for many flat rows with a button in each. To its users it is a plain tree widget
/// with sorting on, whose arrow keys go from cell to cell; it differs in what things cost:
/// - cells written within a WriteBatch are announced by the model one by one, but the view looks
///   at them once, when the batch ends: it puts the rows in order again, if they are not, and
///   paints.
/// - the buttons are placed and shown only while their row is in sight.
/// Rows are one line high, whatever their texts. Widgets in cells of other columns than that of the
/// buttons are placed by nobody.
class KeyTree : public QTreeWidget
{
public:
    using ButtonMaker = RowButtons::Maker;

    class WriteBatch;

    explicit KeyTree(QWidget* parent = nullptr);

    /// Gives every row a button in `column`, now or when it comes into sight.
    void installButtons(int column, ButtonMaker maker);

    /// Makes `column`, when it is resized to its contents, wide enough for `text` at least: for
    /// what is still to come.
    void leaveRoom(int column, const QString& text);

    int sizeHintForColumn(int column) const override;
    void doItemsLayout() override;
    void reset() override;

protected:
    void dataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight,
                     const QVector<int>& roles = QVector<int>()) override;
    void updateEditorGeometries() override;
    void scrollContentsBy(int dx, int dy) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QMap<int, QString> fRooms; ///< text by column
    BatchedWrites fWrites{*this};
    RowButtons fButtons{*this};
    CellKeys fKeys{*this};
};

/// While one exists, the view of `tree` waits, see KeyTree. Batches nest.
class KeyTree::WriteBatch
{
public:
    explicit WriteBatch(KeyTree& tree) : fTree(tree) { fTree.fWrites.begin(); }
    ~WriteBatch() { fTree.fWrites.end(); }
    WriteBatch(const WriteBatch&) = delete;
    WriteBatch& operator=(const WriteBatch&) = delete;

private:
    KeyTree& fTree;
};
