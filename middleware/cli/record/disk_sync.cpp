// SPDX-License-Identifier: MIT
#include "disk_sync.h"

#include <cerrno>
#include <unistd.h>
#include <utility>

DiskSync::DiskSync(int descriptor) : fDescriptor(descriptor), fThread([this] { run(); }) {}

DiskSync::~DiskSync()
{
    end();
}

/// An error is told to one of those who ask only: what the thread has heard counts, too.
int DiskSync::finish()
{
    end();
    const int error = sync();
    const int earlier = std::exchange(fError, 0);
    return earlier != 0 ? earlier : error;
}

void DiskSync::end()
{
    if (!fThread.joinable())
        return;
    {
        const std::lock_guard<std::mutex> lock(fMutex);
        fIsEnding = true;
    }
    fChanged.notify_all();
    fThread.join();
}

int DiskSync::wrote()
{
    const std::lock_guard<std::mutex> lock(fMutex);
    if (!std::exchange(fIsDue, true))
        fChanged.notify_all();
    return std::exchange(fError, 0);
}

void DiskSync::run()
{
    std::unique_lock<std::mutex> lock(fMutex);
    while (true) {
        fChanged.wait(lock, [this] { return fIsDue || fIsEnding; });
        if (fIsEnding)
            return;
        const auto next = std::chrono::steady_clock::now() + fInterval;
        fIsDue = false;
        lock.unlock();
        const int error = sync();
        lock.lock();
        if (error != 0)
            fError = error;
        fChanged.wait_until(lock, next, [this] { return fIsEnding; });
    }
}

int DiskSync::sync() const
{
    return ::fdatasync(fDescriptor) == 0 ? 0 : errno;
}
