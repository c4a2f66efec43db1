// SPDX-License-Identifier: MIT
#include "ticks.h"

#include <algorithm>
#include <cmath>

double tickTime(long long tick, double rate)
{
    return static_cast<double>(tick) / rate;
}

long long nextTick(long long last, double elapsed, double rate)
{
    return std::max(last + 1, static_cast<long long>(std::floor(elapsed * rate)));
}
