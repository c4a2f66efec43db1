// SPDX-License-Identifier: MIT
#include "link/exchange.h"

#include <zo/error.h>

#include <utility>

namespace zo {

Exchange::Exchange(std::string name, SharedText bytes, int replies, std::shared_ptr<ReplySink> sink,
                   const Deadline& deadline)
    : Inquiry(std::move(name), std::move(bytes), replies, std::move(sink)), fDeadline(deadline)
{
}

std::string Exchange::lateness() const
{
    return "no reply to " + name() + " within " + inMilliseconds(fDeadline.allowed);
}

void Exchange::end(const SharedText& problem) noexcept
{
    const std::lock_guard<std::mutex> lock(fMutex);
    if (fDone)
        return;
    fDone = true;
    fProblem = problem;
    fChanged.notify_all();
}

bool Exchange::waitUntilDone(SteadyClock::time_point time)
{
    std::unique_lock<std::mutex> lock(fMutex);
    if (!fChanged.wait_until(lock, time, [this] { return fDone; }))
        return false;
    if (fProblem)
        throw ZoError(*fProblem);
    return true;
}

} // namespace zo
