// SPDX-License-Identifier: MIT
#pragma once

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <string>
#include <vector>

/// Two benchmarks of one run whose times are compared, and how they should compare.
struct Ratio
{
    std::string numerator;
    std::string denominator;
    double atMost;
};

/// Prints the usual table, and remembers the best time of each benchmark over its repetitions:
/// other work on the machine only ever makes a repetition slower.
class RatioReporter : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(const std::vector<Run>& runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            if (run.run_type == Run::RT_Iteration && !run.error_occurred)
                remember(run.run_name.function_name + "/" + run.run_name.args,
                         run.GetAdjustedRealTime());
        }
    }

    /// One line for each of `ratios` whose benchmarks both ran.
    void print(const std::vector<Ratio>& ratios) const
    {
        for (const Ratio& ratio : ratios) {
            const auto over = fBest.find(ratio.numerator);
            const auto under = fBest.find(ratio.denominator);
            if (over == fBest.end() || under == fBest.end())
                continue;
            const double value = over->second / under->second;
            std::printf("%-24s / %-24s %7.4g  (at most %g%s)\n", ratio.numerator.c_str(),
                        ratio.denominator.c_str(), value, ratio.atMost,
                        value <= ratio.atMost ? "" : ": MISSED");
        }
    }

private:
    void remember(const std::string& name, double time)
    {
        const auto [place, isNew] = fBest.emplace(name, time);
        if (!isNew && time < place->second)
            place->second = time;
    }

    std::map<std::string, double> fBest;
};
