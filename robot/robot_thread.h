// SPDX-License-Identifier: MIT
#pragma once

#include "tick_loop.h"

#include <condition_variable>
#include <exception>
#include <functional>
#include <mutex>
#include <thread>

/// Runs the loop of one robot in a thread of its own, so that no robot waits for another's server,
/// until this object goes or the robot's server refuses it. Signals that shall reach another thread
/// must be blocked before.
class RobotThread
{
public:
    /// `onRefusal` is called in the thread, with what was thrown, as the last thing that it does.
    RobotThread(TickLoop& loop, std::function<void(std::exception_ptr)> onRefusal);
    ~RobotThread();
    RobotThread(const RobotThread&) = delete;
    RobotThread& operator=(const RobotThread&) = delete;

private:
    void run();
    bool waitForTurn();

    TickLoop& fLoop;
    const std::function<void(std::exception_ptr)> fOnRefusal;
    std::mutex fMutex;
    std::condition_variable fWake;
    bool fShallEnd = false;
    std::thread fThread; ///< behind all that it uses
};
