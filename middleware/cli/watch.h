// SPDX-License-Identifier: MIT
#pragma once

#include <zo/link_status.h>
#include <zo/memory_proxy.h>

#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace kit {
class Output;
}

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

/// Whom to watch.
struct WatchedRobot
{
    ZoMemoryProxy memory;
    std::function<ZoLinkStatus()> link;
};

/// What to watch, and how.
struct Watch
{
    std::vector<std::string> keys;
    std::chrono::milliseconds period;
    int count; ///< polls that print; 0: no end
};

/// Prints a record for each key and poll, with the seconds since now before it. The polls keep
/// their rate: one that is late makes the next no later. While the robot is lost, nothing is
/// printed; `tell` hears once that it is lost, and once that it is back. Throws ZoError when the
/// robot refuses user, password or certificate, since it would stay lost; and what Output does.
void watchValues(WatchedRobot& robot, const Watch& watch, kit::Output& output,
                 const std::function<void(const std::string&)>& tell,
                 const WatchTime& time = realTime());
