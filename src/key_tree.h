#pragma once

#include <QTimer>
#include <QTreeWidget>

#include <functional>

/// A tree widget for many flat rows with a button in each. To its users it is a plain tree widget
/// with sorting on; it differs in what things cost:
/// - cells written within a WriteBatch are announced by the model one by one, but the view looks
///   at them once, when the batch ends: it puts the rows in order again, if they are not, and
///   paints.
/// - the widgets installed in cells are placed and shown only while their row is in sight.
/// Rows are one line high, whatever their texts. Child widgets of the viewport that belong to no
/// row in sight are hidden.
class KeyTree : public QTreeWidget
{
public:
    /// Makes the button of a row. The tree becomes its owner.
    using ButtonMaker = std::function<QWidget*(QTreeWidgetItem&)>;

    /// So many rows have their button from the start, the others once they came into sight.
    static constexpr int fButtonLimit = 5000;

    class WriteBatch;

    explicit KeyTree(QWidget* parent = nullptr);

    /// Gives every row a button in `column`, now or when it comes into sight.
    void installButtons(int column, ButtonMaker maker);

    void doItemsLayout() override;
    void reset() override;

protected:
    void dataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight,
                     const QVector<int>& roles = QVector<int>()) override;
    void updateEditorGeometries() override;
    void scrollContentsBy(int dx, int dy) override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void xBeginBatch();
    void xEndBatch();
    bool xIsTouchedPartSorted() const;
    void xSortRows();
    void xTellAccessibility();

    void xInstallButtonsAhead();
    void xInstallButton(const QModelIndex& index);
    void xPlaceWidgetsInSight();
    QModelIndexList xRowsInSight() const;
    void xPlaceWidgetsOf(const QModelIndex& row, QVector<QWidget*>& placed);
    void xHideAllBut(const QVector<QWidget*>& placed);

    struct Touched
    {
        int first;
        int last;
    };

    QTimer fPlaceTimer; ///< until placeWidgetsInSight
    ButtonMaker fMaker;
    int fButtonColumn = -1;
    int fBatches = 0;         ///< open batches, one within the other
    int fSortColumn = -1;     ///< while a batch is open
    Touched fTouched{0, -1};  ///< rows whose cell of that column was written in the batch
    bool fInstalling = false; ///< whether cell widgets are being installed or placed
};

/// While one exists, the view of `tree` waits, see KeyTree. Batches nest.
class KeyTree::WriteBatch
{
public:
    explicit WriteBatch(KeyTree& tree) : fTree(tree) { fTree.xBeginBatch(); }
    ~WriteBatch() { fTree.xEndBatch(); }
    WriteBatch(const WriteBatch&) = delete;
    WriteBatch& operator=(const WriteBatch&) = delete;

private:
    KeyTree& fTree;
};
