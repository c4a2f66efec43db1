// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <csignal>
#include <initializer_list>

namespace kit {

/// Signals that the program waits for in place of being interrupted by them. Blocked from then on
/// in the thread that makes this, and in every thread that it makes later: make it in the main
/// thread before there is any other. Those that were ignored already stay so.
class Signals
{
public:
    explicit Signals(std::initializer_list<int> numbers);

    /// The next of them that comes before `then`, by the steady clock; 0 when none does.
    int waitUntil(std::chrono::steady_clock::time_point then) const;

private:
    sigset_t fSet{};
};

} // namespace kit
