// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <optional>

/// Which moment of a recording it is, and when another one will be. A moment falls due at a time
/// that no earlier one adds an error to.
class ReplayClock
{
public:
    using Point = std::chrono::steady_clock::time_point;
    using Time = std::chrono::milliseconds; ///< of the recording, since the epoch

    /// Stands at `start`.
    ReplayClock(Time start, double speed) : fStart(start), fSpeed(speed) {}

    bool isRunning() const { return fSince.has_value(); }
    double speed() const { return fSpeed; }

    Time at(Point now) const;
    /// Nothing while the clock stands.
    std::optional<Point> due(Time time) const;

    void run(Point now);
    void stop(Point now);
    void setSpeed(Point now, double speed);
    void jump(Point now, Time time);

private:
    void startAgain(Point now, Time time);

    Time fStart;                 ///< the moment at fSince
    std::optional<Point> fSince; ///< nothing: it stands
    double fSpeed;
};
