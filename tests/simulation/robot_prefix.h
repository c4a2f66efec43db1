// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

/// What the robot's keys begin with on its server in the schedule that follows from `seed`: in a
/// third of them nothing, in another what would have a meaning in a pattern.
inline std::string prefixOf(std::uint64_t seed)
{
    static constexpr const char* prefixes[] = {"", "robot7/", "r*7?/"};
    return prefixes[seed % 3];
}
