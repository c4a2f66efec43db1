// SPDX-License-Identifier: MIT
#include "connection/connection_monitor.h"

#include <kit/password_file.h>

#include <algorithm>
#include <utility>

namespace {

/// Of several links, the one with the highest is shown.
int badness(const ConnectionState& link)
{
    if (link.connected)
        return 0;
    if (link.refused)
        return 4;
    if (link.closed)
        return 3;
    return link.lost ? 2 : 1;
}

bool isWorse(const ConnectionState& link, const ConnectionState& than)
{
    if (badness(link) != badness(than))
        return badness(link) > badness(than);
    return link.connected && link.since > than.since;
}

bool isAmong(const ZoLinkStatus& link, ConnectionMonitor::Which which)
{
    switch (which) {
    case ConnectionMonitor::Which::Down:
        return !link.connected;
    case ConnectionMonitor::Which::Wanted:
        return !link.refused && !link.closed;
    case ConnectionMonitor::Which::All:
        break;
    }
    return true;
}

LossRule::Time now()
{
    return std::chrono::steady_clock::now();
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

int ConnectionMonitor::watch(const Link& link, User user)
{
    linkFor(link).add(++fLastNumber, user);
    xPoll();
    return fLastNumber;
}

int ConnectionMonitor::watch(const boost::shared_ptr<ZoBroker>& broker, User user)
{
    return watch({[broker] { return broker->linkStatus(); },
                  [broker](const ZoBrokerOptions& options) { broker->reconnect(options); },
                  [broker] { broker->disconnect(); }, broker->linkIdentity()},
                 user);
}

WatchedLink& ConnectionMonitor::linkFor(const Link& link)
{
    const auto known = std::find_if(fLinks.begin(), fLinks.end(), [&link](const WatchedLink& one) {
        return one.isSharedWith(link);
    });
    if (known != fLinks.end())
        return *known;
    return fLinks.emplace_back(link, fLimit);
}

void ConnectionMonitor::stopWatching(int number)
{
    for (WatchedLink& link : fLinks)
        link.remove(number);
    fLinks.erase(std::remove_if(fLinks.begin(), fLinks.end(),
                                [](const WatchedLink& link) { return !link.isUsed(); }),
                 fLinks.end());
}

bool ConnectionMonitor::isLost(int number) const
{
    return std::any_of(fLinks.begin(), fLinks.end(), [number](const WatchedLink& link) {
        return link.has(number) && link.isLost();
    });
}

void ConnectionMonitor::setLimit(LossRule::Limit limit)
{
    fLimit = limit;
    for (WatchedLink& link : fLinks)
        link.setLimit(limit);
    xPoll();
}

void ConnectionMonitor::reconnect(const ConnectionSettings& settings, Which which)
{
    refuseUnreadableFiles(settings); // before the first link is touched
    ZoBrokerOptions options = settings.brokerOptions();
    const kit::WipedAtEnd wiped(options.password); // the brokers have their own
    for (const WatchedLink& link : fLinks) {
        if (isAmong(link.link().status(), which))
            link.link().reconnect(options);
    }
    xPoll();
}

void ConnectionMonitor::disconnect()
{
    for (const WatchedLink& link : fLinks)
        link.link().disconnect();
    xPoll();
}

void ConnectionMonitor::forgetStopped()
{
    for (WatchedLink& link : fLinks)
        link.forgetStopped();
    xPoll();
}

ConnectionState ConnectionMonitor::stateOf(int number) const
{
    const auto link = std::find_if(fLinks.begin(), fLinks.end(),
                                   [number](const WatchedLink& one) { return one.has(number); });
    return link == fLinks.end() ? fState : link->state();
}

QVector<ConnectionState> ConnectionMonitor::links() const
{
    QVector<ConnectionState> states;
    for (const WatchedLink& link : fLinks)
        states += link.state();
    return states;
}

ZoLinkStatus ConnectionMonitor::busiest() const
{
    ZoLinkStatus result;
    for (const WatchedLink& link : fLinks) {
        ZoLinkStatus status = link.link().status();
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
    std::vector<int> told;
    for (WatchedLink& link : fLinks) {
        const std::vector<int> users = link.look(now());
        told.insert(told.end(), users.begin(), users.end());
    }
    if (!fLinks.empty())
        show(present());
    for (const int number : told)
        emit lost(number);
}

ConnectionState ConnectionMonitor::present() const
{
    ConnectionState state = fLinks.front().state();
    int panels = 0;
    int concerned = 0;
    int stopped = 0;
    for (const WatchedLink& link : fLinks) {
        if (isWorse(link.state(), state))
            state = link.state();
        panels += link.state().panels;
        concerned += link.state().concerned;
        stopped += link.state().stopped;
    }
    state.panels = panels;
    state.concerned = concerned;
    state.stopped = stopped;
    if (fRemark && !state.connected && !state.closed)
        state.remark = fRemark();
    return state;
}

void ConnectionMonitor::show(const ConnectionState& state)
{
    if (state == fState)
        return;
    fState = state;
    emit changed();
}
