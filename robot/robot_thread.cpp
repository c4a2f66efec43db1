// SPDX-License-Identifier: MIT
#include "robot_thread.h"

#include <utility>

RobotThread::RobotThread(TickLoop& loop, std::function<void(std::exception_ptr)> onRefusal)
    : fLoop(loop), fOnRefusal(std::move(onRefusal)), fThread([this] { run(); })
{
}

RobotThread::~RobotThread()
{
    {
        const std::lock_guard<std::mutex> lock(fMutex);
        fShallEnd = true;
    }
    fWake.notify_one();
    fThread.join();
}

void RobotThread::run()
{
    try {
        while (waitForTurn())
            fLoop.goOn();
    } catch (...) {
        fOnRefusal(std::current_exception());
    }
}

/// Whether it goes on.
bool RobotThread::waitForTurn()
{
    std::unique_lock<std::mutex> lock(fMutex);
    return !fWake.wait_until(lock, fLoop.wakeAt(), [this] { return fShallEnd; });
}
