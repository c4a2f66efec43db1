// SPDX-License-Identifier: MIT
#pragma once

#include "link/deadline.h"

#include <algorithm>
#include <optional>

namespace zo {

/// Which look-ups of a node are under way. The system's may hang for minutes and cannot be called
/// off; so the attempts share one, and another is made only after a while, a longer one each time.
class LookUps
{
public:
    using Time = SteadyClock::time_point;

    static constexpr std::chrono::seconds fPatience{10};
    static constexpr std::chrono::seconds fMostPatience{600};

    bool isAnotherNeeded(Time now) const
    {
        return !fUnderWay || now >= fUnderWay->since + fUnderWay->patience;
    }

    /// Another one begins, with a number above those before.
    void begin(Time now, int number)
    {
        const auto patience =
            fUnderWay ? std::min(2 * fUnderWay->patience, fMostPatience) : fPatience;
        fUnderWay = UnderWay{now, patience};
        fNewest = number;
    }

    /// Whether `number` is the newest look-up. An older one's answer is as good, but its failure
    /// says nothing about the newest.
    bool end(int number)
    {
        if (!fUnderWay || number != fNewest)
            return false;
        fUnderWay.reset();
        return true;
    }

private:
    /// The newest look-up, while it is not answered.
    struct UnderWay
    {
        Time since;
        std::chrono::seconds patience; ///< before another one is made
    };

    int fNewest = 0;
    std::optional<UnderWay> fUnderWay;
};

} // namespace zo
