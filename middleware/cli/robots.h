// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>

namespace kit {
class Output;
}
class ZoMemoryProxy;

enum class RobotsForm
{
    Plain, ///< PREFIX<tab>SECONDS and an end of line
    Json   ///< an object of "prefix" and "age", and an end of line
};

/// Prints a line for each robot that has its keys in `memory` behind a prefix, sorted by prefix,
/// with how long ago, at the time `now`, it said that it is there; that is unknown of those whose
/// keys may not be read. Throws ZoError when the server fails, and what Output throws.
void listRobots(ZoMemoryProxy& memory, RobotsForm form, std::chrono::system_clock::time_point now,
                kit::Output& output);
