// SPDX-License-Identifier: MIT
#pragma once

#include "support/patience.h"

#include <QDeadlineTimer>
#include <QFile>

#include <atomic>
#include <chrono>
#include <functional>
#include <future>
#include <memory>
#include <stdexcept>
#include <unistd.h>

/// Whether this thread of the program sleeps: for a lock, an answer, or a time. There is no thread
/// 0.
inline bool isSleeping(pid_t thread)
{
    QFile file(QString("/proc/self/task/%1/stat").arg(thread));
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray text = file.readAll();
    return text.mid(text.lastIndexOf(')') + 2, 1) == "S";
}

/// Whether this thread comes to sleep for more than a moment; false when it runs on and on, or
/// `hasEnded`, which takes a millisecond.
template <class HasEnded>
bool comesToSleep(const std::atomic<pid_t>& thread, HasEnded hasEnded)
{
    int sleeping = 0;
    for (const QDeadlineTimer deadline(patience); sleeping < 2 && !deadline.hasExpired();) {
        if (hasEnded())
            return false;
        sleeping = isSleeping(thread) ? sleeping + 1 : 0;
    }
    return sleeping == 2;
}

/// A thread of which a test knows what it does. The destructor waits for its end, without which
/// there is no going on: what the thread uses goes next.
class WatchedThread
{
public:
    explicit WatchedThread(const std::function<void()>& action)
        : fEnded(std::async(std::launch::async, [id = fId, action] {
              *id = ::gettid();
              action();
          }))
    {
    }
    WatchedThread(WatchedThread&&) = default;
    WatchedThread& operator=(WatchedThread&&) = delete;
    ~WatchedThread()
    {
        if (fEnded.valid() && !ends())
            qFatal("a thread of the test does not end");
    }

    /// Whether it comes to wait for something, as for a lock or an answer; false when it ends
    /// before, or runs on and on.
    bool waits() const
    {
        return comesToSleep(*fId, [this] { return endsWithin(std::chrono::milliseconds(1)); });
    }

    bool ends() const { return endsWithin(std::chrono::milliseconds(patience)); }

    /// Throws what it threw, and std::runtime_error when it does not end.
    void join()
    {
        if (!ends())
            throw std::runtime_error("a thread of the test does not end");
        fEnded.get();
    }

private:
    bool endsWithin(std::chrono::milliseconds time) const
    {
        return fEnded.wait_for(time) == std::future_status::ready;
    }

    std::shared_ptr<std::atomic<pid_t>> fId = std::make_shared<std::atomic<pid_t>>(0);
    std::future<void> fEnded;
};
