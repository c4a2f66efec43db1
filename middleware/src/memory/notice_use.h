// SPDX-License-Identifier: MIT
#pragma once

#include "link/deadline.h"

#include <algorithm>
#include <utility>

namespace zo {

/// Whether it pays for a list to be told of changes. A key that is written costs a notice, and the
/// question for it again: when again more than a third of them are, everything is read without
/// notices instead. They are tried again after a pause, which doubles each time that it was in
/// vain.
class NoticeUse
{
public:
    using Time = SteadyClock::time_point;

    static constexpr std::chrono::seconds fShortestPause{5};
    static constexpr std::chrono::seconds fLongestPause{80};

    bool pays(Time now) const { return now >= fPausedUntil; }

    /// Of `keys` keys the robot has told that `written` were written since the round before. Unless
    /// that is most of them, one such round says little: it may be behind a pause of the network,
    /// or behind a round that took long because it read everything.
    void told(int written, int keys, Time now)
    {
        if (now < fPausedUntil)
            return;
        if (now >= fPausedUntil + fPause)
            fPause = fShortestPause;
        const bool isDoubtful = std::exchange(fIsDoubtful, 3 * written > keys);
        if (!fIsDoubtful || (!isDoubtful && 3 * written <= 2 * keys))
            return;
        fIsDoubtful = false;
        fPausedUntil = now + fPause;
        fPause = std::min<SteadyClock::duration>(2 * fPause, fLongestPause);
    }

    /// Without notices: of `keys` keys `changed` have another value than a round before. While that
    /// is most of them, a trial would be in vain.
    void read(int changed, int keys, Time now)
    {
        if (!pays(now) && 3 * changed > keys)
            fPausedUntil = std::max(fPausedUntil, now + fShortestPause);
    }

private:
    SteadyClock::duration fPause = fShortestPause;
    Time fPausedUntil{};
    bool fIsDoubtful = false; ///< the last round was such a one
};

} // namespace zo
