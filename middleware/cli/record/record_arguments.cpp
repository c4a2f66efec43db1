// SPDX-License-Identifier: MIT
#include "record_arguments.h"

#include <kit/options_text.h>
#include <kit/quantity.h>
#include <kit/usage_error.h>
#include <kit/version_text.h>

#include <QtGlobal>

#include <tinyxml.h>

#include <utility>

namespace {

using Action = RecordArguments::Action;
using kit::UsageError;
using Text = std::string;

Rotation rotationFrom(const Text& name, const Text& text)
{
    if (const auto size = kit::sizeIn(text))
        return {*size, {}};
    if (const auto time = kit::timeIn(text))
        return {0, *time};
    throw UsageError(name +
                     " must be a size with its unit (kB, MB, GB, TB), as in 100MB, or a time "
                     "(ms, s, min, h, d), as in 1h, not '" +
                     text + "'");
}

kit::Options whatOptions(RecordArguments& arguments)
{
    return {
        kit::textOption("--config", "FILE",
                        "record the keys that the panel's configuration file watches, by their "
                        "aliases",
                        arguments.configuration),
        kit::flag("--all", "record every key that the robot has at the start", arguments.allKeys),
        kit::flag("--key-names", "call the columns by their keys, not by their aliases",
                  arguments.keyNames),
    };
}

kit::Options whenOptions(RecordArguments& arguments)
{
    return {
        {{"--period"},
         "MS",
         "from one row to the next (1000)",
         [&arguments](const Text& name, const Text& text) {
             arguments.period =
                 std::chrono::milliseconds(kit::numberFrom(name, text, 1, kit::longestTime));
         }},
        {{"--for"},
         "TIME",
         "end after that time, as in 90s, 1.5h or 2d",
         [&arguments](const Text& name, const Text& text) {
             arguments.duration = kit::timeFrom(name, text);
         }},
        kit::flag("--follow",
                  "have the robot tell what was written, and read only that: fewer bytes, for slow "
                  "networks. A period in which nothing comes in time has no row",
                  arguments.follow),
    };
}

kit::Options whereOptions(RecordArguments& arguments)
{
    return {
        kit::textOption("--output", "FILE",
                        "where the rows go (standard output). A recording of the same columns is "
                        "continued, any other file refused",
                        arguments.output),
        {{"--rotate"},
         "SIZE|TIME",
         "begin another file when one is so large, as in 100MB, or so old, as in 1h; each has the "
         "time of its first row (UTC) in its name",
         [&arguments](const Text& name, const Text& text) {
             arguments.rotation = rotationFrom(name, text);
         }},
        kit::flag("--changes", "a row TIME,KEY,TYPE,VALUE for each value that changed",
                  arguments.changes),
        kit::flag("--gap-rows", "mark by an empty row where the robot was lost", arguments.gapRows),
        kit::flag("--quiet", "no line of progress", arguments.quiet),
        kit::flag("--status",
                  "for programs: print how it is getting on as a line of JSON each second, when "
                  "the robot is lost or back, and at the end",
                  arguments.status),
    };
}

kit::Options ownOptions(RecordArguments& arguments)
{
    kit::Options options = kit::joined(whatOptions(arguments), whenOptions(arguments));
    options = kit::joined(std::move(options), whereOptions(arguments));
    return kit::joined(std::move(options),
                       kit::aboutOptions([&arguments] { arguments.action = Action::Help; },
                                         [&arguments] { arguments.action = Action::Version; }));
}

kit::Options allOptions(RecordArguments& arguments)
{
    return kit::joined(ownOptions(arguments), kit::robotOptions(arguments.connection));
}

/// Keys and options in any order; keys only behind "--".
void readWords(kit::Words& words, RecordArguments& arguments)
{
    const kit::Options options = allOptions(arguments);
    while (true) {
        const kit::OptionsEnd end = kit::readOptions(words, options);
        if (end == kit::OptionsEnd::Settled)
            return;
        if (words.empty())
            break;
        if (end == kit::OptionsEnd::Operand) {
            arguments.keys.push_back(words.take());
            continue;
        }
        for (std::string& key : words.takeAll())
            arguments.keys.push_back(std::move(key));
    }
}

void check(const RecordArguments& arguments)
{
    const int ways = (arguments.configuration.empty() ? 0 : 1) + (arguments.keys.empty() ? 0 : 1) +
                     (arguments.allKeys ? 1 : 0);
    if (ways != 1)
        throw UsageError("say what to record: either --config FILE, or keys, or --all");
    if (arguments.rotation.isWanted() && arguments.output.empty())
        throw UsageError("--rotate needs --output FILE, whose name the files get");
    if (arguments.status && arguments.output.empty())
        throw UsageError("--status needs --output FILE: its lines go to standard output");
}

} // namespace

RecordArguments readRecordArguments(const std::vector<std::string>& arguments)
{
    RecordArguments read;
    kit::Words words(arguments);
    readWords(words, read);
    if (read.action != Action::Record)
        return read;
    check(read);
    kit::completeConnection(read.connection);
    return read;
}

std::optional<kit::Completion> completeRecordOptions(const std::vector<std::string>& arguments,
                                                     kit::Connection& connection)
{
    RecordArguments read;
    kit::Words words(arguments);
    std::optional<kit::Completion> completion;
    const kit::Options options = allOptions(read);
    while (!(completion = kit::completeOptions(words, options)) && words.left() > 1 &&
           words.next() != "--")
        words.take(); // a key
    connection = std::move(read.connection);
    return completion;
}

std::string recordHelp()
{
    RecordArguments any;
    return R"(Usage: zo record [OPTION]... (--config FILE | KEY... | --all)

Records values of a robot's memory as comma-separated values, until Ctrl-C or the end of
--for. The first column is the time at which the robot's answer came in, in seconds since
1970 (UTC); then there is one for each key. Values are JSON: 3, 3.0, "3", true, [1,"a"];
that of a key that does not exist is empty, which is told. A column whose name was there
before has its key behind it, in parentheses.

While the robot is lost there are no rows; they go on when it is back. Rows in a file are
whole, and on the disk within a second.

)" + kit::optionsText(ownOptions(any)) +
           R"(
-- ends the options before a key that begins with -. The robot:

)" + kit::optionsText(kit::robotOptions(any.connection)) +
           R"(
Example: zo record --config arm.xml --period 100 --output arm.csv --rotate 1h

Exit status: 0 done, or ended by a signal; 1 the robot refused or was not there at the
start, or a row cannot be written; 2 wrong use.
)";
}

std::string recordVersion()
{
    const std::string tinyxml = std::to_string(TIXML_MAJOR_VERSION) + '.' +
                                std::to_string(TIXML_MINOR_VERSION) + '.' +
                                std::to_string(TIXML_PATCH_VERSION);
    return kit::versionText("zo record", {{"Qt", qVersion()}, {"TinyXML", tinyxml}});
}
