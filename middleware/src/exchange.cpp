#include "exchange.h"

#include <utility>

Exchange::Exchange(std::string name, std::shared_ptr<const std::string> bytes, int replies,
                   std::shared_ptr<ReplySink> sink, const Deadline& deadline)
    : fName(std::move(name)),
      fBytes(std::move(bytes)),
      fReplies(replies),
      fSink(std::move(sink)),
      fDeadline(deadline)
{
}

std::string Exchange::lateness() const
{
    return "no reply to " + fName + " within " + std::to_string(fDeadline.allowed.count()) + " ms";
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
    if (!fChanged.wait_until(lock, fDeadline.at, [this] { return fDone; }))
        return false;
    if (!fProblem.empty())
        throw ZoError(fProblem);
    return true;
}
