// SPDX-License-Identifier: MIT
#include "connection/connection_bar.h"

#include <QCoreApplication>
#include <QHBoxLayout>
#include <QLabel>
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

} // namespace

QString connectionBrief(const ConnectionState& state, const QDateTime& now)
{
    return (state.connected ? tr("Connected since %1") : tr("Connection lost since %1"))
        .arg(timeText(state.since, now));
}

QString connectionDetail(const ConnectionState& state, const QString& address)
{
    if (!state.connected)
        return tr("Trying again: %1").arg(state.cause); // which names the address
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
      fIconLabel(new QLabel(this)),
      fBriefLabel(new QLabel(this))
{
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(6, 0, 6, 0);
    layout->addWidget(fDetailLabel, 1);
    layout->addWidget(fIconLabel);
    layout->addWidget(fBriefLabel);
    // A long reason is cut at the window's edge and never widens the window.
    fDetailLabel->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    fDetailLabel->setTextFormat(Qt::PlainText);
    fDetailLabel->setObjectName("connectionDetail");
    fBriefLabel->setObjectName("connectionState");
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
    xRefresh();
}

void ConnectionBar::note(const QString& text)
{
    setDetail(text);
    fNoteTimer.start();
}

void ConnectionBar::xRefresh()
{
    const QStyle::StandardPixmap icon =
        fState.connected ? QStyle::SP_DialogApplyButton : QStyle::SP_MessageBoxWarning;
    const int size = style()->pixelMetric(QStyle::PM_SmallIconSize);
    fIconLabel->setPixmap(style()->standardIcon(icon).pixmap(size, size));
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
