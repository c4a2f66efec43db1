// SPDX-License-Identifier: MIT
#include "network/cells.h"

#include "network/least_bytes.h"
#include "network/ticking_robot.h"
#include "network/watched_panel.h"
#include "raw_fetch.h"
#include "support/redis_server.h"

#include <algorithm>
#include <optional>

using std::chrono::microseconds;
using std::chrono::seconds;

namespace {

using Clock = LoopWatch::Clock;
using Reading = WatchedPanel::Reading;
using std::chrono::milliseconds;

constexpr milliseconds period{100};

struct Figures
{
    Samples stretches;
    Samples own;
    Samples calls;
    Samples ages;
    double fetches = 0; ///< a second
    FetchBytes bytes;   ///< of a fetch
    double ticks = 0;   ///< of the robot, a second
};

/// Measures one panel.
class Measurement
{
public:
    Measurement(const NetworkProfile& profile, const Load& load, const RedisServer& server,
                LoopWatch& loop, Reading reading)
        : fLoop(loop),
          fRobot(server.port(), load),
          fNetwork(server.port(), profile.way),
          fPanel(fNetwork.port(), reading, load.keys, load.keys, loop)
    {
        fPanel.memory->whenAnswered = [this](const ZoValue& values) { take(values); };
    }

    Figures run(milliseconds time)
    {
        fPanel.open();
        fPanel.start();
        settle(time);
        begin();
        const auto start = Clock::now();
        WatchedPanel::pass(time);
        return end(std::chrono::duration<double>(Clock::now() - start).count());
    }

private:
    /// Until the link knows the panel's rhythm and the network's, if it comes to that.
    void settle(milliseconds time)
    {
        const auto most = Clock::now() + std::min<milliseconds>(3 * time, seconds(6));
        const int enough = time < seconds(1) ? 2 : 15;
        while (fPanel.memory->answered < enough && Clock::now() < most)
            WatchedPanel::pass(period);
    }

    void begin()
    {
        fLoop.clear();
        fPanel.memory->calls.clear();
        fAges.clear();
        fFetches = 0;
        fTicks = fRobot.ticks();
        fUp = fNetwork.bytesUp();
        fDown = fNetwork.bytesDown();
    }

    Figures end(double seconds)
    {
        Figures figures;
        figures.bytes = {static_cast<double>(fNetwork.bytesUp() - fUp),
                         static_cast<double>(fNetwork.bytesDown() - fDown)};
        figures.ticks = static_cast<double>(fRobot.ticks() - fTicks) / seconds;
        fLoop.begin(Clock::now() + std::chrono::seconds(1)); // the end of the last stretch
        figures.stretches = fLoop.stretches;
        figures.own = fLoop.own;
        fLoop.clear();
        figures.calls = fPanel.memory->calls;
        figures.ages = fAges;
        figures.fetches = fFetches / seconds;
        figures.bytes.up /= std::max(fFetches, 1.0);
        figures.bytes.down /= std::max(fFetches, 1.0);
        return figures;
    }

    /// An answer that was given before is no fetch.
    void take(const ZoValue& values)
    {
        const auto written = fRobot.writtenAt(values);
        if (!written)
            return;
        fAges.add(Clock::now() - *written);
        if (*written > fNewest)
            ++fFetches;
        fNewest = std::max(fNewest, *written);
    }

    LoopWatch& fLoop;
    TickingRobot fRobot;
    NetworkEmulator fNetwork;
    WatchedPanel fPanel;
    Samples fAges;
    Clock::time_point fNewest{};
    double fFetches = 0;
    std::int64_t fTicks = 0;
    std::uint64_t fUp = 0;
    std::uint64_t fDown = 0;
};

/// The median time of a bare MGET of all keys, on the machine itself, while the robot writes.
std::optional<double> bareMget(const RedisServer& server, const Load& load, milliseconds time)
{
    const TickingRobot robot(server.port(), load);
    RawFetch raw(server.port(), Load::keyNames(0, load.keys));
    raw.format();
    Samples times;
    for (const auto end = Clock::now() + time; Clock::now() < end;) {
        const auto begin = Clock::now();
        if (!raw.fetch())
            return {};
        times.add(Clock::now() - begin);
        WatchedPanel::pass(milliseconds(10));
    }
    return times.quantile(0.5);
}

double inMilliseconds(std::chrono::microseconds time)
{
    return std::chrono::duration<double, std::milli>(time).count();
}

std::optional<double> shareOfBytes(const Load& load)
{
    if (load.changing == Load::Changing::All)
        return 105;
    // One key is more than 1 % of a short list.
    if (load.keys < 100)
        return {};
    return load.changing == Load::Changing::Same ? 10 : 20;
}

/// One cell's lines.
class CellReport
{
public:
    CellReport(const NetworkProfile& profile, const Load& load, Report& report)
        : fProfile(profile), fLoad(load), fReport(report)
    {
        const FetchBytes least = leastBytes(load, static_cast<int>(period / Load::fTick));
        const double aSecond = seconds(1) / period;
        fFits = profile.carries(least.up * aSecond, least.down * aSecond);
    }

