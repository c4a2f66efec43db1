// SPDX-License-Identifier: MIT
#pragma once

#include <QLineEdit>
#include <QWidget>

class QDockWidget;

/// The title bar of a dock. A double click opens a field for another title; dragged, it moves the
/// dock as the toolkit's own bar does. Texts and marks are in the palette's colours: the toolkit's
/// images vanish before a dark background.
class DockTitle : public QWidget
{
    Q_OBJECT

public:
    explicit DockTitle(QDockWidget* dock);

    /// Whether commands that mean one panel mean this one.
    void setInFront(bool isInFront);
    /// What is to be known of a dock that floats, away from the bar of its window: a word before
    /// the title, and the sentences that belong to it. Empty: nothing.
    void setNews(const QString& word, const QString& sentences);
    /// The title with that word.
    QString shownTitle() const;
    /// Opens the field.
    void edit();

signals:
    void renamed(const QString& title); ///< as typed; may be empty

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private slots:
    void xFinish();

private:
    void addButton(const QString& mark, const QString& name, void (DockTitle::*action)());
    void toggleFloating();
    void closeDock();
    QRect textRect() const;
    bool showsNews() const;
    void updateNews();

    QDockWidget* fDock;
    QLineEdit* fEdit;
    bool fIsInFront = true;
    QString fNews; ///< the word
    QString fSentences;
};
