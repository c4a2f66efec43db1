// SPDX-License-Identifier: MIT
#pragma once

#include <link/deadline.h>

#include <cstdint>
#include <functional>
#include <vector>

/// The clock of a simulated world, and what happens in it at which time. Time stands still while
/// something happens. It can jump over what was due; that happens then, in its order.
class Agenda
{
public:
    using Time = zo::SteadyClock::time_point;
    using Duration = std::chrono::nanoseconds;
    using Task = std::function<void()>;

    Time now() const { return fNow; }
    /// Never back.
    void passTo(Time time) { fNow = std::max(fNow, time); }

    void in(Duration wait, Task task) { at(fNow + wait, std::move(task)); }
    void at(Time time, Task task);

    /// Time::max() when nothing will happen any more.
    Time nextAt() const { return fTasks.empty() ? Time::max() : fTasks.front().at; }
    void runNext();

private:
    struct Entry
    {
        Time at;
        std::uint64_t number; ///< first come, first served
        Task task;

        bool operator<(const Entry& other) const
        {
            return at != other.at ? at > other.at : number > other.number;
        }
    };

    Time fNow{std::chrono::hours(1000)};
    std::uint64_t fCount = 0;
    std::vector<Entry> fTasks; ///< a heap
};
