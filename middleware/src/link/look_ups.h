// SPDX-License-Identifier: MIT
#pragma once

#include "link/deadline.h"

#include <algorithm>

namespace zo {

/// Which look-ups are under way. The system's may hang for minutes and cannot be called off; so
/// the attempts share one, and another is made only after a while, a longer one each time.
class LookUps
{
public:
    using Time = SteadyClock::time_point;

    static constexpr std::chrono::seconds fPatience{10};
    static constexpr std::chrono::seconds fMostPatience{600};

    bool isAnotherNeeded(Time now) const { return !fIsUnderWay || now >= fSince + fCurrent; }

    /// Makes a look-up; its number.
    int begin(Time now)
    {
        fCurrent = fIsUnderWay ? std::min(2 * fCurrent, fMostPatience) : fPatience;
        fIsUnderWay = true;
        fSince = now;
        return ++fNewest;
    }

    /// Whether `number` is the newest look-up. An older one's answer is as good, but its failure
    /// says nothing about the newest.
    bool end(int number)
    {
        const bool isNewest = fIsUnderWay && number == fNewest;
        if (isNewest)
            fIsUnderWay = false;
        return isNewest;
    }

private:
    bool fIsUnderWay = false;
    int fNewest = 0;
    Time fSince;
    std::chrono::seconds fCurrent = fPatience;
};

} // namespace zo
