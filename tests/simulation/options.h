// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

/// What a run of the simulation does.
struct SimulateOptions
{
    std::uint64_t schedules = 10000;
    std::uint64_t seed = 1;
    std::optional<std::uint64_t> only; ///< this schedule alone
    bool isTraced = false;
    std::uint64_t jobs = 0; ///< processes; 0: one for each core
    bool stopsAtFirst = false;
};

/// A command line that makes no sense.
class UsageError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

extern const char usage[];

/// Throws UsageError.
SimulateOptions readOptions(const std::vector<std::string>& words);
