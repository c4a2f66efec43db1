// SPDX-License-Identifier: MIT
#include "arguments.h"

#include <kit/options_text.h>
#include <kit/usage_error.h>
#include <kit/version_text.h>
#include <zo/address.h>

#include <csv.h>

#include <algorithm>
#include <limits>
#include <utility>

namespace {

using Action = RobotArguments::Action;
using kit::UsageError;

constexpr double lowestRate = 0.1;
constexpr double highestRate = 1000;

kit::Options serverOptions(RobotArguments& arguments)
{
    return {
        kit::numberOption("--port", "PORT", "port of the private server (a free one)", 1,
                          ZoAddress::fHighestPort, arguments.port),
        kit::flag("--open", "let everybody on this machine read it, without a password",
                  arguments.open),
    };
}

void storeFrom(ReplayArguments& replay, const std::string& name, const std::string& text)
{
    replay.from = kit::jumpFrom(text);
    if (!replay.from)
        throw UsageError(name +
                         " must be a time from the start with its unit (ms, s, min, h, d), as "
                         "in 90s, or seconds since 1970, not '" +
                         text + "'");
}

kit::Options replayOptions(ReplayArguments& replay)
{
    return {
        kit::textOption("--replay", "FILE", "play the recording FILE of zo record", replay.path),
        kit::numberOption("--speed", "X", "so many times as fast, 0.001 to 1000 (1)",
                          kit::lowestReplaySpeed, kit::highestReplaySpeed, replay.speed),
        kit::flag("--loop", "begin again at the end", replay.loops),
        {{"--from"},
         "TIME",
         "begin there: so far from the start, as in 90s or 1.5h, or at so many seconds since 1970",
         [&replay](const std::string& name, const std::string& text) {
             storeFrom(replay, name, text);
         }},
        kit::flag("--paused", "begin when it is told to play", replay.isPaused),
    };
}

kit::Options robotOptions(RobotArguments& arguments)
{
    return {
        kit::numberOption("--rate", "HZ",
                          "times per second that all keys are written, 0.1 to 1000 (50); a machine "
                          "too slow for it skips some",
                          lowestRate, highestRate, arguments.rate),
        kit::numberOption("--keys", "N", "how many keys, 1 to 100000 (200)", 1, maxRobotKeys,
                          arguments.keys),
        kit::numberOption<std::uint32_t>("--seed", "S",
                                         "another seed, a slightly different robot (1)", 0,
                                         std::numeric_limits<std::uint32_t>::max(), arguments.seed),
        kit::numberOption("--robots", "N",
                          "so many robots, 1 to 1000, each with a link and a seed of its own, and "
                          "with its number, from 1 on, in place of % in --prefix",
                          1, maxRobots, arguments.robots),
    };
}

kit::Options aboutOptions(RobotArguments& arguments)
{
    return kit::aboutOptions([&arguments] { arguments.action = Action::Help; },
                             [&arguments] { arguments.action = Action::Version; });
}

kit::Options generalOptions(RobotArguments& arguments)
{
    return kit::joined(kit::joined(serverOptions(arguments), robotOptions(arguments)),
                       aboutOptions(arguments));
}

kit::Options allOptions(RobotArguments& arguments)
{
    return kit::joined(kit::joined(generalOptions(arguments), replayOptions(arguments.replay)),
                       kit::connectionOptions(arguments.connection));
}

void checkServer(const RobotArguments& arguments)
{
    const kit::Connection& connection = arguments.connection;
    if (connection.isGiven && arguments.port != 0)
        throw UsageError("--port is for the robot's own server: write --connect HOST:PORT");
    if (!connection.isGiven && (!connection.options.user.empty() || connection.options.tls))
        throw UsageError("--user and --tls are for a server that is given with --connect");
    if (arguments.open && (connection.isGiven || !connection.passwordFile.empty()))
        throw UsageError("--open is for the robot's own server, and does not go with "
                         "--password-file");
}

void checkRobots(const RobotArguments& arguments)
{
    const std::string& prefix = arguments.connection.options.prefix;
    const auto signs = std::count(prefix.begin(), prefix.end(), robotNumberSign);
    if (arguments.robots > 0 && signs != 1)
        throw UsageError("--robots needs one % in --prefix, for each robot's number, as in "
                         "--prefix '{robot%}/'");
}

void checkReplay(const RobotArguments& arguments)
{
    const ReplayArguments& replay = arguments.replay;
    const bool isMeant = replay.loops || replay.isPaused || replay.from || replay.speed != 1;
    if (replay.path.empty() && isMeant)
        throw UsageError("--speed, --loop, --from and --paused are for --replay FILE");
    const RobotArguments usual;
    const bool isSimulated = arguments.rate != usual.rate || arguments.keys != usual.keys ||
                             arguments.seed != usual.seed || arguments.robots != usual.robots;
    if (!replay.path.empty() && isSimulated)
        throw UsageError("--rate, --keys, --seed and --robots are for the simulated robot: "
                         "--replay plays what was recorded");
}

} // namespace

