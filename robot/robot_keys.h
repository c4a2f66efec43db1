// SPDX-License-Identifier: MIT
#pragma once

#include <zo/value.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

/// One key of the robot's memory: its name, and its value at any time in seconds since the start.
struct RobotKey
{
    std::string name;
    std::function<ZoValue(double seconds)> value;
};

constexpr int defaultRobotKeys = 200;
constexpr int maxRobotKeys = 100000;

/// The first `count` keys (1 to maxRobotKeys) of the robot: its body, battery and state, its
/// joints, the raw values of its devices, and as many patches of skin as are needed to get there.
/// The same `count` and `seed` always give the same names and, for the same time, values.
std::vector<RobotKey> robotKeys(int count, std::uint32_t seed);
