// SPDX-License-Identifier: MIT
#pragma once

#include <memory/round.h>

#include <cstdint>
#include <string>
#include <vector>

/// Gives `round` the robot's reply to one of its commands: values as FollowingRobot has them, or
/// none at all, when it refuses them. Throws Violation when the round does not take it.
void giveReply(zo::Round& round, int command, const std::vector<std::int64_t>& values);

/// Of a reply, for people.
std::string textOf(const std::vector<std::int64_t>& values);
