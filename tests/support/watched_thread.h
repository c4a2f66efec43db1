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
#include <unistd.h>

/// A thread of which a test knows what it does. The destructor waits for its end.
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

    /// Whether it comes to wait for something, as for a lock or an answer; false when it ends
    /// before, or runs on and on.
    bool waits() const
    {
        int sleeping = 0;
        for (const QDeadlineTimer deadline(patience); sleeping < 2 && !deadline.hasExpired();) {
            if (endsWithin(std::chrono::milliseconds(1)))
                return false;
            sleeping = isSleeping() ? sleeping + 1 : 0;
        }
        return sleeping == 2;
    }

    bool ends() const { return endsWithin(std::chrono::milliseconds(patience)); }

    /// Throws what it threw.
    void join() { fEnded.get(); }

private:
    bool endsWithin(std::chrono::milliseconds time) const
    {
        return fEnded.wait_for(time) == std::future_status::ready;
    }

    bool isSleeping() const
    {
        QFile file(QString("/proc/self/task/%1/stat").arg(fId->load()));
        if (*fId == 0 || !file.open(QIODevice::ReadOnly))
            return false;
        const QByteArray text = file.readAll();
        return text.mid(text.lastIndexOf(')') + 2, 1) == "S";
    }

    std::shared_ptr<std::atomic<pid_t>> fId = std::make_shared<std::atomic<pid_t>>(0);
    std::future<void> fEnded;
};
