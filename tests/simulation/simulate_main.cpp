// SPDX-License-Identifier: MIT
#include "simulation/options.h"
#include "simulation/workers.h"

#include <kit/program.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

namespace {

constexpr std::uint64_t enoughForTable = 100000;
constexpr std::uint64_t leastOfCell = 100;

// Of the steady calls over each kind of network, in each kind of rhythm: where nothing is promised,
// 0 %.
constexpr std::uint64_t enoughForShare = 20000;

// So many schedules hold enough of every kind.
constexpr std::uint64_t longRun = 10000;
constexpr std::uint64_t leastPercentAnswered[networkKinds] = {95, 0, 80};

/// Whether there were no violations.
bool judgeSchedules(const Tally& tally)
{
    std::printf("%llu schedules, %llu violations, median of %llu events\n",
                static_cast<unsigned long long>(tally.schedules),
                static_cast<unsigned long long>(tally.violations),
                static_cast<unsigned long long>(tally.medianEvents()));
    return tally.violations == 0;
}

int judgeLink(const Tally& tally)
{
    printMet(tally);
    bool isGood = judgeSchedules(tally);
    if (!tally.hasEvenWaits()) {
        std::printf("the waits between attempts are not spread evenly over their bounds\n");
        isGood = false;
    }
    const int rare = tally.cellsBelow(leastOfCell);
    if (tally.schedules >= enoughForTable && rare > 0) {
        std::printf("%d cells that are possible were met less than %llu times\n", rare,
                    static_cast<unsigned long long>(leastOfCell));
        isGood = false;
    }
    if (const int impossible = tally.impossibleCellsMet()) {
        std::printf("%d cells that are impossible were met\n", impossible);
        isGood = false;
    }
    return isGood ? kit::exitDone : kit::exitFailed;
}

/// Whether enough of the steady calls found an answer.
/// `isLong`: the run is so long that there must be enough of them.
bool judgeSteady(NetworkKind kind, std::size_t rhythm, const Tally::Steady& steady, bool isLong)
{
    const double percent = 100.0 * static_cast<double>(steady.answered) /
                           static_cast<double>(std::max<std::uint64_t>(steady.calls, 1));
    const std::uint64_t least = leastPercentAnswered[static_cast<int>(kind)];
    const bool isGood =
        steady.calls < enoughForShare ? !isLong : steady.answered * 100 >= steady.calls * least;
    const int bound = rhythm < Tally::fRhythms.size() ? Tally::fRhythms[rhythm] : 10000;
    std::printf("%-8s%8d ms%12llu%12.1f %%", nameOf(kind), bound,
                static_cast<unsigned long long>(steady.calls), percent);
    if (!isGood)
        std::printf("  too few, or less than %llu %%", static_cast<unsigned long long>(least));
    std::printf("\n");
    return isGood;
}

int judgeFollowers(const Tally& tally)
{
    bool isGood = judgeSchedules(tally);
    std::printf("%-8s%11s%12s%14s\n", "network", "period to", "steady", "answered");
    for (int kind = 0; kind < networkKinds; ++kind) {
        for (std::size_t rhythm = 0; rhythm < Tally::fRhythmCount; ++rhythm) {
            if (!judgeSteady(static_cast<NetworkKind>(kind), rhythm, tally.steady[kind][rhythm],
                             tally.schedules >= longRun))
                isGood = false;
        }
    }
    return isGood ? kit::exitDone : kit::exitFailed;
}

int judgeCluster(const Tally& tally)
{
    bool isGood = judgeSchedules(tally);
    for (int trouble = 0; trouble < clusterTroubles; ++trouble) {
        const auto count = tally.troubles[static_cast<std::size_t>(trouble)];
        isGood = isGood && (tally.schedules < longRun || count >= leastOfCell);
        std::printf("%-30s%12llu\n", nameOf(static_cast<ClusterTrouble>(trouble)),
                    static_cast<unsigned long long>(count));
    }
    return isGood ? kit::exitDone : kit::exitFailed;
}

int run(const SimulateOptions& options)
{
    if (options.asksForHelp) {
        kit::print(simulateHelp());
        return kit::exitDone;
    }
    if (options.only)
        return runAlone(options) ? kit::exitDone : kit::exitFailed;
    const Tally tally = runAll(options);
    if (options.runsCluster)
        return judgeCluster(tally);
    return options.runsFollowers ? judgeFollowers(tally) : judgeLink(tally);
}

} // namespace

int main(int argc, char** argv)
{
    kit::prepareProcess();
    const std::vector<std::string> words(argv + 1, argv + argc);
    return kit::runProgram("scripts/simulate", [&] { return run(readSimulateOptions(words)); });
}
