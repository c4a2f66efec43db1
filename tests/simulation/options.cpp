// SPDX-License-Identifier: MIT
#include "simulation/options.h"

#include <charconv>

const char usage[] = "usage: simulate [--schedules N] [--seed S] [--jobs N] [--stop-at-first]\n"
                     "       simulate --only N [--seed S] [--trace]\n"
                     "  --schedules N    how many schedules are run (10000)\n"
                     "  --seed S         from which they all follow, with their numbers (1)\n"
                     "  --jobs N         how many at the same time (one for each core)\n"
                     "  --stop-at-first  end with the first violation\n"
                     "  --only N         run schedule number N alone\n"
                     "  --trace          tell what happens in it\n";

namespace {

std::uint64_t numberOf(const std::string& option, const std::string& text, std::uint64_t least)
{
    std::uint64_t number = 0;
    const char* const end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, number);
    if (read.ec != std::errc() || read.ptr != end || number < least)
        throw UsageError(option + " takes a whole number, " + std::to_string(least) +
                         " or more, and not '" + text + "'");
    return number;
}

} // namespace

SimulateOptions readOptions(const std::vector<std::string>& words)
{
    SimulateOptions options;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string& option = words[i];
        const auto number = [&](std::uint64_t least) {
            if (++i == words.size())
                throw UsageError(option + " needs a number");
            return numberOf(option, words[i], least);
        };
        if (option == "--schedules")
            options.schedules = number(1);
        else if (option == "--seed")
            options.seed = number(0);
        else if (option == "--jobs")
            options.jobs = number(1);
        else if (option == "--only")
            options.only = number(0);
        else if (option == "--trace")
            options.isTraced = true;
        else if (option == "--stop-at-first")
            options.stopsAtFirst = true;
        else
            throw UsageError("unknown option '" + option + "'");
    }
    if (options.isTraced && !options.only)
        throw UsageError("--trace needs --only: it tells of one schedule");
    return options;
}
