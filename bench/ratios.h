// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

/// Two benchmarks of one run whose times are compared, and how they should compare.
struct Ratio
{
    std::string numerator;
    std::string denominator;
    double atMost;
};

/// Runs the benchmarks that are registered, and prints the usual table and the ratios of their
/// best times: other work on the machine only ever makes a repetition slower. Takes the options
/// of the benchmark library, and before them "--smoke": every benchmark for a moment, to see that
/// it works and that each ratio has both its sides, whatever its value.
///
/// What main returns: 0 when all went well, 1 when a benchmark failed, a ratio lacks a side that
/// no --benchmark_filter left out, or one misses its target, 2 for unknown options.
int runBenchmarks(int argc, char** argv, const std::vector<Ratio>& ratios);
