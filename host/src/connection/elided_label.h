// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>

/// One line of plain text that never widens its window: what does not fit ends in an ellipsis, and
/// is to be read in its tool tip.
class ElidedLabel : public QLabel
{
    Q_OBJECT

public:
    explicit ElidedLabel(QWidget* parent);

    /// In place of setText.
    void showText(const QString& text);
    /// What is painted.
    QString shownText() const;

protected:
    void paintEvent(QPaintEvent* event) override;
};
