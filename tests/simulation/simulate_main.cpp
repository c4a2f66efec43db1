// SPDX-License-Identifier: MIT
#include "simulation/options.h"
#include "simulation/workers.h"

#include <cstdio>
#include <exception>

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
    return isGood ? 0 : 1;
}

} // namespace

int main(int argc, char** argv)
{
    try {
        const SimulateOptions options = readOptions({argv + 1, argv + argc});
        if (options.only)
            return runAlone(options) ? 0 : 1;
        return judge(runAll(options));
    } catch (const UsageError& error) {
        std::fprintf(stderr, "simulate: %s\n%s", error.what(), usage);
        return 2;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "simulate: %s\n", error.what());
        return 3;
    }
}
