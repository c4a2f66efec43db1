// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>

using SteadyClock = std::chrono::steady_clock;

/// When something must be over, and how long that was when it began, for messages.
struct Deadline
{
    SteadyClock::time_point at;
    std::chrono::milliseconds allowed;

    static Deadline after(SteadyClock::time_point start, std::chrono::microseconds allowed)
    {
        return {start + allowed, std::chrono::round<std::chrono::milliseconds>(allowed)};
    }
};
