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

constexpr std::uint64_t enoughForShare = 10000;
constexpr std::uint64_t leastPercentAnswered = 92;

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

int judgeFollowers(const Tally& tally)
{
    bool isGood = judgeSchedules(tally);
    const double percent = 100.0 * static_cast<double>(tally.steadyAnswered) /
                           static_cast<double>(std::max<std::uint64_t>(tally.steadyCalls, 1));
    std::printf("%llu steady calls, %.1f %% of them found an answer\n",
                static_cast<unsigned long long>(tally.steadyCalls), percent);
    const bool isRare = tally.steadyAnswered * 100 < tally.steadyCalls * leastPercentAnswered;
    if (tally.schedules >= enoughForShare && (isRare || tally.steadyCalls == 0)) {
        std::printf("less than %llu %% of steady calls found an answer\n",
                    static_cast<unsigned long long>(leastPercentAnswered));
        isGood = false;
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
    return options.runsFollowers ? judgeFollowers(tally) : judgeLink(tally);
}

} // namespace

int main(int argc, char** argv)
{
    kit::prepareProcess();
    const std::vector<std::string> words(argv + 1, argv + argc);
    return kit::runProgram("scripts/simulate", [&] { return run(readSimulateOptions(words)); });
}
