// SPDX-License-Identifier: MIT
#include "windows/dock_title.h"

#include <QDockWidget>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPainter>
#include <QToolButton>

namespace {

constexpr int longestTitle = 200; ///< characters, typed
constexpr int margin = 4;         ///< px, beside the text

} // namespace

DockTitle::DockTitle(QDockWidget* dock) : QWidget(dock), fDock(dock), fEdit(new QLineEdit(this))
{
    setObjectName("dockTitle");
    updateNews();
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(fEdit, 1);
    layout->addStretch();
    addButton(QChar(0x25a1), tr("Detach or attach the panel"), &DockTitle::toggleFloating);
    addButton(QChar(0x00d7), tr("Close the panel"), &DockTitle::closeDock);
    fEdit->setMaxLength(longestTitle);
    fEdit->setAccessibleName(tr("Title of the panel"));
    fEdit->installEventFilter(this);
    fEdit->hide();
    connect(fEdit, &QLineEdit::editingFinished, this, &DockTitle::xFinish);
    connect(dock, &QDockWidget::windowTitleChanged, this, QOverload<>::of(&QWidget::update));
    connect(dock, &QDockWidget::topLevelChanged, this, &DockTitle::updateNews);
}

void DockTitle::addButton(const QString& mark, const QString& name, void (DockTitle::*action)())
{
    auto* button = new QToolButton(this);
    button->setText(mark);
    button->setToolTip(name);
    button->setAccessibleName(name);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::NoFocus); // the menu has the same for the keyboard
    connect(button, &QToolButton::clicked, this, action);
    layout()->addWidget(button);
}

void DockTitle::toggleFloating()
{
    fDock->setFloating(!fDock->isFloating());
}

void DockTitle::closeDock()
{
    fDock->close();
}

void DockTitle::setInFront(bool isInFront)
{
    fIsInFront = isInFront;
    update();
}

void DockTitle::setNews(const QString& word, const QString& sentences)
{
    fNews = word;
    fSentences = sentences;
    updateNews();
}

bool DockTitle::showsNews() const
{
    return fDock->isFloating() && !fNews.isEmpty();
}

void DockTitle::updateNews()
{
    const QString news =
        showsNews() ? fSentences.toHtmlEscaped().replace('\n', "<br>") + "<p>" : "";
    setToolTip(news + tr("Drag to move the panel, double-click to rename it"));
    update();
}

QString DockTitle::shownTitle() const
{
    return showsNews() ? fNews + fDock->windowTitle() : fDock->windowTitle();
}

void DockTitle::edit()
{
    fEdit->setText(fDock->windowTitle());
    fEdit->selectAll();
    fEdit->show();
    fEdit->setFocus();
}

void DockTitle::xFinish()
{
    if (fEdit->isHidden()) // hiding takes the focus, which ends the editing once more
        return;
    fEdit->hide();
    if (fEdit->text() != fDock->windowTitle())
        emit renamed(fEdit->text().trimmed());
}

bool DockTitle::eventFilter(QObject* watched, QEvent* event)
{
    const bool isEscape = event->type() == QEvent::KeyPress &&
                          static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape;
    if (!isEscape)
        return QWidget::eventFilter(watched, event);
    fEdit->setText(fDock->windowTitle());
    xFinish();
    return true;
}

void DockTitle::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        edit();
}

/// What the buttons leave.
QRect DockTitle::textRect() const
{
    QRect rect = this->rect();
    for (const auto* button : findChildren<QToolButton*>()) {
        if (layoutDirection() == Qt::RightToLeft)
            rect.setLeft(qMax(rect.left(), button->geometry().right() + 1));
        else
            rect.setRight(qMin(rect.right(), button->geometry().left() - 1));
    }
    return rect.adjusted(margin, 0, -margin, 0);
}

void DockTitle::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    // Not by a colour: a paler one would be hard to read.
    QFont letters = font();
    letters.setBold(fIsInFront);
    painter.setFont(letters);
    painter.setPen(palette().color(showsNews() ? QPalette::ToolTipText : QPalette::WindowText));
    const QRect rect = textRect();
    if (showsNews()) // as in the window's bar
        painter.fillRect(rect, palette().color(QPalette::ToolTipBase));
    painter.drawText(rect, Qt::AlignVCenter | Qt::AlignLeading | Qt::TextSingleLine,
                     painter.fontMetrics().elidedText(shownTitle(), Qt::ElideMiddle, rect.width()));
}
