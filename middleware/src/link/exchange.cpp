// SPDX-License-Identifier: MIT
#include "link/exchange.h"

#include <zo/error.h>

#include <utility>

namespace zo {

namespace {

// The I/O thread ends an exchange in time; this bounds the wait should it be starved.
constexpr std::chrono::milliseconds grace{250};

} // namespace

Exchange::Exchange(std::string name, SharedText bytes, int replies, std::shared_ptr<ReplySink> sink,
                   const Deadline& deadline)
    : fName(std::move(name)),
      fBytes(std::move(bytes)),
      fReplies(replies),
      fSink(std::move(sink)),
      fDeadline(deadline)
{
}

std::string Exchange::lateness() const
{
    return "no reply to " + fName + " within " + inMilliseconds(fDeadline.allowed);
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

bool Exchange::waitUntilDone()
{
    std::unique_lock<std::mutex> lock(fMutex);
    if (!fChanged.wait_until(lock, fDeadline.at + grace, [this] { return fDone; }))
        return false;
    if (fProblem)
        throw ZoError(*fProblem);
    return true;
}

} // namespace zo
