// SPDX-License-Identifier: MIT
#pragma once

#include "row_sink.h"

#include <kit/completion.h>
#include <kit/connection_options.h>

#include <chrono>
#include <optional>
#include <string>
#include <vector>

/// What a user asks of the program `zo-record`.
struct RecordArguments
{
    enum class Action
    {
        Record,
        Help,
        Version
    };

    Action action = Action::Record;
    kit::Connection connection;

    // what: one of these
    std::string configuration; ///< path; empty: none
    std::vector<std::string> keys;
    bool allKeys = false;

    std::chrono::milliseconds period{1000};
    std::chrono::milliseconds duration{0}; ///< 0: no end
    bool follow = false;                   ///< the robot tells what was written

    std::string output; ///< path; empty: standard output
    Rotation rotation;
    bool changes = false;  ///< a row for each change, not for each answer
    bool keyNames = false; ///< columns are called by their keys
    bool gapRows = false;
    bool quiet = false;
    bool status = false; ///< lines of JSON on standard output
};

/// Reads the words behind the program's name. Throws UsageError for every mistake. Reads the
/// password file; opens nothing else.
RecordArguments readRecordArguments(const std::vector<std::string>& words);

/// How a line goes on whose last word is being written. Reads a connection out of it; nothing: that
/// word is one of the robot's keys. Throws UsageError.
std::optional<kit::Completion> completeRecordOptions(const std::vector<std::string>& words,
                                                     kit::Connection& connection);

/// The texts of --help and --version.
std::string recordHelp();
std::string recordVersion();
