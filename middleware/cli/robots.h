// SPDX-License-Identifier: MIT
#pragma once

#include <zo/value.h>

#include <chrono>
#include <map>
#include <string>

namespace kit {
class Output;
}
class ZoMemoryProxy;

enum class RobotsForm
{
    Plain, ///< PREFIX<tab>SECONDS and an end of line
    Json   ///< an object of "prefix" and "age", and an end of line
};

/// The prefix of each robot, and how long ago, in seconds, it said that it is there; invalid where
/// that is unknown.
using RobotAges = std::map<std::string, ZoValue>;

/// Those that have their keys in `memory` behind a prefix, at the time `now`. Of robots whose keys
/// may not be read, the age is unknown. `areApart`: the memory is a cluster's node, which does not
/// answer for robots together. Throws ZoError when the server fails.
RobotAges robotsIn(ZoMemoryProxy& memory, std::chrono::system_clock::time_point now, bool areApart);

/// Prints a line for each, sorted by prefix. Throws what Output throws.
void printRobots(const RobotAges& robots, RobotsForm form, kit::Output& output);
