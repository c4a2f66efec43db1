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
    fEnd.set_value(problem);
}

bool Exchange::waitUntilDone(SteadyClock::time_point time) const
{
    if (fAwaitedEnd.wait_until(time) != std::future_status::ready)
        return false;
    if (const SharedText& problem = fAwaitedEnd.get())
        throw ZoError(*problem);
    return true;
}

} // namespace zo
