// SPDX-License-Identifier: MIT
#pragma once

#include "motion.h"
#include "robot_keys.h"

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

/// What the groups of keys are made from, and the groups themselves.

/// A number that changes with time, in seconds since the start.
using Curve = std::function<double(double t)>;

/// Collects keys. `seed()` gives each caller a number of its own for its noise.
class KeyCollector
{
public:
    explicit KeyCollector(std::uint32_t seed) : fSeed(seed), fMotion(seed) {}

    const Motion& motion() const { return fMotion; }
    std::uint32_t seed();

    void add(const std::string& name, std::function<ZoValue(double)> value);
    void addFloat(const std::string& name, int decimals, Curve curve);
    void addInt(const std::string& name, Curve curve); ///< rounded down
    void addArray(const std::string& name, int decimals, std::vector<Curve> curves);

    std::vector<RobotKey> take() { return std::move(fKeys); }
    int size() const { return static_cast<int>(fKeys.size()); }

private:
    std::uint32_t fSeed;
    Motion fMotion;
    std::vector<RobotKey> fKeys;
};

void addStateKeys(KeyCollector& keys);
void addBatteryKeys(KeyCollector& keys);
void addBodyKeys(KeyCollector& keys);
/// The joints, and behind them the raw values of their motor controllers.
void addJointKeys(KeyCollector& keys);
/// Patches of skin, until there are `count` keys.
void addSkinKeys(KeyCollector& keys, int count);
