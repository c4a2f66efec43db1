// SPDX-License-Identifier: MIT
#include "joints.h"
#include "noise.h"

#include <cmath>

namespace {

constexpr double encoderTicks = 65536 / (2 * M_PI); ///< for each radian
constexpr double ambient = 24;                      ///< degrees Celsius

double velocity(const Curve& angle, double t)
{
    constexpr double step = 0.002;
    return (angle(t + step) - angle(t - step)) / (2 * step);
}

Curve torqueOf(const Joint& joint, std::uint32_t seed)
{
    return [joint, seed](double t) {
        return joint.stiffness * (joint.angle(t) - joint.restAngle) +
               0.05 * joint.stiffness * velocity(joint.angle, t) +
               0.01 * joint.stiffness * smoothNoise(seed, 12 * t);
    };
}

Curve currentOf(const Joint& joint, std::uint32_t seed)
{
    return [torque = torqueOf(joint, seed), seed](double t) {
        return 0.12 + 0.11 * std::abs(torque(t)) + 0.02 * smoothNoise(seed + 1, 15 * t);
    };
}

/// Warms up within minutes, each joint by its own amount, and drifts.
Curve temperatureOf(std::uint32_t seed)
{
    const double rise = 9 + 10 * scatter(seed, 3);
    return [rise, seed](double t) {
        return ambient + 4 + rise * (1 - std::exp(-t / 240)) + 0.8 * smoothNoise(seed + 2, t / 20);
    };
}

void addJoint(KeyCollector& keys, const Joint& joint, std::uint32_t seed)
{
    const Curve angle = joint.angle;
    keys.addFloat(joint.name + "/Angle", 4, angle);
    keys.addFloat(joint.name + "/Velocity", 3, [angle](double t) { return velocity(angle, t); });
    keys.addFloat(joint.name + "/Torque", 3, torqueOf(joint, seed));
    keys.addFloat(joint.name + "/Current", 3, currentOf(joint, seed));
    keys.addFloat(joint.name + "/Temperature", 1, temperatureOf(seed));
}

/// What the joint's motor controller itself counts.
void addDevice(KeyCollector& keys, const Joint& joint, std::uint32_t seed)
{
    const std::string prefix = "Device/" + joint.name + "/";
    keys.addInt(prefix + "Encoder",
                [angle = joint.angle](double t) { return 32768 + encoderTicks * angle(t); });
    keys.addInt(prefix + "Pwm",
                [current = currentOf(joint, seed)](double t) { return 90 * current(t); });
}

} // namespace

void addJointKeys(KeyCollector& keys)
{
    const std::uint32_t seed = keys.seed();
    const std::vector<Joint> joints = robotJoints(keys.motion(), seed);
    std::uint32_t jointSeed = seed;
    for (const Joint& joint : joints)
        addJoint(keys, joint, jointSeed += 10);
    jointSeed = seed;
    for (const Joint& joint : joints)
        addDevice(keys, joint, jointSeed += 10);
}
