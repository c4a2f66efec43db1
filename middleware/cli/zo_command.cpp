// SPDX-License-Identifier: MIT
#include "zo_command.h"

#include <kit/options_text.h>
#include <kit/usage_error.h>

#include <limits>
#include <unordered_map>
#include <utility>

namespace {

using Action = ZoCommand::Action;
using kit::UsageError;

kit::Options aboutOptions(ZoCommand& command)
{
    return kit::aboutOptions([&command] { command.action = Action::Help; },
                             [&command] { command.action = Action::Version; });
}

kit::Options generalOptions(ZoCommand& command)
{
    kit::Options own = {
        kit::flag("--plain",
                  "let watch read every value from the robot each time, whether it was written "
                  "or not",
                  command.isPlain),
    };
    return kit::joined(kit::joined(kit::connectionOptions(command.connection), std::move(own)),
                       aboutOptions(command));
}

kit::Options watchOptions(ZoCommand& command)
{
    const auto storePeriod = [&command](const std::string& name, const std::string& text) {
        command.period =
            std::chrono::milliseconds(kit::numberFrom(name, text, 1, kit::longestTime));
    };
    kit::Options own = {
        {{"--period"}, "MS", "", storePeriod},
        kit::numberOption("--count", "N", "", 1, std::numeric_limits<int>::max(), command.count),
    };
    return kit::joined(std::move(own), aboutOptions(command));
}

struct CommandRule
{
    Action action;
    kit::Options (*options)(ZoCommand&);
    std::size_t fewest; ///< operands
    std::size_t most;
    const char* synopsis; ///< for messages
};

constexpr std::size_t anyNumber = std::numeric_limits<std::size_t>::max();

const std::unordered_map<std::string, CommandRule> commandRules = {
    {"check", {Action::Check, aboutOptions, 0, 0, "check"}},
    {"list", {Action::List, aboutOptions, 0, 1, "list [SUBSTRING]"}},
    {"get", {Action::Get, aboutOptions, 1, anyNumber, "get KEY..."}},
    {"set", {Action::Set, aboutOptions, 2, 2, "set KEY VALUE"}},
    {"watch",
     {Action::Watch, watchOptions, 1, anyNumber, "watch [--period MS] [--count N] KEY..."}},
};

CommandRule takeRule(kit::Words& words)
{
    if (words.empty())
        throw UsageError("there is no command");
    const std::string name = words.take();
    const auto found = commandRules.find(name);
    if (found == commandRules.end())
        throw UsageError("there is no command '" + name + "'");
    return found->second;
}

/// An option behind the keys would be taken for a key, and nobody would notice.
void checkNoOptionAmong(kit::Words words)
{
    while (!words.empty()) {
        if (words.startsOption())
            throw UsageError("'" + words.next() +
                             "' stands behind an operand; if it is one itself, put -- before all");
        words.take();
    }
}

void readOperands(kit::Words& words, ZoCommand& command)
{
    const CommandRule rule = takeRule(words);
    const kit::OptionsEnd end = kit::readOptions(words, rule.options(command));
    if (end == kit::OptionsEnd::Settled)
        return;
    command.action = rule.action;
    if (end == kit::OptionsEnd::Operand && command.action != Action::Set)
        checkNoOptionAmong(words);
    command.operands = words.takeAll();
    if (command.operands.size() < rule.fewest || command.operands.size() > rule.most)
        throw UsageError(std::string("it goes: zo ") + rule.synopsis);
}

} // namespace

ZoCommand readZoCommand(const std::vector<std::string>& arguments)
{
    ZoCommand command;
    kit::Words words(arguments);
    if (kit::readOptions(words, generalOptions(command)) != kit::OptionsEnd::Settled)
        readOperands(words, command);
    if (command.action != Action::Help && command.action != Action::Version)
        kit::completeConnection(command.connection);
    return command;
}

std::string zoHelp()
{
    ZoCommand any;
    return R"(Usage: zo [OPTION...] COMMAND

Reads and writes the memory of a robot.

Commands:
  list [SUBSTRING]   print the keys, or those that contain SUBSTRING, sorted by bytes
  get KEY...         print a line KEY<tab>TYPE<tab>VALUE for each key, in this order
  set KEY VALUE      store the text VALUE as it stands: 3 reads back as an int, 0.5 or
                     3.0 as a float, true as a bool, [1,"a"] as an array, "x" and every
                     text that is no JSON as a string
  watch [--period MS] [--count N] KEY...
                     print a line SECONDS<tab>KEY<tab>TYPE<tab>VALUE for each key every
                     MS milliseconds (1000), with the seconds since the start; end after
                     N times, or on Ctrl-C. While the robot is lost it prints no lines,
                     and goes on when the robot is back. It ends when the robot
                     refuses user, password or certificate.
  check              find out step by step what works with the robot and what does not:
                     print a line for each step, with ok, failed or skipped, what was
                     found, and what to do; end where no other step can work. Done when
                     nothing failed

A TYPE is invalid, array, bool, int, float, string or unknown; a key that does not exist
is invalid and has no value. Control characters and backslashes in keys and values are
printed as \t \n \r \\ or \xHH, so each line is one record.

Options:
)" + kit::optionsText(generalOptions(any)) +
           R"(
-- ends the options before a key that begins with -.

Exit status: 0 done; 1 the robot or the connection failed, or a step of check, or the
output cannot be written; 2 wrong use.
)";
}
