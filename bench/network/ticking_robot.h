// SPDX-License-Identifier: MIT
#pragma once

#include "network/load.h"

#include <zo/value.h>

#include <array>
#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

struct redisContext;

/// A robot that writes the number of its tick into the keys that change, every 20 ms, on a thread
/// and a connection of its own. A server that comes back empty gets all keys again.
class TickingRobot
{
public:
    using Clock = std::chrono::steady_clock;

    /// Returns when all keys are written, to the server on `port` of this machine. Throws
    /// std::runtime_error when there is none.
    TickingRobot(int port, const Load& load);
    ~TickingRobot();
    TickingRobot(const TickingRobot&) = delete;
    TickingRobot& operator=(const TickingRobot&) = delete;

    /// When the newest tick began of which `values`, those of all keys in order, have everything
    /// that it and those before it wrote. None when a value is missing, or it is long ago.
    std::optional<Clock::time_point> writtenAt(const ZoValue& values) const;

    /// Ticks so far: a busy machine makes fewer than 50 a second.
    std::int64_t ticks() const { return fTick - fLoad.cycle() + 1; }

private:
    /// The commands that write a part of the keys, all with the same number.
    struct Group
    {
        std::string bytes;
        std::vector<std::size_t> places; ///< of the values in it
        int commands = 0;
    };

    Group makeGroup(int first, int keys) const;
    void setValue(Group& group, std::int64_t number) const;
    bool send(const Group& group);
    bool connect();
    bool writeAll();
    void run();
    bool pause(Clock::time_point until);

    const int fPort;
    const Load fLoad;
    std::unique_ptr<redisContext, void (*)(redisContext*)> fServer;
    std::vector<Group> fGroups;                                ///< one for each tick of a cycle
    Group fStill;                                              ///< keys that never change
    std::array<std::atomic<Clock::time_point>, 4096> fTimes{}; ///< of the last ticks
    std::atomic<std::int64_t> fTick;

    std::mutex fMutex;
    std::condition_variable fEnd;
    bool fIsEnding = false;
    std::thread fThread;
};
