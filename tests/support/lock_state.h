// SPDX-License-Identifier: MIT
#pragma once

#include "support/watched_thread.h"

#include <zo/mutex.h>

/// What another thread finds when it tries a lock right now. One that is held must be released
/// before the report is destroyed.
class LockAttempt
{
public:
    template <class Guard, class Mutex>
    static LockAttempt with(const Mutex& mutex)
    {
        return LockAttempt([mutex] { const Guard guard(mutex); });
    }

    /// The other thread had the lock and gave it back.
    bool succeeds() const { return fThread.ends(); }
    /// The other thread still waits for the lock.
    bool waits() const { return fThread.waits(); }

private:
    explicit LockAttempt(const std::function<void()>& attempt) : fThread(attempt) {}

    WatchedThread fThread;
};
