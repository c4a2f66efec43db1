// SPDX-License-Identifier: MIT
#pragma once

#include "robot_keys.h"

#include <zo/address.h>

#include <cstdint>
#include <optional>
#include <stdexcept>
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
    std::optional<ZoAddress> server; ///< to publish to; none: a private one
    int port = 0;                    ///< of the private server; 0: a free one
    double rate = 50;                ///< ticks per second
    int keys = defaultRobotKeys;
    std::uint32_t seed = 1;
};

/// A command line that makes no sense: one line that says why.
class UsageError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// `words` are the command line's without the program's name. Throws UsageError.
RobotArguments parseArguments(const std::vector<std::string>& words);

/// What --help prints.
std::string helpText();
