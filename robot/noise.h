// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

/// Arithmetic for values that look measured: every result depends on the arguments alone.

/// A number from 0 up to but not including 1, unrelated to that of any other `index` or `seed`.
double scatter(std::uint32_t seed, std::uint64_t index);

/// A smooth curve between -1 and 1 that turns about once for each unit of `x`.
double smoothNoise(std::uint32_t seed, double x);

/// 0 up to `x` = 0, 1 from `x` = 1 on, an even S between.
double smoothStep(double x);

/// The integral of smoothStep from 0 to `x`; 0 for a negative `x`.
double smoothStepArea(double x);

/// The part of `x` behind the whole number below it, from 0 up to but not including 1.
double fraction(double x);

/// `x` to so many decimals, as a sensor reports it; never a negative zero.
double rounded(double x, int decimals);
