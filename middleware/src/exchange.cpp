#include "exchange.h"

#include <utility>

namespace {

std::string latenessOf(const std::string& name, SteadyClock::time_point deadline)
{
    const auto left = std::chrono::round<std::chrono::milliseconds>(deadline - SteadyClock::now());
    return "no reply to " + name + " within " + std::to_string(left.count()) + " ms";
}

} // namespace

Exchange::Exchange(std::string name, std::shared_ptr<const std::string> bytes, int replies,
                   std::shared_ptr<ReplySink> sink, SteadyClock::time_point deadline)
    : fName(std::move(name)),
      fBytes(std::move(bytes)),
      fReplies(replies),
      fSink(std::move(sink)),
      fDeadline(deadline),
      fLateness(latenessOf(fName, deadline))
{
}

void Exchange::finish()
{
    end({});
}

void Exchange::fail(const std::string& text)
{
    end(text);
}

void Exchange::end(const std::string& problem)
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
    if (!fChanged.wait_until(lock, fDeadline, [this] { return fDone; }))
        return false;
    if (!fProblem.empty())
        throw ZoError(fProblem);
    return true;
}
