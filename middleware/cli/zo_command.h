// SPDX-License-Identifier: MIT
#pragma once

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
        Check
    };

    Action action = Action::None;
    kit::Connection connection;
    bool isPlain = false;                   ///< each poll of watch reads the robot itself
    std::vector<std::string> operands;      ///< what stands behind the command and its options
    std::chrono::milliseconds period{1000}; ///< of watch
    int count = 0;                          ///< polls of watch that print; 0: no end
};

/// Reads the words behind the program's name. Throws UsageError for every mistake. Reads the
/// password file; opens nothing else.
ZoCommand readZoCommand(const std::vector<std::string>& words);

/// The text of --help.
std::string zoHelp();
