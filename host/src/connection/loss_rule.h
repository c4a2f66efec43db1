// SPDX-License-Identifier: MIT
#pragma once

#include <zo/link_status.h>

#include <chrono>
#include <optional>

/// Decides when a link that is down counts as lost. Until then it is interrupted: it mends itself,
/// and its panels go on by themselves. It is lost when it was refused or closed, since nothing
/// mends it then, and when it has been down for longer than the user wants to wait; but not while
/// it is opened anew on request, before that has failed. It reads no clock: the time comes with
/// what is seen, and never goes back.
class LossRule
{
public:
    using Time = std::chrono::steady_clock::time_point;
    using Limit = std::chrono::seconds;

    enum class State
    {
        Connected,
        Interrupted,
        Lost
    };

    explicit LossRule(Limit limit) : fLimit(limit) {}

    /// 0: lost as soon as it is seen down. A loss that was told stays one, whatever the limit.
    void setLimit(Limit limit) { fLimit = limit; }

    /// Takes note of what the link says at `now`. True when it is lost from now on: at most once
    /// in an outage. The next one has begun when the link was seen up in between, or says that it
    /// went down at another time: it may be up for shorter than anybody looks.
    bool see(Time now, const ZoLinkStatus& link);

    State state() const;
    /// How long it had been down when it was seen last; 0 when it was up.
    Time::duration downFor() const { return fDownFor; }

private:
    Limit fLimit;
    std::optional<Time> fDownSince;
    std::chrono::system_clock::time_point fOutage; ///< when the link says that it began
    Time::duration fDownFor{0};
    bool fIsLost = false;
};
