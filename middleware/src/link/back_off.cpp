// SPDX-License-Identifier: MIT
#include "link/back_off.h"

#include <algorithm>

namespace zo {

using std::chrono::microseconds;
using std::chrono::milliseconds;

BackOff::BackOff(milliseconds first, milliseconds most, std::uint32_t seed) : fRandom(seed)
{
    setBounds(first, most);
}

microseconds BackOff::next()
{
    std::uniform_int_distribution<microseconds::rep> upTo(0, microseconds(fBound).count());
    const microseconds wait(upTo(fRandom));
    fBound = std::min(2 * fBound, fMost);
    return wait;
}

void BackOff::setBounds(milliseconds first, milliseconds most)
{
    fMost = most;
    fFirst = std::min(first, most);
    startOver();
}

} // namespace zo
