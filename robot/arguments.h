// SPDX-License-Identifier: MIT
#pragma once

#include "robot_keys.h"

#include <kit/completion.h>
#include <kit/connection_options.h>
#include <kit/replay_command.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// How a recording is played in place of the simulated robot.
struct ReplayArguments
{
    std::string path; ///< empty: none is
    double speed = 1;
    bool loops = false;
    bool isPaused = false;
    std::optional<kit::ReplayCommand> from; ///< where to begin; nothing: at its first row
};

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
    std::uint32_t seed = 1; ///< of the first robot; the others have those behind it
    int robots = 0;         ///< so many, each behind a prefix with its number; 0: one robot
    ReplayArguments replay;
};

constexpr int maxRobots = 1000;
/// Stands for the robot's number in the prefix of several.
constexpr char robotNumberSign = '%';

/// What the keys of each robot begin with, the first robot first.
std::vector<std::string> robotPrefixes(const RobotArguments& arguments);

/// `words` are the command line's without the program's name. Throws kit::UsageError.
RobotArguments parseArguments(const std::vector<std::string>& words);

/// How a command line goes on whose last word is being written. Throws kit::UsageError.
kit::Completion completeRobotOptions(const std::vector<std::string>& words);

/// What --help and --version print.
std::string robotHelp();
std::string robotVersion();
