#pragma once

#include <zo/mutex.h>

#include <chrono>
#include <future>

/// What another thread finds when it tries a lock right now. A free lock is reported at once; a
/// held one after a short wait, in which the other thread stands in line: the report must be
/// destroyed only after the lock is released.
class LockAttempt
{
public:
    template <class Guard, class Mutex>
    static LockAttempt with(const Mutex& mutex)
    {
        return LockAttempt(std::async(std::launch::async, [mutex] { const Guard guard(mutex); }));
    }

    /// The other thread had the lock and gave it back.
    bool succeeds() { return endsWithin(std::chrono::seconds(20)); }
    /// The other thread still waits for the lock.
    bool waits() { return !endsWithin(std::chrono::milliseconds(50)); }

private:
    explicit LockAttempt(std::future<void> ended) : fEnded(std::move(ended)) {}
    bool endsWithin(std::chrono::milliseconds time)
    {
        return fEnded.wait_for(time) == std::future_status::ready;
    }

    std::future<void> fEnded;
};
