// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace kit {
class Output;
}
class ZoMemoryProxy;

/// The time in which a watch runs.
struct WatchTime
{
    using Point = std::chrono::steady_clock::time_point;

    std::function<Point()> now;
    /// Returns not before `then`; throws OutputClosed as soon as the reader of `output` is gone.
    std::function<void(const kit::Output& output, Point then)> wait;
};

/// That of this machine.
WatchTime realTime();

/// What to watch, and how.
struct Watch
{
    std::vector<std::string> keys;
    std::chrono::milliseconds period;
    int count; ///< polls that print; 0: no end
};

/// Prints a record for each key and poll, with the seconds since now before it. The polls keep
/// their rate: one that is late makes the next no later. While the robot is lost, nothing is
/// printed; `tell` hears once that it is lost, and once that it is back. Throws what Output does.
void watchValues(ZoMemoryProxy& memory, const Watch& watch, kit::Output& output,
                 const std::function<void(const std::string&)>& tell,
                 const WatchTime& time = realTime());

/// `time` in seconds with three decimals, in any locale.
std::string secondsText(std::chrono::milliseconds time);
