// SPDX-License-Identifier: MIT
#include "connection/outage_bar.h"

#include "connection/connection_icon.h"
#include "connection/connection_text.h"

#include <QAccessible>
#include <QAction>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

/// Texts of several lines in a tool bar, which asks for one height whatever the width.
class HighAsNeeded : public QFrame
{
public:
    using QFrame::QFrame;

    /// At the width that it will have: its own is that of another time as long as it is hidden, and
    /// the window would grow to make room for lines that are not there.
    QSize sizeHint() const override
    {
        const int edge = style()->pixelMetric(QStyle::PM_ToolBarItemMargin) +
                         style()->pixelMetric(QStyle::PM_ToolBarFrameWidth);
        return {QFrame::sizeHint().width(),
                layout()->totalHeightForWidth(window()->width() - 2 * edge)};
    }

protected:
    void resizeEvent(QResizeEvent*) override { updateGeometry(); }
};

namespace {

QLabel* addLine(QLayout* lines, const char* name)
{
    auto* label = new QLabel;
    label->setTextFormat(Qt::PlainText);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setWordWrap(true);
    label->setForegroundRole(QPalette::ToolTipText);
    label->setObjectName(name);
    lines->addWidget(label);
    return label;
}

} // namespace

OutageBar::OutageBar(const QString& address, QWidget* parent) : OutageBar(address, Times(), parent)
{
}

OutageBar::OutageBar(const QString& address, const Times& times, QWidget* parent)
    : QToolBar(parent), fPane(new HighAsNeeded(this)), fAddress(address)
{
    setObjectName("outageBar");
    setMovable(false);
    toggleViewAction()->setVisible(false);
    // A pair of colours that every palette has, dark or of high contrast, and that stands out.
    fPane->setBackgroundRole(QPalette::ToolTipBase);
    fPane->setAutoFillBackground(true);
    fPane->setFrameShape(QFrame::StyledPanel);
    fPane->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    setUpLabels();
    setUpButtons();
    addWidget(fPane);
    fFarewellTimer.setSingleShot(true);
    fFarewellTimer.setInterval(times.farewell);
    connect(&fFarewellTimer, &QTimer::timeout, this, &OutageBar::xEndFarewell);
    connect(&fRefreshTimer, &QTimer::timeout, this, &OutageBar::xRefresh);
    fRefreshTimer.start(times.refresh);
    hide();
}

void OutageBar::setUpLabels()
{
    auto* layout = new QHBoxLayout(fPane);
    auto* lines = new QVBoxLayout;
    fIconLabel = new QLabel;
    layout->addWidget(fIconLabel, 0, Qt::AlignTop);
    layout->addLayout(lines, 1);
    fHeadLabel = addLine(lines, "outageHeadline");
    fTextLabel = addLine(lines, "outageText");
    QFont bold = fHeadLabel->font();
    bold.setBold(true);
    fHeadLabel->setFont(bold);
}

void OutageBar::setUpButtons()
{
    fDisconnectButton = addButton(tr("&Disconnect"), tr("Do not wait for the robot any longer"),
                                  "outageDisconnect", &OutageBar::disconnectRequested);
    fReconnectButton = addButton(tr("&Reconnect"), tr("Open the connection again, at once"),
                                 "outageReconnect", &OutageBar::reconnectRequested);
    fAgainButton = addButton(tr("Connect &again..."),
                             tr("Give the user, password or certificates that the robot wants"),
                             "connectAgain", &OutageBar::connectAgainRequested);
    fDismissButton =
        addButton(tr("&Understood"), tr("Hide this"), "outageDismiss", &OutageBar::dismissed);
}

QPushButton* OutageBar::addButton(const QString& text, const QString& tip, const char* name,
                                  void (OutageBar::*request)())
{
    auto* button = new QPushButton(text);
    button->setToolTip(tip);
    button->setObjectName(name);
    fPane->layout()->addWidget(button);
    connect(button, &QPushButton::clicked, this, request);
    return button;
}

void OutageBar::showState(const ConnectionState& state)
{
    fState = state;
    fDisconnectButton->setVisible(!state.connected && !state.lost);
    fReconnectButton->setVisible(!state.connected && state.lost && !state.refused);
    fAgainButton->setVisible(!state.connected && state.refused);
    fDismissButton->setVisible(state.connected && state.stopped > 0);
    xRefresh();
    if (hasNews())
        beThere();
    else if (fIsWanted && !fFarewellTimer.isActive())
        fFarewellTimer.start();
}

void OutageBar::beThere()
{
    fFarewellTimer.stop();
    if (fIsWanted)
        return;
    fIsWanted = true;
    show();
    QAccessibleEvent news(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&news);
}

void OutageBar::xEndFarewell()
{
    fIsWanted = false;
    hide();
}

void OutageBar::setVisible(bool)
{
    QToolBar::setVisible(fIsWanted);
}

void OutageBar::xRefresh()
{
    const int size = style()->pixelMetric(QStyle::PM_SmallIconSize);
    fIconLabel->setPixmap(style()->standardIcon(connectionIcon(fState)).pixmap(size, size));
    fHeadLabel->setText(connectionHeadline(fState, fAddress, QDateTime::currentDateTime()));
    QStringList lines = {connectionAdvice(fState), connectionReason(fState)};
    lines.removeAll(QString());
    fTextLabel->setText(lines.join('\n'));
    fTextLabel->setVisible(!lines.isEmpty());
}
