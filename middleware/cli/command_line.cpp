// SPDX-License-Identifier: MIT
#include "command_line.h"

#include "option_words.h"
#include "password_file.h"
#include "usage_error.h"

#include <zo/error.h>

#include <limits>

namespace {

using Text = const std::string&;

constexpr int longestTime = 3600000; ///< ms: an hour

std::chrono::milliseconds timeOf(Text option, Text text)
{
    return std::chrono::milliseconds(wholeNumber(option, text, longestTime));
}

void storeAddress(CliCommandLine& line, Text option, Text text)
{
    try {
        line.address = ZoAddress::fromText(text);
    } catch (const ZoError& error) {
        throw UsageError(option + ": " + error.toString());
    }
}

void storeTimeout(CliCommandLine& line, Text option, Text text)
{
    const std::chrono::milliseconds time = timeOf(option, text);
    line.options.connectTimeout = time;
    line.options.exchangeTimeout = time;
    line.options.callTimeout = time;
    line.options.keyListTimeout = time;
}

void storePeriod(CliCommandLine& line, Text option, Text text)
{
    line.period = timeOf(option, text);
}

void storeCount(CliCommandLine& line, Text option, Text text)
{
    line.count = wholeNumber(option, text, std::numeric_limits<int>::max());
}

void storeHelp(CliCommandLine& line, Text, Text)
{
    line.command = CliCommandLine::Command::Help;
}

void storeVersion(CliCommandLine& line, Text, Text)
{
    line.command = CliCommandLine::Command::Version;
}

const Options generalOptions = {
    {"--help", {false, storeHelp}},
    {"--version", {false, storeVersion}},
    {"--connect", {true, storeAddress}},
    {"--user", {true, [](CliCommandLine& line, Text, Text name) { line.options.user = name; }}},
    {"--password-file",
     {true,
      [](CliCommandLine& line, Text, Text path) { line.options.password = readPassword(path); }}},
    {"--tls", {false, [](CliCommandLine& line, Text, Text) { line.options.tls = true; }}},
    {"--ca", {true, [](CliCommandLine& line, Text, Text path) { line.options.tlsCaFile = path; }}},
    {"--cert",
     {true, [](CliCommandLine& line, Text, Text path) { line.options.tlsCertFile = path; }}},
    {"--key",
     {true, [](CliCommandLine& line, Text, Text path) { line.options.tlsKeyFile = path; }}},
    {"--timeout", {true, storeTimeout}},
};

const Options commandOptions = {
    {"--help", {false, storeHelp}},
};

const Options watchOptions = {
    {"--help", {false, storeHelp}},
    {"--period", {true, storePeriod}},
    {"--count", {true, storeCount}},
};

struct CommandRule
{
    CliCommandLine::Command command;
    const Options* options;
    std::size_t fewest; ///< operands
    std::size_t most;
    const char* synopsis; ///< for messages
};

constexpr std::size_t anyNumber = std::numeric_limits<std::size_t>::max();

const std::unordered_map<std::string, CommandRule> commandRules = {
    {"list", {CliCommandLine::Command::List, &commandOptions, 0, 1, "list [SUBSTRING]"}},
    {"get", {CliCommandLine::Command::Get, &commandOptions, 1, anyNumber, "get KEY..."}},
    {"set", {CliCommandLine::Command::Set, &commandOptions, 2, 2, "set KEY VALUE"}},
    {"watch",
     {CliCommandLine::Command::Watch, &watchOptions, 1, anyNumber,
      "watch [--period MS] [--count N] KEY..."}},
};

void checkTls(const ZoBrokerOptions& options)
{
    const bool certificates =
        !options.tlsCaFile.empty() || !options.tlsCertFile.empty() || !options.tlsKeyFile.empty();
    if (certificates && !options.tls)
        throw UsageError("--ca, --cert and --key need --tls");
    if (options.tlsCertFile.empty() != options.tlsKeyFile.empty())
        throw UsageError("--cert and --key need each other");
}

CommandRule takeRule(Words& words)
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
void checkNoOptionAmong(Words words)
{
    while (!words.empty()) {
        if (words.startsOption())
            throw UsageError("'" + words.next() +
                             "' stands behind an operand; if it is one itself, put -- before all");
        words.take();
    }
}

void readCommand(Words& words, CliCommandLine& line)
{
    const CommandRule rule = takeRule(words);
    const bool ended = readOptions(words, *rule.options, line);
    if (line.command == CliCommandLine::Command::Help)
        return;
    line.command = rule.command;
    if (!ended && line.command != CliCommandLine::Command::Set)
        checkNoOptionAmong(words);
    line.operands = words.takeAll();
    if (line.operands.size() < rule.fewest || line.operands.size() > rule.most)
        throw UsageError(std::string("it goes: zo ") + rule.synopsis);
}

} // namespace

CliCommandLine readCommandLine(const std::vector<std::string>& arguments)
{
    CliCommandLine line;
    Words words(arguments);
    readOptions(words, generalOptions, line);
    if (line.command == CliCommandLine::Command::None)
        readCommand(words, line);
    checkTls(line.options);
    return line;
}
