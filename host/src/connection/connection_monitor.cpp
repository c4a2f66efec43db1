// SPDX-License-Identifier: MIT
#include "connection/connection_monitor.h"

#include <kit/password_file.h>

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
    fMeasureTimer.setInterval(fMeasureInterval);
    connect(&fMeasureTimer, &QTimer::timeout, this, &ConnectionMonitor::xMeasure);
    fMeasureTimer.start();
}

int ConnectionMonitor::watch(Link link)
{
    fLinks[++fLastNumber] = std::move(link);
    xPoll();
    return fLastNumber;
}

int ConnectionMonitor::watch(const boost::shared_ptr<ZoBroker>& broker)
{
    return watch({[broker] { return broker->linkStatus(); },
                  [broker](const ZoBrokerOptions& options) { broker->reconnect(options); }});
}

void ConnectionMonitor::stopWatching(int number)
{
    fLinks.erase(number);
}

void ConnectionMonitor::reconnect(const ConnectionSettings& settings)
{
    ZoBrokerOptions options = settings.brokerOptions();
    const kit::WipedAtEnd wiped(options.password); // the brokers have their own
    for (const auto& link : fLinks)
        link.second.reconnect(options);
    xPoll();
}

/// The link that was refused, or else one that is down, or the one that is up for the shortest
/// time.
ZoLinkStatus ConnectionMonitor::worst() const
{
    ZoLinkStatus result;
    result.connected = true;
    for (const auto& link : fLinks) {
        ZoLinkStatus status = link.second.status();
        if (status.refused)
            return status;
        if (result.connected && (!status.connected || status.since > result.since))
            result = std::move(status);
    }
    return result;
}

ZoLinkStatus ConnectionMonitor::busiest() const
{
    ZoLinkStatus result;
    for (const auto& link : fLinks) {
        ZoLinkStatus status = link.second.status();
        if (status.connected &&
            (!result.connected || status.answersPerSecond > result.answersPerSecond))
            result = std::move(status);
    }
    return result;
}

void ConnectionMonitor::xMeasure()
{
    emit measured(busiest());
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
}

void ConnectionMonitor::setDown(const ZoLinkStatus& status)
{
    const QString cause = QString::fromStdString(status.cause);
    if (isLost()) {
        if (cause != fState.cause || status.refused != fState.refused) {
            fState.cause = cause;
            fState.refused = status.refused;
            emit changed();
        }
        return;
    }
    if (!fDownFor.isValid())
        fDownFor.start();
    if (!status.refused && !fDownFor.hasExpired(fGrace))
        return;
    fState = {false, true, localTime(status.since), cause, status.refused};
    emit changed();
    emit lost();
}