std::vector<std::string> robotPrefixes(const RobotArguments& arguments)
{
    const std::string& prefix = arguments.connection.options.prefix;
    if (arguments.robots == 0)
        return {prefix};
    const std::size_t sign = prefix.find(robotNumberSign);
    std::vector<std::string> prefixes;
    for (int number = 1; number <= arguments.robots; ++number)
        prefixes.push_back(std::string(prefix).replace(sign, 1, std::to_string(number)));
    return prefixes;
}

RobotArguments parseArguments(const std::vector<std::string>& words)
{
    RobotArguments arguments;
    kit::Words rest(words);
    const kit::OptionsEnd end = kit::readOptions(rest, allOptions(arguments));
    if (end == kit::OptionsEnd::Settled)
        return arguments;
    kit::refuseOperands(rest);
    checkServer(arguments);
    checkRobots(arguments);
    checkReplay(arguments);
    kit::completeConnection(arguments.connection);
    return arguments;
}

kit::Completion completeRobotOptions(const std::vector<std::string>& words)
{
    RobotArguments any;
    kit::Words rest(words);
    return kit::completeOptions(rest, allOptions(any)).value_or(kit::Completion{});
}

std::string robotHelp()
{
    RobotArguments any;
    return "Usage: tarvek-robot [OPTION]...\n"
           "A simulated robot: publishes the memory of a walking robot, over and over.\n"
           "\n"
           "It starts a private Redis server on this machine for that, prints\n"
           "\"listening on 127.0.0.1:PORT\" when its keys can be read, and runs until Ctrl-C.\n"
           "Only the robot may write there. Readers give a password: that of --password-file, or\n"
           "one that the robot makes up and keeps, as long as it runs, in a file that only your\n"
           "user can read: it prints \"password in FILE\" before.\n"
           "\n" +
           kit::optionsText(generalOptions(any)) +
           "\n"
           "With --replay it plays a recording instead, at its own pace, and keeps the last values "
           "at\n"
           "the end. Whoever may write Replay/Control, as readers of its own server may, controls "
           "it by\n"
           "one of these texts: play, pause, step [N], jump TIME (as for --from, or +TIME and "
           "-TIME\n"
           "from where it is), speed X; zo replay-control does that. Replay/State, Replay/Time "
           "and\n"
           "Replay/Speed tell where it is.\n"
           "\n" +
           kit::optionsText(replayOptions(any.replay)) +
           "\n"
           "With --connect it publishes to a server that runs already. It waits for one that is\n"
           "lost, and ends when one refuses its user, password or certificate:\n"
           "\n" +
           kit::optionsText(kit::connectionOptions(any.connection)) +
           "\n"
           "Example: tarvek-robot --port 6380, then, with the file that it prints:\n"
           "zo --connect 127.0.0.1:6380 --password-file FILE get Battery/Charge\n"
           "\n"
           "With --prefix it writes all that behind it, and once a second Robot/Alive, the "
           "seconds\n"
           "since 1970: zo robots lists the robots of a server by it. With --robots 20 and\n"
           "--prefix '{robot%}/' twenty robots do so, as {robot1}/ to {robot20}/.\n"
           "\n"
           "Exit status: 0 ended by Ctrl-C or a signal; 1 a server failed; 2 wrong use.\n";
}

std::string robotVersion()
{
    const std::string csv = std::to_string(CSV_MAJOR) + '.' + std::to_string(CSV_MINOR) + '.' +
                            std::to_string(CSV_RELEASE);
    return kit::versionText("tarvek-robot", {{"libcsv", csv}});
}
