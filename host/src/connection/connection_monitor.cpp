// SPDX-License-Identifier: MIT
#include "connection/connection_monitor.h"

#include <utility>

namespace {

QDateTime localTime(std::chrono::system_clock::time_point time)
{
    const auto sinceEpoch = time.time_since_epoch();
    return QDateTime::fromMSecsSinceEpoch(
        std::chrono::duration_cast<std::chrono::milliseconds>(sinceEpoch).count());
}

} // namespace

ConnectionMonitor::ConnectionMonitor(QObject* parent) : QObject(parent)
{
    fTimer.setInterval(fPollInterval);
    connect(&fTimer, &QTimer::timeout, this, &ConnectionMonitor::xPoll);
    fTimer.start();
}

int ConnectionMonitor::watch(Link link)
{
    fLinks[++fLastNumber] = std::move(link);
    xPoll();
    return fLastNumber;
}

int ConnectionMonitor::watch(const boost::shared_ptr<ZoBroker>& broker)
{
    return watch([broker] { return broker->linkStatus(); });
}

void ConnectionMonitor::stopWatching(int number)
{
    fLinks.erase(number);
}

/// The link that is down, or else the one that is up for the shortest time.
ZoLinkStatus ConnectionMonitor::worst() const
{
    ZoLinkStatus result;
    result.connected = true;
    for (const auto& link : fLinks) {
        ZoLinkStatus status = link.second();
        if (!status.connected)
            return status;
        if (status.since > result.since)
            result = status;
    }
    return result;
}

void ConnectionMonitor::xPoll()
{
    if (fLinks.empty())
        return;
    const ZoLinkStatus status = worst();
    if (status.connected)
        setConnected(status);
    else
        setDown(status);
}

void ConnectionMonitor::setConnected(const ZoLinkStatus& status)
{
    fDownFor.invalidate();
    if (fState.connected)
        return;
    fState = {true, fState.wasLost, localTime(status.since), {}};
    emit changed();
    if (fState.wasLost)
        emit back();
}

void ConnectionMonitor::setDown(const ZoLinkStatus& status)
{
    const QString cause = QString::fromStdString(status.cause);
    if (isLost()) {
        if (cause != fState.cause) {
            fState.cause = cause;
            emit changed();
        }
        return;
    }
    if (!fDownFor.isValid())
        fDownFor.start();
    if (!fDownFor.hasExpired(fGrace))
        return;
    fState = {false, true, localTime(status.since), cause};
    emit changed();
    emit lost();
}
