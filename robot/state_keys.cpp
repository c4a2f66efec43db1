// SPDX-License-Identifier: MIT
#include "key_groups.h"
#include "noise.h"

#include <cmath>

namespace {

constexpr double packSeconds = 2 * 60 * 60; ///< one battery pack lasts so long
constexpr double fullCharge = 98;
constexpr double emptyCharge = 16;
constexpr double lowCharge = 25;
constexpr int cellCount = 6;

/// Falls from full to empty; then a fresh pack is put in.
double batteryCharge(double t)
{
    return fullCharge - (fullCharge - emptyCharge) * fraction(t / packSeconds);
}

std::string task(const Motion& motion, double t)
{
    const std::string mode = motion.mode(t);
    if (mode == "walking")
        return "patrol, lap " + std::to_string(1 + static_cast<int>(motion.distance(t) /
                                                                    (2 * M_PI * Motion::fRadius)));
    return mode == "reaching" ? "pick up sample" : "wait for orders";
}

double load(const Motion& motion, double t)
{
    return 0.2 + 0.6 * motion.walking(t) + 0.3 * motion.reaching(t);
}

void addCounters(KeyCollector& keys)
{
    const Motion motion = keys.motion();
    keys.addInt("Counter/Seconds", [](double t) { return t; });
    keys.addInt("Counter/Steps", [motion](double t) { return 2 * motion.strides(t); });
    keys.addInt("Counter/ControlTicks", [](double t) { return 500 * t; });
    keys.addInt("Counter/BusErrors", [](double t) { return t / 47; });
}

void addComputer(KeyCollector& keys)
{
    const Motion motion = keys.motion();
    const std::uint32_t seed = keys.seed();
    keys.addFloat("Computer/Load", 2, [motion, seed](double t) {
        return load(motion, t) + 0.08 * smoothNoise(seed, t / 2);
    });
    keys.addFloat("Computer/Temperature", 1, [seed](double t) {
        return 51 + 6 * (1 - std::exp(-t / 200)) + 2 * smoothNoise(seed, t / 25);
    });
    keys.addInt("Computer/FreeMemory",
                [seed](double t) { return 2.6e9 + 2e8 * smoothNoise(seed, t / 12); });
    keys.add("Computer/Name", [](double) { return ZoValue("tarvek-robot"); });
}

} // namespace

void addStateKeys(KeyCollector& keys)
{
    const Motion motion = keys.motion();
    keys.add("State/Mode", [motion](double t) { return ZoValue(motion.mode(t)); });
    keys.add("State/Task", [motion](double t) { return ZoValue(task(motion, t)); });
    keys.add("State/Ready", [](double t) { return ZoValue(t >= 1); });
    keys.add("State/Moving", [motion](double t) { return ZoValue(motion.mode(t) != "standing"); });
    // Nothing in the gripper: no value.
    keys.add("State/HeldSample", [motion](double t) {
        return motion.reaching(t) < 1 ? ZoValue() : ZoValue("sample-7");
    });
    addCounters(keys);
    addComputer(keys);
}

void addBatteryKeys(KeyCollector& keys)
{
    const Motion motion = keys.motion();
    const std::uint32_t seed = keys.seed();
    const Curve current = [motion, seed](double t) {
        return 2.1 + 6.5 * load(motion, t) + 0.4 * smoothNoise(seed, 6 * t);
    };
    const Curve voltage = [current](double t) {
        return 21.5 + 0.075 * batteryCharge(t) / 2 - 0.06 * current(t);
    };
    keys.addFloat("Battery/Charge", 2, batteryCharge);
    keys.addFloat("Battery/Voltage", 3, voltage);
    keys.addFloat("Battery/Current", 3, current);
    keys.addFloat("Battery/Power", 2, [=](double t) { return voltage(t) * current(t); });
    keys.addFloat("Battery/Temperature", 2, [seed](double t) {
        return 27 + 7 * (1 - std::exp(-t / 600)) + 0.6 * smoothNoise(seed + 1, t / 40);
    });
    keys.add("Battery/Low", [](double t) { return ZoValue(batteryCharge(t) < lowCharge); });
    keys.addInt("Battery/PacksUsed", [](double t) { return 1 + t / packSeconds; });
    std::vector<Curve> cells(cellCount);
    for (std::size_t cell = 0; cell < cells.size(); ++cell)
        cells[cell] = [voltage, seed, cell](double t) {
            return voltage(t) / cellCount + 0.02 * scatter(seed, cell);
        };
    keys.addArray("Battery/Cells", 3, cells);
}
