// SPDX-License-Identifier: MIT
#include "ratios.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <map>
#include <optional>
#include <string_view>

namespace {

/// Whether it ended with an error, which newer versions of the library tell by another name.
template <class Run>
auto isFailed(const Run& run, int /*preferred*/) -> decltype(bool(run.error_occurred))
{
    return run.error_occurred;
}

template <class Run>
auto isFailed(const Run& run, long /*otherwise*/) -> decltype(run.skipped == run.skipped)
{
    return run.skipped != decltype(run.skipped){};
}

/// Prints the usual table, and remembers the best time of each benchmark over its repetitions.
class BestTimes : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(const std::vector<Run>& runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            if (run.run_type != Run::RT_Iteration)
                continue;
            if (isFailed(run, 0)) {
                fHasFailed = true;
                continue;
            }
            remember(run.run_name.function_name + "/" + run.run_name.args,
                     run.GetAdjustedRealTime());
        }
    }

    /// Whether one of them ended with an error, which is in the table.
    bool hasFailed() const { return fHasFailed; }

    std::optional<double> of(const std::string& name) const
    {
        const auto found = fBest.find(name);
        return found == fBest.end() ? std::nullopt : std::optional<double>(found->second);
    }

private:
    void remember(const std::string& name, double time)
    {
        const auto [place, isNew] = fBest.emplace(name, time);
        if (!isNew)
            place->second = std::min(place->second, time);
    }

    std::map<std::string, double> fBest;
    bool fHasFailed = false;
};

struct Judgement
{
    bool isSmoke;
    bool isFiltered;
};

/// Prints the ratio; whether it is as it should be.
bool judge(const Ratio& ratio, const BestTimes& times, const Judgement& judgement)
{
    const auto over = times.of(ratio.numerator);
    const auto under = times.of(ratio.denominator);
    if (!over && !under && judgement.isFiltered)
        return true;
    if (!over || !under) {
        std::printf("%-24s / %-24s NOT RUN: %s\n", ratio.numerator.c_str(),
                    ratio.denominator.c_str(),
                    (over ? ratio.denominator : ratio.numerator).c_str());
        return false;
    }
    const double value = *over / *under;
    const bool holds = judgement.isSmoke || value <= ratio.atMost;
    std::printf("%-24s / %-24s %7.4g  (at most %g%s)\n", ratio.numerator.c_str(),
                ratio.denominator.c_str(), value, ratio.atMost, holds ? "" : ": MISSED");
    return holds;
}

} // namespace

int runBenchmarks(int argc, char** argv, const std::vector<Ratio>& ratios)
{
    std::vector<char*> words(argv, argv + argc);
    char moment[] = "--benchmark_min_time=0";
    Judgement judgement{argc > 1 && std::string_view(argv[1]) == "--smoke", false};
    if (judgement.isSmoke)
        words[1] = moment;
    for (const std::string_view word : words)
        judgement.isFiltered = judgement.isFiltered || word.substr(0, 18) == "--benchmark_filter";

    int count = argc;
    benchmark::Initialize(&count, words.data());
    if (benchmark::ReportUnrecognizedArguments(count, words.data()))
        return 2;
    BestTimes times;
    benchmark::RunSpecifiedBenchmarks(&times);
    const auto missed = std::count_if(ratios.begin(), ratios.end(), [&](const Ratio& ratio) {
        return !judge(ratio, times, judgement);
    });
    return missed > 0 || times.hasFailed() ? 1 : 0;
}
