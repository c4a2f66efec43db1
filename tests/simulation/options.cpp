// SPDX-License-Identifier: MIT
#include "simulation/options.h"

#include <kit/option_words.h>
#include <kit/options_text.h>
#include <kit/usage_error.h>

#include <limits>

namespace {

constexpr std::uint32_t highest = std::numeric_limits<std::uint32_t>::max();
constexpr std::uint32_t mostJobs = 1000;

kit::Options simulateOptions(SimulateOptions& options)
{
    return {
        kit::flag("--followers", "run those who follow lists, in place of the link",
                  options.runsFollowers),
        kit::flag("--cluster", "run a link whose robot is on a cluster", options.runsCluster),
        kit::numberOption("--schedules", "N", "how many schedules are run (10000)", 1U, highest,
                          options.schedules),
        kit::numberOption("--seed", "S", "from which they all follow, with their numbers (1)", 0U,
                          highest, options.seed),
        kit::numberOption("--jobs", "N", "how many at the same time (one for each core)", 1U,
                          mostJobs, options.jobs),
        kit::flag("--stop-at-first", "end with the first violation", options.stopsAtFirst),
        {{"--only"},
         "N",
         "run schedule number N alone",
         [&options](const std::string& name, const std::string& text) {
             options.only = kit::numberFrom(name, text, 0U, highest);
         }},
        kit::flag("--trace", "with --only: tell what happens in it", options.isTraced),
        kit::settlingOption({"--help", "-h"}, "print this",
                            [&options] { options.asksForHelp = true; }),
    };
}

} // namespace

SimulateOptions readSimulateOptions(const std::vector<std::string>& words)
{
    SimulateOptions options;
    kit::Words rest(words);
    if (kit::readOptions(rest, simulateOptions(options)) == kit::OptionsEnd::Settled)
        return options;
    if (!rest.empty())
        throw kit::UsageError("'" + rest.next() + "' is no option");
    if (options.runsFollowers && options.runsCluster)
        throw kit::UsageError("--followers and --cluster are two different runs");
    if (options.isTraced && !options.only)
        throw kit::UsageError("--trace needs --only: it tells of one schedule");
    return options;
}

std::string simulateHelp()
{
    SimulateOptions any;
    return "Usage: scripts/simulate [OPTION]...\n"
           "Runs the machine of the link, or those who follow lists of a robot's memory, against "
           "a\n"
           "simulated robot, and tells what went wrong.\n"
           "\n" +
           kit::optionsText(simulateOptions(any)) +
           "\n"
           "Example: scripts/simulate --seed 1 --only 4711 --trace\n"
           "         scripts/simulate --followers --schedules 20000\n";
}
