// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <chrono>
#include <ctime>

namespace kit {

/// How long it is until then, for calls of the system; not at all when that time is over.
inline timespec restUntil(std::chrono::steady_clock::time_point then)
{
    using std::chrono::nanoseconds;
    const nanoseconds rest =
        std::max<nanoseconds>(then - std::chrono::steady_clock::now(), nanoseconds(0));
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(rest);
    return {seconds.count(), (rest - seconds).count()};
}

} // namespace kit
