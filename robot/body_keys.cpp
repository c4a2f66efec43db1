// SPDX-License-Identifier: MIT
#include "key_groups.h"
#include "noise.h"

#include <cmath>

namespace {

constexpr double gravity = 9.81;
constexpr double bodyWeight = 320; ///< newtons

/// The body's sway while it walks: `amplitude`, `perStride` times a stride, plus sensor noise.
Curve sway(KeyCollector& keys, double amplitude, int perStride, double noise)
{
    return [motion = keys.motion(), seed = keys.seed(), amplitude, perStride, noise](double t) {
        const double angle = 2 * M_PI * perStride * fraction(motion.strides(t));
        return amplitude * motion.walking(t) * std::sin(angle) + noise * smoothNoise(seed, 9 * t);
    };
}

Curve plus(double offset, const Curve& curve)
{
    return [offset, curve](double t) { return offset + curve(t); };
}

void addPoses(KeyCollector& keys)
{
    const Motion motion = keys.motion();
    const Curve x = [motion](double t) { return Motion::fRadius * std::sin(motion.heading(t)); };
    const Curve y = [motion](double t) {
        return Motion::fRadius * (1 - std::cos(motion.heading(t)));
    };
    const Curve heading = [motion](double t) { return motion.heading(t); };
    keys.addArray("Body/Pose", 3, {x, y, heading});
    keys.addFloat("Body/X", 3, x);
    keys.addFloat("Body/Y", 3, y);
    keys.addFloat("Body/Heading", 4, heading);
    keys.addFloat("Body/Height", 4, plus(0.42, sway(keys, 0.008, 2, 0.0005)));
    keys.addFloat("Body/Speed", 3, [motion](double t) { return motion.speed(t); });
    keys.addFloat("Body/Distance", 2, [motion](double t) { return motion.distance(t); });
}

void addInertia(KeyCollector& keys)
{
    const Curve roll = sway(keys, 0.035, 1, 0.002);
    const Curve pitch = sway(keys, 0.02, 2, 0.002);
    keys.addArray("Body/Orientation", 4, {roll, pitch});
    keys.addFloat("Inertia/Roll", 4, roll);
    keys.addFloat("Inertia/Pitch", 4, pitch);
    keys.addFloat("Inertia/AccelerationX", 3, sway(keys, 0.9, 2, 0.05));
    keys.addFloat("Inertia/AccelerationY", 3, sway(keys, 0.7, 1, 0.05));
    keys.addFloat("Inertia/AccelerationZ", 3, plus(gravity, sway(keys, 1.6, 2, 0.06)));
    keys.addFloat("Inertia/RotationX", 4, sway(keys, 0.25, 1, 0.01));
    keys.addFloat("Inertia/RotationY", 4, sway(keys, 0.18, 2, 0.01));
}

void addFoot(KeyCollector& keys, int leg)
{
    const Motion motion = keys.motion();
    const std::uint32_t seed = keys.seed();
    const std::string prefix = "Foot/" + Motion::legName(leg) + "/";
    const Curve ahead = [motion, leg](double t) { return 0.08 * motion.legStroke(leg, t); };
    const Curve up = [motion, leg](double t) { return 0.06 * motion.footLift(leg, t); };
    keys.add(prefix + "Contact",
             [motion, leg](double t) { return ZoValue(motion.footDown(leg, t)); });
    keys.addFloat(prefix + "Force", 1, [motion, seed, leg](double t) {
        const double share = 0.25 * (1 + 0.8 * motion.walking(t));
        const double pressed = 1 - smoothStep(4 * motion.footLift(leg, t));
        return bodyWeight * share * pressed + (1 + smoothNoise(seed, 11 * t));
    });
    keys.addArray(prefix + "Position", 4, {ahead, [](double) { return 0.0; }, up});
}

void addSurroundings(KeyCollector& keys)
{
    const Motion motion = keys.motion();
    for (const char* side : {"Front", "Left", "Right", "Rear"}) {
        const std::uint32_t seed = keys.seed();
        keys.addFloat(std::string("Range/") + side, 3, [motion, seed](double t) {
            return 2.4 + 1.6 * smoothNoise(seed, motion.distance(t)) +
                   0.01 * smoothNoise(seed + 1, 13 * t);
        });
    }
    const std::uint32_t seed = keys.seed();
    for (const char* side : {"Left", "Right"})
        keys.add(std::string("Bumper/") + side, [seed = seed + *side](double t) {
            return ZoValue(smoothNoise(seed, t / 3) > 0.93);
        });
}

} // namespace

void addBodyKeys(KeyCollector& keys)
{
    addPoses(keys);
    addInertia(keys);
    for (int leg = 0; leg < Motion::fLegs; ++leg)
        addFoot(keys, leg);
    addSurroundings(keys);
}
