// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// What a run of the simulation does.
struct SimulateOptions
{
    bool asksForHelp = false;   ///< then nothing else matters
    bool runsFollowers = false; ///< schedules of followers instead of the link's
    bool runsCluster = false;   ///< schedules of a link to a cluster
    std::uint32_t schedules = 10000;
    std::uint32_t seed = 1;
    std::optional<std::uint32_t> only; ///< this schedule alone
    bool isTraced = false;
    std::uint32_t jobs = 0; ///< processes; 0: one for each core
    bool stopsAtFirst = false;
};

/// Throws kit::UsageError.
SimulateOptions readSimulateOptions(const std::vector<std::string>& words);

/// What --help prints.
std::string simulateHelp();
