// SPDX-License-Identifier: MIT
#include "zo_command.h"

#include <kit/options_text.h>
#include <kit/replay_command.h>
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
    return kit::joined(kit::joined(kit::robotOptions(command.connection), std::move(own)),
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

kit::Options robotsOptions(ZoCommand& command)
{
    return kit::joined({kit::flag("--json", "", command.isJson)}, aboutOptions(command));
}

struct CommandRule
{
    Action action;
    kit::Options (*options)(ZoCommand&);
    std::size_t fewest; ///< operands
    std::size_t most;
    std::size_t keys;     ///< so many of them, from the first on, are keys
    const char* synopsis; ///< for messages
};

constexpr std::size_t anyNumber = std::numeric_limits<std::size_t>::max();

const std::unordered_map<std::string, CommandRule> commandRules = {
    {"check", {Action::Check, aboutOptions, 0, 0, 0, "check"}},
    {"list", {Action::List, aboutOptions, 0, 1, 0, "list [SUBSTRING]"}},
    {"get", {Action::Get, aboutOptions, 1, anyNumber, anyNumber, "get KEY..."}},
    {"set", {Action::Set, aboutOptions, 2, 2, 1, "set KEY VALUE"}},
    {"record", {Action::Record, aboutOptions, 0, anyNumber, 0, "record"}},
    {"replay-control",
     {Action::ReplayControl, aboutOptions, 1, 2, 0,
      "replay-control status | play | pause | step [N] | jump TIME | speed X"}},
    {"robots", {Action::Robots, robotsOptions, 0, 0, 0, "robots [--json]"}},
    {"watch",
     {Action::Watch, watchOptions, 1, anyNumber, anyNumber,
      "watch [--period MS] [--count N] KEY..."}},
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

void readReplayCommand(ZoCommand& command)
{
    std::string text = command.operands[0];
    if (command.operands.size() > 1)
        text += " " + command.operands[1];
    if (text != "status" && !kit::replayCommandFrom(text))
        throw UsageError("'" + text + "' is no command for a replay; these are: status, " +
                         kit::replayCommands);
    command.operands = {text};
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
    command.action = rule.action;
    if (command.action == Action::Record) {
        command.operands = words.takeAll(); // its own program reads them
        return;
    }
    const kit::OptionsEnd end = kit::readOptions(words, rule.options(command));
    if (end == kit::OptionsEnd::Settled)
        return;
    // A value may begin as an option does, as in "jump -90s".
    const bool hasValue = command.action == Action::Set || command.action == Action::ReplayControl;
    if (end == kit::OptionsEnd::Operand && !hasValue)
        checkNoOptionAmong(words);
    command.operands = words.takeAll();
    if (command.operands.size() < rule.fewest || command.operands.size() > rule.most)
        throw UsageError(std::string("it goes: zo ") + rule.synopsis);
    if (command.action == Action::ReplayControl)
        readReplayCommand(command);
}

/// Puts the options before the command, among all the `words`, to the others.
void addGeneralOptions(const std::vector<std::string>& words, ZoCommand& command)
{
    std::vector<std::string>& rest = command.operands;
    std::size_t before = words.size() - rest.size() - 1;
    if (before > 0 && words[before - 1] == "--")
        --before; // it ended these options, and does not end the others
    rest.insert(rest.begin(), words.begin(), words.begin() + static_cast<std::ptrdiff_t>(before));
}

void takeDashes(kit::Words& words)
{
    if (words.next() == "--" && words.left() > 1)
        words.take();
}

kit::Completion commandNames()
{
    kit::Completion names;
    for (const auto& rule : commandRules)
        names.texts.push_back(rule.first);
    return names;
}

/// Behind the command and its options; the last of `words` is being written.
void completeOperand(const CommandRule& rule, const kit::Words& words, UnfinishedZoCommand& line)
{
    line.wantsKey = words.left() <= rule.keys;
    if (rule.action == Action::ReplayControl && words.left() == 1)
        line.completion.texts = {"status", "play", "pause", "step", "jump", "speed"};
}

} // namespace

ZoCommand readZoCommand(const std::vector<std::string>& arguments)
{
    ZoCommand command;
    kit::Words words(arguments);
    if (kit::readOptions(words, generalOptions(command)) != kit::OptionsEnd::Settled)
        readOperands(words, command);
    if (command.action == Action::Record)
        addGeneralOptions(arguments, command);
    else if (command.action != Action::Help && command.action != Action::Version)
        kit::completeConnection(command.connection);
    return command;
}

UnfinishedZoCommand readUnfinishedZoCommand(const std::vector<std::string>& arguments)
{
    UnfinishedZoCommand line;
    kit::Words words(arguments);
    if (auto completion = kit::completeOptions(words, generalOptions(line.command))) {
        line.completion = std::move(*completion);
        return line;
    }
    takeDashes(words);
    if (words.left() == 1) {
        line.completion = commandNames();
        return line;
    }
    const CommandRule rule = takeRule(words);
    line.command.action = rule.action;
    if (rule.action == Action::Record) {
        line.command.operands = words.takeAll();
        addGeneralOptions(arguments, line.command);
        return line;
    }
    if (auto completion = kit::completeOptions(words, rule.options(line.command))) {
        line.completion = std::move(*completion);
        return line;
    }
    takeDashes(words);
    completeOperand(rule, words, line);
    return line;
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
  record ...         record values as comma-separated values, for hours or days:
                     zo record --help tells how
  replay-control COMMAND
                     rule a robot that plays a recording, as tarvek-robot --replay does:
                     status prints what it does, where and how fast; play; pause; step or
                     step N: stand, and show the next row or N; jump TIME: 90s or 1.5h from
                     the start, +90s or -90s from where it is, 1700000000.5 since 1970;
                     speed X. Done when the robot has taken it
  check              find out step by step what works with the robot and what does not:
                     print a line for each step, with ok, failed or skipped, what was
                     found, and what to do; end where no other step can work. Done when
                     nothing failed
  robots [--json]    print a line PREFIX<tab>SECONDS for each robot that shares the
                     server, sorted by bytes: its prefix, and how long ago by its clock
                     and this machine's it wrote its key Robot/Alive, which robots with a
                     prefix do each second; unknown, where that may not be read. Of a
                     cluster, those of all nodes that take writes, up to 16. With
                     --json a line {"prefix":"robot7/","age":0} or "age":null. The server
                     goes through all its keys for it, as for list with a prefix: a
                     million take it a quarter of a second, some ms at a time

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
