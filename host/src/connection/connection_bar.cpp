// SPDX-License-Identifier: MIT
#include "connection/connection_bar.h"

#include "connection/traffic_text.h"

#include <QCoreApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>

namespace {

QString tr(const char* text)
{
    return QCoreApplication::translate("ConnectionBar", text);
}

/// A time of today without its date.
QString timeText(const QDateTime& time, const QDateTime& now)
{
    return time.toString(time.date() == now.date() ? "HH:mm:ss" : "yyyy-MM-dd HH:mm:ss");
}

QString briefForm(const ConnectionState& state)
{
    if (state.connected)
        return tr("Connected since %1");
    return state.refused ? tr("Connection refused, lost since %1") : tr("Connection lost since %1");
}

QStyle::StandardPixmap iconOf(const ConnectionState& state)
{
    if (state.connected)
        return QStyle::SP_DialogApplyButton;
    return state.refused ? QStyle::SP_MessageBoxCritical : QStyle::SP_MessageBoxWarning;
}

} // namespace

QString connectionBrief(const ConnectionState& state, const QDateTime& now)
{
    return briefForm(state).arg(timeText(state.since, now));
}

QString connectionDetail(const ConnectionState& state, const QString& address)
{
    if (!state.connected) // the cause names the address
        return (state.refused ? tr("Not trying again: %1") : tr("Trying again: %1"))
            .arg(state.cause);
    if (state.wasLost)
        return tr("%1 is back. Choose the subscription mode to start fetching again.").arg(address);
    return address;
}

ConnectionBar::ConnectionBar(const QString& address, QWidget* parent)
    : ConnectionBar(address, Times(), parent)
{
}

ConnectionBar::ConnectionBar(const QString& address, const Times& times, QWidget* parent)
    : QWidget(parent),
      fAddress(address),
      fDetailLabel(new QLabel(this)),
      fTrafficLabel(new QLabel(this)),
      fIconLabel(new QLabel(this)),
      fBriefLabel(new QLabel(this)),
      fAgainButton(new QPushButton(tr("Connect &again..."), this))
{
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(6, 0, 6, 0);
    layout->addWidget(fDetailLabel, 1);
    layout->addWidget(fTrafficLabel);
    layout->addWidget(fIconLabel);
    layout->addWidget(fBriefLabel);
    layout->addWidget(fAgainButton);
    // A long reason is cut at the window's edge and never widens the window.
    fDetailLabel->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    fDetailLabel->setTextFormat(Qt::PlainText);
    fDetailLabel->setObjectName("connectionDetail");
    fTrafficLabel->setTextFormat(Qt::PlainText);
    fTrafficLabel->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    fTrafficLabel->setObjectName("connectionTraffic");
    fBriefLabel->setObjectName("connectionState");
    fAgainButton->setObjectName("connectAgain");
    fAgainButton->setToolTip(tr("Give the user, password or certificates that the robot wants"));
    fAgainButton->hide();
    connect(fAgainButton, &QPushButton::clicked, this, &ConnectionBar::connectAgainRequested);
    fNoteTimer.setSingleShot(true);
    fNoteTimer.setInterval(times.note);
    connect(&fNoteTimer, &QTimer::timeout, this, &ConnectionBar::xEndNote);
    connect(&fRefreshTimer, &QTimer::timeout, this, &ConnectionBar::xRefresh);
    fRefreshTimer.start(times.refresh);
}

void ConnectionBar::showState(const ConnectionState& state)
{
    fState = state;
    fNoteTimer.stop();
    fAgainButton->setVisible(fState.refused);
    xRefresh();
}

void ConnectionBar::showTraffic(const ZoLinkStatus& link)
{
    const QString detail = trafficDetail(link);
    if (detail != fTrafficLabel->toolTip())
        fTrafficLabel->setToolTip(detail);
    fTrafficLabel->setText(trafficBrief(link));
    fTrafficLabel->setVisible(!detail.isEmpty());
    // It has the room of the longest text so far: what stands beside it does not jump about.
    const int width = fTrafficLabel->sizeHint().width();
    if (width > fTrafficLabel->minimumWidth())
        fTrafficLabel->setMinimumWidth(width);
}

void ConnectionBar::note(const QString& text)
{
    setDetail(text);
    fNoteTimer.start();
}

void ConnectionBar::xRefresh()
{
    const int size = style()->pixelMetric(QStyle::PM_SmallIconSize);
    fIconLabel->setPixmap(style()->standardIcon(iconOf(fState)).pixmap(size, size));
    fBriefLabel->setText(connectionBrief(fState, QDateTime::currentDateTime()));
    if (!fNoteTimer.isActive())
        xEndNote();
}

void ConnectionBar::xEndNote()
{
    setDetail(connectionDetail(fState, fAddress));
}

void ConnectionBar::setDetail(const QString& text)
{
    fDetailLabel->setText(text);
    fDetailLabel->setToolTip(text.toHtmlEscaped());
}
