// SPDX-License-Identifier: MIT
#include "replay_clock.h"

#include <algorithm>
#include <cmath>

namespace {

using Nanoseconds = std::chrono::duration<double, std::nano>;

/// As far as a steady clock is sure to reach.
constexpr Nanoseconds furthest = std::chrono::hours(24 * 365 * 100);

} // namespace

ReplayClock::Time ReplayClock::at(Point now) const
{
    if (!fSince)
        return fStart;
    const Nanoseconds passed = Nanoseconds(now - *fSince) * fSpeed;
    return fStart + Time(static_cast<Time::rep>(std::floor(passed / Time(1))));
}

std::optional<ReplayClock::Point> ReplayClock::due(Time time) const
{
    if (!fSince)
        return {};
    const Nanoseconds wait = std::min(Nanoseconds(time - fStart) / fSpeed, furthest);
    return *fSince + std::chrono::nanoseconds(std::llround(wait.count()));
}

void ReplayClock::run(Point now)
{
    if (!fSince)
        fSince = now;
}

void ReplayClock::stop(Point now)
{
    fStart = at(now);
    fSince.reset();
}

void ReplayClock::setSpeed(Point now, double speed)
{
    startAgain(now, at(now));
    fSpeed = speed;
}

void ReplayClock::jump(Point now, Time time)
{
    startAgain(now, time);
}

void ReplayClock::startAgain(Point now, Time time)
{
    fStart = time;
    if (fSince)
        fSince = now;
}
