// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

/// Brings what is written into a file to the disk, by a thread of its own: a slow disk must not
/// hold up who writes.
class DiskSync
{
public:
    /// From a write to the disk it takes so long at most, beside what the disk takes.
    static constexpr std::chrono::milliseconds fInterval{500};

    /// `descriptor` outlives this.
    explicit DiskSync(int descriptor);
    ~DiskSync();
    DiskSync(const DiskSync&) = delete;
    DiskSync& operator=(const DiskSync&) = delete;

    /// Something was written. Returns the error (errno) that the disk had since the last call, or
    /// 0.
    int wrote();
    /// Returns when all is on the disk, with the error that it had since the last call of `wrote`,
    /// or 0. Nothing may be written then.
    int finish();

private:
    void run();
    int sync() const;
    void end();

    const int fDescriptor;
    std::mutex fMutex; ///< guards all below
    std::condition_variable fChanged;
    bool fIsDue = false;
    bool fIsEnding = false;
    int fError = 0;
    std::thread fThread; ///< the last: it begins when the others are there
};
