#include "link_state.h"

#include <zo/error.h>

#include <ctime>

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

LinkState::LinkState(const std::string& cause)
{
    fStatus.since = std::chrono::system_clock::now();
    fStatus.cause = cause;
}

void LinkState::setUp()
{
    set(true, {});
}

void LinkState::setDown(const std::string& cause)
{
    set(false, cause);
}

void LinkState::set(bool connected, const std::string& cause)
{
    const std::lock_guard<std::mutex> lock(fMutex);
    if (fStatus.connected != connected)
        fStatus.since = std::chrono::system_clock::now();
    fStatus.connected = connected;
    fStatus.cause = cause;
    fTried = true;
    fChanged.notify_all();
}

ZoLinkStatus LinkState::status() const
{
    const std::lock_guard<std::mutex> lock(fMutex);
    return fStatus;
}

void LinkState::throwIfDown() const
{
    const std::lock_guard<std::mutex> lock(fMutex);
    if (!fStatus.connected)
        throw ZoError(fStatus.cause + " (no link since " + clockText(fStatus.since) + ")");
}

void LinkState::waitForFirstAttempt(SteadyClock::time_point deadline)
{
    std::unique_lock<std::mutex> lock(fMutex);
    fChanged.wait_until(lock, deadline, [this] { return fTried; });
    if (!fStatus.connected)
        throw ZoError(fStatus.cause);
}
