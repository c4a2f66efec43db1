// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>

/// Times at a fixed distance from each other, the first of them `start`.
class Ticks
{
public:
    using Point = std::chrono::steady_clock::time_point;

    Ticks(Point start, std::chrono::milliseconds period)
        : fStart(start), fPeriod(period), fNext(start)
    {
    }

    std::chrono::milliseconds sinceStart(Point now) const
    {
        return std::chrono::duration_cast<std::chrono::milliseconds>(now - fStart);
    }

    /// The first one behind `now`; those that are over are left out.
    Point next(Point now)
    {
        const auto over = (now - fNext) / fPeriod;
        fNext += fPeriod * (over + 1);
        return fNext;
    }

    /// How many there have been before the one that next gave last: the left out ones, too.
    std::int64_t passed() const { return (fNext - fStart) / fPeriod; }

private:
    const Point fStart;
    const std::chrono::milliseconds fPeriod;
    Point fNext;
};
