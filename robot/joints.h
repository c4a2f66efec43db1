// SPDX-License-Identifier: MIT
#pragma once

#include "key_groups.h"

#include <string>
#include <vector>

/// One joint of the robot.
struct Joint
{
    std::string name; ///< part of the key's name, as "Arm/Elbow"
    Curve angle;      ///< radians
    double restAngle; ///< where the joint bears no load
    double stiffness; ///< Nm for each radian away from it
};

/// All joints, in the order of their keys: four legs of three, the arm, the head.
std::vector<Joint> robotJoints(const Motion& motion, std::uint32_t seed);
