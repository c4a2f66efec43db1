// SPDX-License-Identifier: MIT
#include "motion.h"

#include "noise.h"

#include <array>
#include <cmath>

namespace {

// Seconds into the cycle at which walking and reaching begin and end, and how long each change
// takes.
constexpr double walkBegin = 1;
constexpr double walkEnd = 15;
constexpr double reachBegin = 17.5;
constexpr double reachEnd = 26;
constexpr double change = 1.5;

/// Rises to 1 in `change` seconds from `begin` and falls back to 0 from `end`.
double pulse(double t, double begin, double end)
{
    return smoothStep((t - begin) / change) - smoothStep((t - end) / change);
}

double pulseArea(double t, double begin, double end)
{
    return change * (smoothStepArea((t - begin) / change) - smoothStepArea((t - end) / change));
}

double inCycle(double t)
{
    return fraction(t / Motion::fCycle) * Motion::fCycle;
}

} // namespace

std::string Motion::legName(int leg)
{
    constexpr std::array<const char*, fLegs> names = {"FrontLeft", "FrontRight", "RearLeft",
                                                      "RearRight"};
    return names.at(static_cast<std::size_t>(leg));
}

Motion::Motion(std::uint32_t seed)
    : fStrideRate(0.55 + 0.1 * scatter(seed, 1)), fStrideLength(0.32 + 0.06 * scatter(seed, 2))
{
}

double Motion::walking(double t) const
{
    return pulse(inCycle(t), walkBegin, walkEnd);
}

double Motion::reaching(double t) const
{
    return pulse(inCycle(t), reachBegin, reachEnd);
}

std::string Motion::mode(double t) const
{
    if (walking(t) > 0)
        return "walking";
    return reaching(t) > 0 ? "reaching" : "standing";
}

double Motion::strides(double t) const
{
    const double wholeCycles = std::floor(t / fCycle) * (walkEnd - walkBegin);
    return fStrideRate * (wholeCycles + pulseArea(inCycle(t), walkBegin, walkEnd));
}

double Motion::distance(double t) const
{
    return fStrideLength * strides(t);
}

double Motion::heading(double t) const
{
    return 2 * M_PI * fraction(distance(t) / (2 * M_PI * fRadius));
}

double Motion::speed(double t) const
{
    return fStrideLength * fStrideRate * walking(t);
}

double Motion::legCycle(int leg, double t) const
{
    // A trot: the feet of one diagonal swing together, half a stride after the others.
    const bool firstDiagonal = leg == 0 || leg == 3;
    return fraction(strides(t) + (firstDiagonal ? 0.0 : 0.5));
}

bool Motion::footDown(int leg, double t) const
{
    return footLift(leg, t) < 0.05;
}

double Motion::footLift(int leg, double t) const
{
    const double cycle = legCycle(leg, t);
    if (cycle >= fSwing)
        return 0;
    const double arc = std::sin(M_PI * cycle / fSwing);
    return walking(t) * arc * arc;
}

double Motion::legStroke(int leg, double t) const
{
    const double cycle = legCycle(leg, t);
    const double forth = -std::cos(M_PI * cycle / fSwing);
    const double back = std::cos(M_PI * (cycle - fSwing) / (1 - fSwing));
    return walking(t) * (cycle < fSwing ? forth : back);
}
