// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <string>
#include <vector>

/// What a robot writes at each of its ticks.
struct Load
{
    enum class Changing
    {
        Same,  ///< 1 % of its keys, always the same ones
        Other, ///< 1 % of its keys, at every tick another
        All
    };

    static constexpr std::chrono::milliseconds fTick{20};
    static constexpr int fValueSize = 16; ///< characters, as a float with all of its digits has

    int keys;
    Changing changing;

    /// Keys that are written at a tick: 1 %, and one at least, or all.
    int written() const;
    /// So many ticks later a key is written again.
    int cycle() const;
    std::string text() const;

    /// What a panel calls key number `key`, and what the robot does.
    static std::string alias(int key);
    static std::string key(int key) { return "Key/" + alias(key); }
    static std::vector<std::string> keyNames(int first, int keys);
};
