#include "watch.h"

#include "commands.h"
#include "output.h"

#include <zo/error.h>
#include <zo/memory_proxy.h>

namespace {

using Clock = std::chrono::steady_clock;

/// Times at a fixed distance from each other.
class Ticks
{
public:
    explicit Ticks(std::chrono::milliseconds period) : fPeriod(period), fNext(fStart) {}

    std::chrono::milliseconds sinceStart() const
    {
        return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - fStart);
    }

    /// The first one to come; those that are over are left out.
    Clock::time_point next()
    {
        const auto over = (Clock::now() - fNext) / fPeriod;
        fNext += fPeriod * (over + 1);
        return fNext;
    }

private:
    const std::chrono::milliseconds fPeriod;
    const Clock::time_point fStart = Clock::now();
    Clock::time_point fNext;
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

void watchValues(ZoMemoryProxy& memory, const Watch& watch, Output& output,
                 const std::function<void(const std::string&)>& tell)
{
    const ZoValue request = requestOf(watch.keys);
    Presence robot(tell);
    Ticks ticks(watch.period);
    for (int polls = 0; watch.count == 0 || polls < watch.count;) {
        const std::string seconds = secondsText(ticks.sinceStart());
        try {
            const ZoValue values = valuesOf(memory, request);
            robot.present();
            for (int i = 0; i < values.getSize(); ++i)
                output.add(seconds + "\t" +
                           recordOf(watch.keys[static_cast<std::size_t>(i)], values[i]));
            output.flush();
            ++polls;
        } catch (const ZoError& error) {
            robot.lost(error);
        }
        if (watch.count == 0 || polls < watch.count)
            output.waitUntil(ticks.next());
    }
}

std::string secondsText(std::chrono::milliseconds time)
{
    const std::string thousandths = std::to_string(time.count() % 1000);
    return std::to_string(time.count() / 1000) + "." + std::string(3 - thousandths.size(), '0') +
           thousandths;
}
