// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <chrono>
#include <random>

namespace zo {

/// The waits between attempts: random, so that many who lost a robot at the same moment do not
/// return at the same moment, and longer and longer, up to a bound.
class BackOff
{
public:
    BackOff(std::chrono::milliseconds first, std::chrono::milliseconds most, std::uint32_t seed);

    /// The next wait. The bound doubles with each.
    std::chrono::microseconds next();
    /// The next wait is as short as the first again.
    void startOver() { fBound = fFirst; }
    /// The next wait is no longer than `most`, or the first, if that is longer.
    void shorten(std::chrono::milliseconds most)
    {
        fBound = std::min(fBound, std::max(most, fFirst));
    }
    void setBounds(std::chrono::milliseconds first, std::chrono::milliseconds most);

private:
    std::chrono::milliseconds fFirst;
    std::chrono::milliseconds fMost;
    std::chrono::milliseconds fBound;
    std::mt19937 fRandom;
};

} // namespace zo
