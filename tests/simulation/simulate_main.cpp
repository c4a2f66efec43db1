// SPDX-License-Identifier: MIT
#include "simulation/options.h"
#include "simulation/workers.h"

#include <kit/program.h>

#include <cstdio>
#include <string>
#include <vector>

namespace {

constexpr std::uint64_t enoughForTable = 100000;
constexpr std::uint64_t leastOfCell = 100;

int judge(const Tally& tally)
{
    printMet(tally);
    std::printf("%llu schedules, %llu violations, median of %llu events\n",
                static_cast<unsigned long long>(tally.schedules),
                static_cast<unsigned long long>(tally.violations),
                static_cast<unsigned long long>(tally.medianEvents()));
    bool isGood = tally.violations == 0;
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

int run(const SimulateOptions& options)
{
    if (options.asksForHelp) {
        kit::print(simulateHelp());
        return kit::exitDone;
    }
    if (options.only)
        return runAlone(options) ? kit::exitDone : kit::exitFailed;
    return judge(runAll(options));
}

} // namespace

int main(int argc, char** argv)
{
    kit::prepareProcess();
    const std::vector<std::string> words(argv + 1, argv + argc);
    return kit::runProgram("scripts/simulate", [&] { return run(readSimulateOptions(words)); });
}
