// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <string>

namespace zo {

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
    /// Of what nobody stands and waits for: it takes as long as the link lives.
    static Deadline none() { return {SteadyClock::time_point::max(), {}}; }
    bool isNone() const { return at == SteadyClock::time_point::max(); }
};

/// "250 ms", for messages.
inline std::string inMilliseconds(std::chrono::nanoseconds time)
{
    return std::to_string(std::chrono::duration_cast<std::chrono::milliseconds>(time).count()) +
           " ms";
}

} // namespace zo
