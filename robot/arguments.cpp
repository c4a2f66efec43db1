// SPDX-License-Identifier: MIT
#include "arguments.h"

#include <kit/options_text.h>
#include <kit/usage_error.h>
#include <zo/address.h>

#include <limits>
#include <utility>

namespace {

using Action = RobotArguments::Action;
using kit::UsageError;

constexpr double lowestRate = 0.1;
constexpr double highestRate = 1000;

kit::Options robotOptions(RobotArguments& arguments)
{
    kit::Options own = {
        kit::numberOption("--port", "PORT", "port of the private server (a free one)", 1,
                          ZoAddress::fHighestPort, arguments.port),
        kit::flag("--open", "let everybody on this machine read it, without a password",
                  arguments.open),
        kit::numberOption("--rate", "HZ",
                          "times per second that all keys are written, 0.1 to 1000 (50); a machine "
                          "too slow for it skips some",
                          lowestRate, highestRate, arguments.rate),
        kit::numberOption("--keys", "N", "how many keys, 1 to 100000 (200)", 1, maxRobotKeys,
                          arguments.keys),
        kit::numberOption<std::uint32_t>("--seed", "S",
                                         "another seed, a slightly different robot (1)", 0,
                                         std::numeric_limits<std::uint32_t>::max(), arguments.seed),
    };
    return kit::joined(std::move(own),
                       kit::aboutOptions([&arguments] { arguments.action = Action::Help; },
                                         [&arguments] { arguments.action = Action::Version; }));
}

kit::Options allOptions(RobotArguments& arguments)
{
    return kit::joined(robotOptions(arguments), kit::connectionOptions(arguments.connection));
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

} // namespace

RobotArguments parseArguments(const std::vector<std::string>& words)
{
    RobotArguments arguments;
    kit::Words rest(words);
    const kit::OptionsEnd end = kit::readOptions(rest, allOptions(arguments));
    if (end == kit::OptionsEnd::Settled)
        return arguments;
    kit::refuseOperands(rest);
    checkServer(arguments);
    kit::completeConnection(arguments.connection);
    return arguments;
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
           kit::optionsText(robotOptions(any)) +
           "\n"
           "With --connect it publishes to a server that runs already. It waits for one that is\n"
           "lost, and ends when one refuses its user, password or certificate:\n"
           "\n" +
           kit::optionsText(kit::connectionOptions(any.connection)) +
           "\n"
           "Example: tarvek-robot --port 6380, then, with the file that it prints:\n"
           "zo --connect 127.0.0.1:6380 --password-file FILE get Battery/Charge\n"
           "\n"
           "Exit status: 0 ended by Ctrl-C or a signal; 1 a server failed; 2 wrong use.\n";
}
