// SPDX-License-Identifier: MIT
#include "connection/connection_bar.h"

#include "connection/connection_icon.h"
#include "connection/connection_text.h"
#include "connection/elided_label.h"
#include "connection/traffic_text.h"

#include <QHBoxLayout>

ConnectionBar::ConnectionBar(const QString& address, QWidget* parent)
    : ConnectionBar(address, Times(), parent)
{
}

ConnectionBar::ConnectionBar(const QString& address, const Times& times, QWidget* parent)
    : QWidget(parent),
      fAddress(address),
      fDetailLabel(new ElidedLabel(this)),
      fTrafficLabel(new QLabel(this)),
      fIconLabel(new QLabel(this)),
      fBriefLabel(new QLabel(this))
{
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(6, 0, 6, 0);
    layout->addWidget(fDetailLabel, 1);
    layout->addWidget(fTrafficLabel);
    layout->addWidget(fIconLabel);
    layout->addWidget(fBriefLabel);
    fDetailLabel->setObjectName("connectionDetail");
    fTrafficLabel->setTextFormat(Qt::PlainText);
    fTrafficLabel->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    fTrafficLabel->setObjectName("connectionTraffic");
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
    fDetailLabel->showText(text);
    fNoteTimer.start();
}

void ConnectionBar::xRefresh()
{
    const int size = style()->pixelMetric(QStyle::PM_SmallIconSize);
    fIconLabel->setPixmap(style()->standardIcon(connectionIcon(fState)).pixmap(size, size));
    fBriefLabel->setText(connectionBrief(fState, QDateTime::currentDateTime()));
    if (!fNoteTimer.isActive())
        xEndNote();
}

void ConnectionBar::xEndNote()
{
    fDetailLabel->showText(connectionDetail(fState, fAddress));
}
