// SPDX-License-Identifier: MIT
#include "connection/watched_link.h"

#include <utility>

namespace {

QDateTime localTime(std::chrono::system_clock::time_point time)
{
    const auto sinceEpoch = time.time_since_epoch();
    return QDateTime::fromMSecsSinceEpoch(
        std::chrono::duration_cast<std::chrono::milliseconds>(sinceEpoch).count());
}

} // namespace

WatchedLink::WatchedLink(MonitoredLink link, LossRule::Limit limit)
    : fLink(std::move(link)), fRule(limit)
{
}

void WatchedLink::add(int number, User user)
{
    fUsers[number] = {user, isLost()};
}

bool WatchedLink::isSharedWith(const MonitoredLink& other) const
{
    return fLink.identity && fLink.identity == other.identity;
}

std::vector<int> WatchedLink::look(Time now)
{
    const ZoLinkStatus status = fLink.status();
    const bool isNewLoss = fRule.see(now, status);
    const bool isUp =
        status.connected || (fState.connected && !isLost() && fRule.downFor() < fGrace);
    if (!isUp || !fState.connected)
        fState.since = localTime(status.since);
    fState.connected = isUp;
    fState.lost = isLost();
    fState.refused = status.refused;
    fState.closed = status.closed;
    fState.cause = isUp ? QString() : QString::fromStdString(status.cause);
    std::vector<int> told;
    if (isNewLoss) {
        for (auto& [number, known] : fUsers) {
            known.isStopped = true;
            told.push_back(number);
        }
    }
    count();
    return told;
}

void WatchedLink::count()
{
    fState.panels = 0;
    fState.stopped = 0;
    for (const auto& [number, known] : fUsers) {
        if (known.user == User::Panel) {
            ++fState.panels;
            fState.stopped += fState.connected && known.isStopped ? 1 : 0;
        }
    }
    fState.concerned = fState.connected ? 0 : fState.panels;
}

void WatchedLink::forgetStopped()
{
    for (auto& entry : fUsers)
        entry.second.isStopped = isLost();
}
