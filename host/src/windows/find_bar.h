// SPDX-License-Identifier: MIT
#pragma once

#include "windows/item_search.h"

#include <QAbstractItemView>
#include <QToolBar>

#include <functional>

class MatchMarks;
class QLabel;
class QLineEdit;

/// The bar to find cells of a table with: while one types, it goes to the first cell from the
/// current one on that has the text, marks all others in sight and counts them. Return goes to the
/// next one, with Shift to the one before, Escape closes the bar.
class FindBar : public QToolBar
{
    Q_OBJECT

public:
    explicit FindBar(QWidget* parent);

    /// Opens it for the table of `panel` that the user means.
    void open(const QWidget& panel);
    /// To the next match, or the one before; opens it when it is closed.
    void step(const QWidget& panel, bool isForward);
    /// This panel is in front now: an open bar looks there.
    void follow(const QWidget* panel);

public slots:
    void xClose();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private slots:
    void xOnEdited();
    void xOnFound(const QModelIndex& cell);
    void xShowCount();

private:
    void addButton(const QString& mark, const QString& name, const std::function<void()>& action);
    QAbstractItemView* viewIn(const QWidget& panel) const;
    void lookIn(QAbstractItemView* view);
    void stepFromHere(bool isForward);
    QString countText() const;

    QLineEdit* fEdit;
    QLabel* fCount;
    QPointer<QAbstractItemView> fView;
    QPointer<MatchMarks> fMarks;
    ItemSearch fSearch;
};
