// SPDX-License-Identifier: MIT
#include "link/link_state.h"

#include <zo/error.h>

#include <ctime>
#include <utility>

namespace zo {

namespace {

std::string clockText(std::chrono::system_clock::time_point time)
{
    const std::time_t seconds = std::chrono::system_clock::to_time_t(time);
    std::tm parts{};
    char text[32] = "";
    if (::localtime_r(&seconds, &parts))
        std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &parts);
    return text;
}

} // namespace

LinkState::LinkState(SharedText cause)
{
    fCondition.cause = std::move(cause);
}

void LinkState::set(const LinkCondition& condition) noexcept
{
    const std::lock_guard<std::mutex> lock(fMutex);
    if (fCondition.isUp != condition.isUp)
        fSince = std::chrono::system_clock::now();
    if (condition.isUp)
        ++fConnections;
    fCondition = condition;
    fChanged.notify_all();
}

ZoLinkStatus LinkState::status() const
{
    const std::lock_guard<std::mutex> lock(fMutex);
    ZoLinkStatus status;
    status.connected = fCondition.isUp;
    status.since = fSince;
    status.cause = fCondition.cause ? *fCondition.cause : std::string();
    status.refused = fCondition.isRefused;
    status.opening = fCondition.isOpening;
    status.closed = fCondition.isClosed;
    if (fCondition.node)
        status.node = fCondition.node->toText();
    status.inCluster = fCondition.isInCluster;
    return status;
}

int LinkState::connections() const
{
    const std::lock_guard<std::mutex> lock(fMutex);
    return fConnections;
}

NodePtr LinkState::node() const
{
    const std::lock_guard<std::mutex> lock(fMutex);
    return fCondition.node;
}

void LinkState::throwIfDown() const
{
    const std::lock_guard<std::mutex> lock(fMutex);
    if (!fCondition.isUp)
        throw ZoError(*fCondition.cause + " (no link since " + clockText(fSince) + ")");
}

bool LinkState::isUp() const
{
    const std::lock_guard<std::mutex> lock(fMutex);
    return fCondition.isUp;
}

bool LinkState::isOpening() const
{
    const std::lock_guard<std::mutex> lock(fMutex);
    return fCondition.isOpening;
}

bool LinkState::hasFailed() const
{
    const std::lock_guard<std::mutex> lock(fMutex);
    return !fCondition.isOpening && !fCondition.isUp;
}

void LinkState::waitForFirstAttempt(SteadyClock::time_point deadline)
{
    std::unique_lock<std::mutex> lock(fMutex);
    fChanged.wait_until(lock, deadline, [this] { return !fCondition.isOpening; });
    if (!fCondition.isUp)
        throw ZoError(*fCondition.cause);
}

} // namespace zo
