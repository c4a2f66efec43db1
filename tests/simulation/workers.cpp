// SPDX-License-Identifier: MIT
#include "simulation/workers.h"

#include "simulation/cluster_schedule.h"
#include "simulation/following_schedule.h"
#include "simulation/schedule.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <exception>
#include <new>
#include <poll.h>
#include <stdexcept>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

constexpr std::uint64_t portion = 64;
constexpr std::uint64_t none = ~std::uint64_t{0};
constexpr std::uint64_t mostTold = 10;
constexpr std::chrono::seconds longestSchedule{20};

/// What a worker and its parent both see.
struct Desk
{
    Tally tally;
    std::atomic<std::uint64_t> current{none}; ///< the schedule that it runs
};

/// What the parent knows of a worker.
struct Worker
{
    pid_t pid;
    std::uint64_t seen = none; ///< at this schedule ...
    std::chrono::steady_clock::time_point since =
        std::chrono::steady_clock::now(); ///< ... from then
};

/// Lives in memory that all processes share.
struct Office
{
    std::atomic<std::uint64_t> next{0}; ///< schedule that nobody has begun
    std::atomic<std::uint64_t> told{0};
    std::atomic<bool> isOver{false};
};

template <class Thing>
Thing* makeShared(std::size_t count)
{
    void* const memory = ::mmap(nullptr, count * sizeof(Thing), PROT_READ | PROT_WRITE,
                                MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED)
        throw std::runtime_error(std::string("cannot share memory: ") + std::strerror(errno));
    auto* const things = static_cast<Thing*>(memory);
    std::uninitialized_default_construct_n(things, count);
    return things;
}

void runNumber(const SimulateOptions& options, std::uint64_t number, Tally& tally)
{
    if (options.runsFollowers)
        runFollowingSchedule(options.seed, number, tally, options.isTraced);
    else if (options.runsCluster)
        runClusterSchedule(options.seed, number, tally, options.isTraced);
    else
        runSchedule(options.seed, number, tally, options.isTraced);
}

void tell(const SimulateOptions& options, std::uint64_t number, const char* what)
{
    std::printf(
        "violation in schedule %llu: %s\n  again: scripts/simulate %s--seed %llu --only %llu "
        "--trace\n",
        static_cast<unsigned long long>(number), what,
        options.runsFollowers ? "--followers "
        : options.runsCluster ? "--cluster "
                              : "",
        static_cast<unsigned long long>(options.seed), static_cast<unsigned long long>(number));
    std::fflush(stdout);
}

/// The workers of a run, and who watches them.
class Workers
{
public:
    Workers(const SimulateOptions& options, std::size_t count)
        : fOptions(options),
          fCount(count),
          fOffice(makeShared<Office>(1)),
          fDesks(makeShared<Desk>(count))
    {
    }

    Tally run()
    {
        for (std::size_t i = 0; i < fCount; ++i)
            fWorkers.push_back({employ(fDesks[i], 0, 0)});
        while (fLeft > 0)
            watch();
        Tally all;
        for (std::size_t i = 0; i < fCount; ++i)
            all.add(fDesks[i].tally);
        return all;
    }

private:
    /// A worker that first runs the schedules from `first` to behind `end`, then others.
    pid_t employ(Desk& desk, std::uint64_t first, std::uint64_t end)
    {
        std::fflush(stdout);
        const pid_t pid = ::fork();
        if (pid < 0)
            throw std::runtime_error(std::string("cannot fork: ") + std::strerror(errno));
        if (pid > 0)
            return pid;
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        work(desk, first, end);
        std::fflush(stdout);
        ::_exit(0);
    }

    void work(Desk& desk, std::uint64_t first, std::uint64_t end)
    {
        while (!fOffice->isOver) {
            for (std::uint64_t number = first; number < end && !fOffice->isOver; ++number) {
                desk.current = number;
                runOne(desk.tally, number);
            }
            first = fOffice->next.fetch_add(portion);
            end = endOfPortion(first);
            if (first >= end)
                return;
        }
    }

    std::uint64_t endOfPortion(std::uint64_t number) const
    {
        return std::min<std::uint64_t>((number / portion + 1) * portion, fOptions.schedules);
    }

    void runOne(Tally& tally, std::uint64_t number)
    {
        try {
            runNumber(fOptions, number, tally);
        } catch (const std::exception& violation) {
            ++tally.schedules;
            note(tally, number, violation.what());
        }
    }

    void note(Tally& tally, std::uint64_t number, const char* what)
    {
        ++tally.violations;
        if (fOffice->told++ < mostTold)
            tell(fOptions, number, what);
        if (fOptions.stopsAtFirst)
            fOffice->isOver = true;
    }

    void watch()
    {
        ::poll(nullptr, 0, 20);
        for (std::size_t i = 0; i < fCount; ++i) {
            int status = 0;
            if (fWorkers[i].pid > 0 && ::waitpid(fWorkers[i].pid, &status, WNOHANG) != 0)
                fWorkers[i] = {successor(fDesks[i], WIFEXITED(status) && WEXITSTATUS(status) == 0)};
            else if (fWorkers[i].pid > 0)
                killIfStuck(fWorkers[i], fDesks[i].current);
        }
    }

    static void killIfStuck(Worker& worker, std::uint64_t current)
    {
        const auto now = std::chrono::steady_clock::now();
        if (worker.seen != current)
            worker = {worker.pid, current, now};
        else if (now - worker.since > longestSchedule)
            ::kill(worker.pid, SIGKILL);
    }

    /// Another one does the rest of what one that crashed has begun; 0: nobody need.
    pid_t successor(Desk& desk, bool isDone)
    {
        const std::uint64_t number = desk.current;
        if (!isDone) {
            ++desk.tally.schedules;
            note(desk.tally, number, "the program crashes or hangs");
        }
        if (!isDone && !fOffice->isOver)
            return employ(desk, number + 1, endOfPortion(number));
        --fLeft;
        return 0;
    }

    const SimulateOptions& fOptions;
    const std::size_t fCount;
    std::size_t fLeft = fCount;
    Office* const fOffice;
    Desk* const fDesks;
    std::vector<Worker> fWorkers;
};

} // namespace

Tally runAll(const SimulateOptions& options)
{
    const std::uint64_t cores = std::max(1U, std::thread::hardware_concurrency());
    return Workers(options, options.jobs > 0 ? options.jobs : cores).run();
}

bool runAlone(const SimulateOptions& options)
{
    Tally tally;
    try {
        runNumber(options, *options.only, tally);
    } catch (const std::exception& violation) {
        std::printf("violation in schedule %llu: %s\n",
                    static_cast<unsigned long long>(*options.only), violation.what());
        return false;
    }
    std::printf("schedule %llu: no violation\n", static_cast<unsigned long long>(*options.only));
    return true;
}
