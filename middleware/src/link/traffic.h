// SPDX-License-Identifier: MIT
#pragma once

#include "link/action_queue.h"
#include "link/conversation.h"
#include "link/link_settings.h"
#include "link/recent_traffic.h"
#include "link/round_trip.h"

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace zo {

/// What goes over a link: the calls, pings while there are none, and the limits of all this. A part
/// of LinkMachine.
class Traffic
{
public:
    using Time = SteadyClock::time_point;

    /// The link is cut after so much silence, and four round trips, while something is awaited.
    static constexpr std::chrono::milliseconds fLongestSilence{2000};

    /// `pushes` takes what the server sends unasked; it may be null.
    Traffic(ActionQueue& actions, ReplySink* pushes);

    /// Begins on a new connection, with `greeting`.
    void open(Time now, ConnectionId connection, std::shared_ptr<const LinkSettings> settings,
              std::shared_ptr<const Inquiry> greeting);
    /// Whether the greeting is sent and answered. The link is up then: calls may come.
    bool endGreeting(Time now);
    /// The end of the connection, and with `problem` of all calls.
    void close(const SharedText& problem) noexcept;

    void written(Time now);
    /// How the bytes violate the protocol, if they do.
    ReplyProblem received(Time now, std::string_view bytes);
    /// The first error since the last call that tells of another node; empty: there was none.
    std::string takeRedirection() { return fTalk->takeRedirection(); }

    /// When memory runs out it throws, and has done nothing.
    void enqueue(const std::shared_ptr<Exchange>& call);
    void drop(const std::shared_ptr<Exchange>& call);

    /// Ends the calls that were answered before such an error came.
    void endEarlier(Time now);
    /// Ends the calls that are over, and sends on.
    void goOn(Time now);
    /// Does what time demands. Returns why the link must be cut, if so.
    std::optional<std::string> attend(Time now);
    /// When it does so next.
    Time attentionAt() const;

    const RoundTrip& roundTrip() const { return fRoundTrip; }
    /// Of all connections.
    const TrafficTally& tally() const { return fTally; }

private:
    using AskingPtr = Conversation::AskingPtr;

    /// One that has not ended.
    struct Call
    {
        std::shared_ptr<Exchange> exchange;
        AskingPtr asking;
    };
    using Calls = std::deque<Call>;

    bool isBusy() const { return fTalk->isBusy(); }
    void askItself(Time now, std::shared_ptr<const Inquiry> inquiry);
    void sendOn(Time now);
    bool mayBegin(Time now, const Asking& asking) const;
    void endAnswered(Time now, const AskingPtr& asking);
    void endLateCalls(Time now);
    bool isOverdue(Time now, const Call& call) const;
    Time dueAt(const Call& call) const;
    Time sendBy(const Exchange& call) const;
    std::string lateness(Time now, const Call& call) const;
    Calls::iterator find(const std::shared_ptr<Exchange>& exchange);

    bool isSilentFor(Time now, RoundTrip::Duration time) const;
    RoundTrip::Duration callPatience() const;
    RoundTrip::Duration linkPatience() const;

    ActionQueue& fActions;
    ReplySink* const fPushes;
    const SharedText fPing;
    std::shared_ptr<const LinkSettings> fSettings;
    RoundTrip fRoundTrip;
    TrafficTally fTally;
    std::uint64_t fSlices = 0;
    std::optional<Conversation> fTalk;
    Calls fCalls; ///< in the order in which they came
    Time fIdleSince;
};

} // namespace zo
