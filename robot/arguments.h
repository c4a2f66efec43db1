// SPDX-License-Identifier: MIT
#pragma once

#include "robot_keys.h"

#include <kit/connection_options.h>

#include <cstdint>
#include <string>
#include <vector>

/// What the command line asks for.
struct RobotArguments
{
    enum class Action
    {
        Run,
        Help,
        Version
    };

    Action action = Action::Run;
    /// Where to publish. If it was not given: to a private server, to be read with its password.
    kit::Connection connection;
    int port = 0;      ///< of the private server; 0: a free one
    bool open = false; ///< everybody on this machine may read the private server
    double rate = 50;  ///< ticks per second
    int keys = defaultRobotKeys;
    std::uint32_t seed = 1;
};

/// `words` are the command line's without the program's name. Throws kit::UsageError.
RobotArguments parseArguments(const std::vector<std::string>& words);

/// What --help prints.
std::string robotHelp();
