// SPDX-License-Identifier: MIT
#include "watch.h"

#include "commands.h"

#include <kit/output.h>
#include <kit/refusal.h>

#include <zo/error.h>

namespace {

/// Times at a fixed distance from each other, the first of them `start`.
class Ticks
{
public:
    Ticks(WatchTime::Point start, std::chrono::milliseconds period)
        : fStart(start), fPeriod(period), fNext(start)
    {
    }

    std::chrono::milliseconds sinceStart(WatchTime::Point now) const
    {
        return std::chrono::duration_cast<std::chrono::milliseconds>(now - fStart);
    }

    /// The first one behind `now`; those that are over are left out.
    WatchTime::Point next(WatchTime::Point now)
    {
        const auto over = (now - fNext) / fPeriod;
        fNext += fPeriod * (over + 1);
        return fNext;
    }

private:
    const WatchTime::Point fStart;
    const std::chrono::milliseconds fPeriod;
    WatchTime::Point fNext;
};

/// Tells each change of the robot's presence once.
class Presence
{
public:
    explicit Presence(const std::function<void(const std::string&)>& tell) : fTell(tell) {}

    void lost(const ZoError& error)
    {
        if (fPresent)
            fTell("the robot is lost: " + error.toString());
        fPresent = false;
    }

    void present()
    {
        if (!fPresent)
            fTell("the robot is back");
        fPresent = true;
    }

private:
    std::function<void(const std::string&)> fTell;
    bool fPresent = true;
};

} // namespace

WatchTime realTime()
{
    return {std::chrono::steady_clock::now, &kit::Output::waitUntil};
}

void watchValues(WatchedRobot& robot, const Watch& watch, kit::Output& output,
                 const std::function<void(const std::string&)>& tell, const WatchTime& time)
{
    const ZoValue request = requestOf(watch.keys);
    Presence presence(tell);
    Ticks ticks(time.now(), watch.period);
    for (int polls = 0; watch.count == 0 || polls < watch.count;) {
        const std::string seconds = secondsText(ticks.sinceStart(time.now()));
        try {
            const ZoValue values = valuesOf(robot.memory, request);
            presence.present();
            for (int i = 0; i < values.getSize(); ++i)
                output.add(seconds + "\t" +
                           recordOf(watch.keys[static_cast<std::size_t>(i)], values[i]));
            output.flush();
            ++polls;
        } catch (const ZoUnderWay&) {
            // It is there at the next time.
        } catch (const ZoError& error) {
            kit::throwIfRefused(robot.link());
            presence.lost(error);
        }
        if (watch.count == 0 || polls < watch.count)
            time.wait(output, ticks.next(time.now()));
    }
}

std::string secondsText(std::chrono::milliseconds time)
{
    const std::string thousandths = std::to_string(time.count() % 1000);
    return std::to_string(time.count() / 1000) + "." + std::string(3 - thousandths.size(), '0') +
           thousandths;
}
