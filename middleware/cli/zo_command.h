// SPDX-License-Identifier: MIT
#pragma once

#include <kit/completion.h>
#include <kit/connection_options.h>

#include <chrono>
#include <string>
#include <vector>

/// What a user asks of the program `zo`.
struct ZoCommand
{
    enum class Action
    {
        None,
        Help,
        Version,
        List,
        Get,
        Set,
        Watch,
        Record,
        ReplayControl,
        Check,
        Robots
    };

    Action action = Action::None;
    kit::Connection connection;
    bool isPlain = false; ///< each poll of watch reads the robot itself
    /// What stands behind the command and its options. Of Record: all words but the command. Of
    /// ReplayControl: one text, a command of replays or "status".
    std::vector<std::string> operands;
    std::chrono::milliseconds period{1000}; ///< of watch
    bool isJson = false;                    ///< what robots prints is for programs
    int count = 0;                          ///< polls of watch that print; 0: no end
};

/// Reads the words behind the program's name. Throws UsageError for every mistake. Reads the
/// password file; opens nothing else.
ZoCommand readZoCommand(const std::vector<std::string>& words);

/// A command whose last word is being written.
struct UnfinishedZoCommand
{
    ZoCommand command;          ///< of Record: the operands; of others: the connection
    kit::Completion completion; ///< of that word
    bool wantsKey = false;      ///< that word is one of the robot's keys
};

/// Reads `words`, of which there is one at least, as far as they are. Throws UsageError; opens
/// nothing.
UnfinishedZoCommand readUnfinishedZoCommand(const std::vector<std::string>& words);

/// The text of --help.
std::string zoHelp();