    void print(const Figures& followed, const Figures& plain)
    {
        fReport.begin(fProfile.text + "; " + fLoad.text());
        printStalls(followed, plain);
        fReport.line("fetches a second", followed.fetches, plain.fetches,
                     fitting(atLeast(fProfile.leastRate)));
        const double age =
            inMilliseconds(fProfile.roundTrip() / 2 + fProfile.way.jitter) + fAgeOfRobotAndCaller;
        fReport.line("age of the values, median, ms", followed.ages.quantile(0.5),
                     plain.ages.quantile(0.5), fitting(atMost(age)));
        fReport.line("age of the values, 99 %, ms", followed.ages.quantile(0.99),
                     plain.ages.quantile(0.99));
        printBytes(followed, plain);
        fReport.line("the robot's ticks a second, of 50", followed.ticks, plain.ticks);
    }

private:
    // The robot's ticks of 20 ms are in it.
    static constexpr double fAgeOfRobotAndCaller = 40;

    std::optional<Target> fitting(const Target& target) const
    {
        return fFits ? std::optional<Target>(target) : std::nullopt;
    }

    void printStalls(const Figures& followed, const Figures& plain)
    {
        fReport.line("window held up, longest, ms", followed.stretches.longest(),
                     plain.stretches.longest());
        fReport.line("window held up, 99 %, ms", followed.stretches.quantile(0.99),
                     plain.stretches.quantile(0.99));
        fReport.line("of that in getListData, longest, ms", followed.calls.longest(),
                     plain.calls.longest(), atMost(20));
        fReport.line("of that in getListData, 99 %, ms", followed.calls.quantile(0.99),
                     plain.calls.quantile(0.99), atMost(10));
        fReport.line("by the panel itself, longest, ms", followed.own.longest(),
                     plain.own.longest());
        fReport.line("by the panel itself, 99 %, ms", followed.own.quantile(0.99),
                     plain.own.quantile(0.99));
    }

    void printBytes(const Figures& followed, const Figures& plain)
    {
        const FetchBytes whole = plainBytes(fLoad);
        const FetchBytes least = leastBytes(fLoad, static_cast<int>(period / Load::fTick));
        fReport.line("bytes of a fetch, up", followed.bytes.up, plain.bytes.up);
        fReport.line("bytes of a fetch, down", followed.bytes.down, plain.bytes.down);
        fReport.line("the least of such a fetch, up", least.up, whole.up);
        fReport.line("the least of such a fetch, down", least.down, whole.down);
        std::optional<Target> target;
        if (const auto share = shareOfBytes(fLoad); share && fFits)
            target = atMost(*share);
        fReport.line("bytes, in % of a plain MGET's", followed.bytes.both() / whole.both() * 100,
                     plain.bytes.both() / whole.both() * 100, target);
    }

    const NetworkProfile& fProfile;
    const Load& fLoad;
    Report& fReport;
    bool fFits; ///< the least bytes of ten fetches a second, into the network
};

} // namespace

void reportCell(const NetworkProfile& profile, const Load& load, milliseconds time, LoopWatch& loop,
                Report& report)
{
    const milliseconds every = profile.way.pauseEvery;
    if (every > milliseconds(0) && time >= seconds(1))
        time = (time + every - milliseconds(1)) / every * every;
    const RedisServer server;
    const auto figures = [&](Reading reading) {
        return Measurement(profile, load, server, loop, reading).run(time);
    };
    const Figures followed = figures(Reading::Followed);
    const Figures plain = figures(Reading::Plain);
    CellReport(profile, load, report).print(followed, plain);
    const bool isCompared = load.keys >= 10000 && load.changing != Load::Changing::All;
    if (profile.roundTrip() > microseconds(0) || !isCompared)
        return;
    const auto bare = bareMget(server, load, std::min<milliseconds>(time, seconds(2)));
    report.line("a bare MGET, ms", {}, bare);
    const auto call = followed.calls.quantile(0.5);
    const auto ratio = bare && call ? Report::Figure(*call / *bare) : std::nullopt;
    report.line("getListData, median, of a bare MGET", ratio, {}, atMost(0.3));
}
