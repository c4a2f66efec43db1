// SPDX-License-Identifier: MIT
#include "joints.h"

#include "noise.h"

#include <array>
#include <cmath>

namespace {

void addLeg(std::vector<Joint>& joints, const Motion& motion, int leg)
{
    const std::string prefix = "Leg/" + Motion::legName(leg) + "/";
    const double outwards = leg % 2 == 0 ? 1 : -1;
    joints.push_back(
        {prefix + "Abduction",
         [=](double t) { return outwards * 0.06 + 0.04 * motion.legStroke(leg, t + 0.15); }, 0.0,
         40});
    joints.push_back(
        {prefix + "Hip", [=](double t) { return 0.75 + 0.3 * motion.legStroke(leg, t); }, 0.5, 55});
    joints.push_back({prefix + "Knee",
                      [=](double t) {
                          return -1.4 - 0.55 * motion.footLift(leg, t) +
                                 0.08 * motion.legStroke(leg, t);
                      },
                      -1.1, 60});
}

struct ArmJoint
{
    const char* name;
    double folded;    ///< angle of the folded arm
    double stretched; ///< change of it when the arm is stretched out
    double sweep;     ///< amplitude of its search around that
    double hertz;     ///< of that search
    double stiffness;
};

constexpr std::array<ArmJoint, 6> armJoints = {{
    {"Base", 0.0, 0.4, 0.7, 0.12, 12},
    {"Shoulder", -1.9, 1.5, 0.25, 0.21, 22},
    {"Elbow", 2.3, -1.2, 0.35, 0.27, 18},
    {"Forearm", 0.0, 0.2, 0.9, 0.17, 6},
    {"Wrist", -0.4, 0.7, 0.4, 0.33, 5},
    {"Gripper", 0.05, 0.5, 0.35, 0.45, 4},
}};

Joint joint(const ArmJoint& arm, const Motion& motion, std::uint32_t seed)
{
    const double start = scatter(seed, 0);
    const Curve angle = [=](double t) {
        const double search = arm.sweep * std::sin(2 * M_PI * fraction(arm.hertz * t + start));
        return arm.folded + motion.reaching(t) * (arm.stretched + search) +
               0.004 * smoothNoise(seed, 5 * t);
    };
    return {std::string("Arm/") + arm.name, angle, arm.folded, arm.stiffness};
}

} // namespace

std::vector<Joint> robotJoints(const Motion& motion, std::uint32_t seed)
{
    std::vector<Joint> joints;
    for (int leg = 0; leg < Motion::fLegs; ++leg)
        addLeg(joints, motion, leg);
    for (const ArmJoint& arm : armJoints)
        joints.push_back(joint(arm, motion, ++seed));
    joints.push_back(
        {"Head/Pan", [=](double t) { return 0.9 * smoothNoise(seed + 1, t / 2.5); }, 0, 3});
    joints.push_back(
        {"Head/Tilt", [=](double t) { return 0.35 * smoothNoise(seed + 2, t / 3.5); }, 0.1, 3});
    return joints;
}
