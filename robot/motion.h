// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

/// What the four-legged robot does at any time `t`, in seconds since its start: it stands, walks
/// in a circle, stands, reaches out with its arm, and begins again. Nothing is remembered, so any
/// time may be asked for in any order. Lengths are in metres, angles in radians.
class Motion
{
public:
    static constexpr int fLegs = 4;      ///< front left, front right, rear left, rear right
    static constexpr double fCycle = 30; ///< seconds from one beginning to the next

    static std::string legName(int leg);

    explicit Motion(std::uint32_t seed);

    double walking(double t) const;   ///< 0 (not at all) to 1 (full speed)
    double reaching(double t) const;  ///< 0 (arm folded) to 1 (stretched out)
    std::string mode(double t) const; ///< "standing", "walking" or "reaching"

    double strides(double t) const;  ///< full strides since the start: grows while walking
    double distance(double t) const; ///< walked since the start
    double heading(double t) const;  ///< of the circle, 0 to 2 pi
    double speed(double t) const;    ///< in m/s

    double legCycle(int leg, double t) const; ///< 0 to 1: the foot swings up to `fSwing`
    bool footDown(int leg, double t) const;
    double footLift(int leg, double t) const;  ///< 0 on the ground to 1 at the top of the swing
    double legStroke(int leg, double t) const; ///< -1 (backmost) to 1 (foremost)

    static constexpr double fSwing = 0.4;  ///< part of a stride that a foot is in the air
    static constexpr double fRadius = 2.5; ///< of the circle walked

private:
    double fStrideRate;   ///< strides per second at full speed
    double fStrideLength; ///< metres
};
