// SPDX-License-Identifier: MIT
#include "link/call.h"

#include <zo/error.h>

namespace zo {

void Call::end(const SharedText& problem, const SentSpan& sent) noexcept
{
    fEnd.set_value({problem, sent, SteadyClock::now()});
}

bool Call::waitUntilDone(SteadyClock::time_point time) const
{
    // In place of wait_until: without a system call when the time is over already.
    if (fAwaitedEnd.wait_for(time - SteadyClock::now()) != std::future_status::ready)
        return false;
    if (const SharedText& problem = fAwaitedEnd.get().problem)
        throw ZoError(*problem);
    return true;
}

} // namespace zo
