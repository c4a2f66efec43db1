// SPDX-License-Identifier: MIT
#pragma once

#include "link/action_queue.h"
#include "link/conversation.h"
#include "link/link_settings.h"
#include "link/round_trip.h"

#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace zo {

/// What goes over a link: the calls, one under way and the others waiting their turn, pings while
/// there are none, and the limits of all this. A part of LinkMachine.
class Traffic
{
public:
    using Time = SteadyClock::time_point;

    /// The link is cut after so much silence, and four round trips, while something is awaited.
    static constexpr std::chrono::milliseconds fLongestSilence{2000};

    explicit Traffic(ActionQueue& actions);

    /// Begins on a new connection, with `greeting`.
    void open(Time now, ConnectionId connection, std::shared_ptr<const LinkSettings> settings,
              std::shared_ptr<const Inquiry> greeting);
    /// Whether the greeting is written and answered. The link is up then: calls may come.
    bool endGreeting(Time now);
    /// The end of the connection, and with `problem` of all calls.
    void close(const SharedText& problem) noexcept;

    void written(Time now);
    /// How the bytes violate the protocol, if they do.
    ReplyProblem received(Time now, std::string_view bytes);

    /// When memory runs out it throws, and has done nothing.
    void enqueue(const std::shared_ptr<Exchange>& call);
    void drop(const std::shared_ptr<Exchange>& call);

    /// Ends the call that is over, and sends the next.
    void goOn(Time now);
    /// Does what time demands. Returns why the link must be cut, if so.
    std::optional<std::string> attend(Time now);
    /// When it does so next.
    Time attentionAt() const;

    RoundTrip::Duration roundTrip() const { return fRoundTrip.value(); }

private:
    bool isBusy() const { return fTalk->isBusy(); }
    void begin(Time now, std::shared_ptr<const Inquiry> inquiry);
    void sendNext(Time now);
    void endLateCalls(Time now);
    bool isOverdue(Time now, Time due) const;
    Time sendBy(const Exchange& call) const;
    std::string latenessUnderWay(Time now) const;
    std::string latenessWaiting(Time now, const Exchange& call) const;
    void endWith(const std::string& problem, std::shared_ptr<Exchange> call);

    bool isSilentFor(Time now, RoundTrip::Duration time) const;
    RoundTrip::Duration callPatience() const;
    RoundTrip::Duration linkPatience() const;

    ActionQueue& fActions;
    const SharedText fPing;
    std::shared_ptr<const LinkSettings> fSettings;
    RoundTrip fRoundTrip;
    std::optional<Conversation> fTalk;
    std::deque<std::shared_ptr<Exchange>> fWaiting;
    std::shared_ptr<Exchange> fCall; ///< under way; null: nobody waits for what is under way
    Time fIdleSince;
};

} // namespace zo
