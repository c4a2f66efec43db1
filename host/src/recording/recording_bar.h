// SPDX-License-Identifier: MIT
#pragma once

#include <QToolBar>

class ElidedLabel;
class QPushButton;
class Recording;

/// A filled dot while rows are written, a ring while there are none.
class RecordingDot : public QWidget
{
    Q_OBJECT

public:
    explicit RecordingDot(QWidget* parent);

    void setFilled(bool isFilled);
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    bool fIsFilled = false;
};

/// What is always to be seen of one recording, and a button to stop it.
class RecordingRow : public QWidget
{
    Q_OBJECT

public:
    RecordingRow(Recording& recording, QWidget* parent);

private slots:
    void xShow();

private:
    Recording& fRecording;
    RecordingDot* fDot;
    ElidedLabel* fText;
    QPushButton* fStopButton;
};

/// The bar below a window's panels that lists the recordings that run; hidden without any.
class RecordingBar : public QToolBar
{
    Q_OBJECT

public:
    explicit RecordingBar(QWidget* parent);

    /// Lists it as long as it exists.
    void add(Recording& recording);
    /// Nobody else does: a window that gets an earlier arrangement back would.
    void setVisible(bool visible) override;

private:
    QWidget* fPane;
    int fCount = 0;
};
