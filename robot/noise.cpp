// SPDX-License-Identifier: MIT
#include "noise.h"

#include <cmath>
#include <initializer_list>

double scatter(std::uint32_t seed, std::uint64_t index)
{
    std::uint64_t bits = index + (static_cast<std::uint64_t>(seed) + 1) * 0x9E3779B97F4A7C15U;
    for (const int shift : {30, 27, 31}) {
        bits ^= bits >> shift;
        bits *= 0xD6E8FEB86659FD93U;
    }
    bits ^= bits >> 32;
    return static_cast<double>(bits >> 11) * 0x1p-53;
}

double smoothNoise(std::uint32_t seed, double x)
{
    const double below = std::floor(x);
    const auto index = static_cast<std::uint64_t>(static_cast<std::int64_t>(below));
    const double from = scatter(seed, index);
    const double to = scatter(seed, index + 1);
    return 2 * (from + (to - from) * smoothStep(x - below)) - 1;
}

double smoothStep(double x)
{
    if (x <= 0)
        return 0;
    return x >= 1 ? 1 : x * x * (3 - 2 * x);
}

double smoothStepArea(double x)
{
    if (x <= 0)
        return 0;
    return x >= 1 ? x - 0.5 : x * x * x * (1 - x / 2);
}

double fraction(double x)
{
    const double part = x - std::floor(x);
    return part < 1 ? part : 0; // a tiny negative x rounds up to 1
}

double rounded(double x, int decimals)
{
    const double scale = std::pow(10.0, decimals);
    return std::round(x * scale) / scale + 0.0;
}
