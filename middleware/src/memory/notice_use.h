// SPDX-License-Identifier: MIT
#pragma once

#include "link/deadline.h"

#include <algorithm>

namespace zo {

/// Whether it pays for a list to be told of changes. A key that is written costs a notice, and the
/// question for it again: when more than a third of them are, everything is read without notices
/// instead. They are tried again after a pause, which doubles each time that it was in vain.
class NoticeUse
{
public:
    using Time = SteadyClock::time_point;

    static constexpr std::chrono::seconds fShortestPause{5};
    static constexpr std::chrono::seconds fLongestPause{80};

    bool pays(Time now) const { return now >= fPausedUntil; }

    /// Of `keys` keys the robot has told that `written` were written since the round before.
    void told(int written, int keys, Time now)
    {
        if (now < fPausedUntil)
            return;
        if (now >= fPausedUntil + fPause)
            fPause = fShortestPause;
        if (3 * written <= keys)
            return;
        fPausedUntil = now + fPause;
        fPause = std::min<SteadyClock::duration>(2 * fPause, fLongestPause);
    }

private:
    SteadyClock::duration fPause = fShortestPause;
    Time fPausedUntil{};
};

} // namespace zo
