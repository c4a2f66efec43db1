// SPDX-License-Identifier: MIT
#pragma once

#include "link/action_queue.h"
#include "link/approach.h"
#include "link/back_off.h"
#include "link/greeting.h"
#include "link/link_actions.h"
#include "link/link_settings.h"
#include "link/owner_search.h"
#include "link/traffic.h"

#include <zo/link_status.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zo {

/// All that a link decides: when to look up, connect, greet, send, ping, give up and try again.
/// It has no socket, thread or clock. A driver tells it what happens, one operation for each
/// event, and does the actions that it asks for. The same events in the same order give the same
/// actions.
///
/// The contract, for who drives it:
///
/// - One thread at a time. `now` never goes back from one event to the next. `start` comes first,
///   once; `stop` last.
/// - After each event the driver takes actions with `nextAction` until there are none, and does
///   them in that order. It may report events in between: a connection that cannot even be tried
///   is `closed` at once.
/// - `woken` comes at `wakeAt()`, which each event may change, or later. It is the only event in
///   which time decides: the driver first reports what has happened until then, so that bytes
///   which have arrived count even when it was held up. Coming too early does no harm.
/// - LookUp is answered by one `lookedUp` with its number, at any time, or never. Several may be
///   under way.
/// - Connect is answered by one `connected` or `closed`, or never; StartTls, which comes after
///   `connected`, by one `secured`, `refused` or `closed`, or never; each Write, of which there is
///   one at a time on a connection, by one `written`, which may come after the reply, or never.
///   `received` may come once the connection is connected and, with TLS, secured.
/// - Each Connect is followed by exactly one Close of that connection, also when `closed` or
///   `refused`, which are a connection's last events, came before. Every event of a connection
///   after its Close is ignored, as are those of connections that the machine does not know.
/// - Each call ends with exactly one End, or none when it was `givenUp` before; at its deadline at
///   the latest, as far as `woken` is on time. Its sink may be filled until the connection ends,
///   also after an End with a problem.
/// - Tell follows each change of the state, before the End of the calls that a loss takes along;
///   the first one when the first attempt has ended.
/// - `stop` closes everything and ends every call. Afterwards each call ends at once, and every
///   other event is ignored.
///
/// No operation throws. One that runs out of memory takes the link down, and it comes back as
/// after any loss; a driver that runs out of memory while it does an action reports `failed`.
class LinkMachine
{
public:
    using Time = SteadyClock::time_point;

    /// A link that is up so long is no failed attempt: the waits begin anew when it is lost.
    static constexpr std::chrono::milliseconds fSteady{1000};
    /// The bound of the waits while other nodes of a cluster answer: it soon has a new owner.
    static constexpr std::chrono::milliseconds fMostWaitOfCluster{500};

    /// The random waits follow from `seed`. `pushes` takes what the server sends unasked, and must
    /// outlive this; null: nobody does. Throws only this: std::bad_alloc.
    LinkMachine(std::shared_ptr<const LinkSettings> settings, std::uint32_t seed,
                ReplySink* pushes = nullptr);
    LinkMachine(const LinkMachine&) = delete;
    LinkMachine& operator=(const LinkMachine&) = delete;

    /// Begins the first attempt.
    void start(Time now) noexcept;

    /// The answer to a look-up: `addresses`, or why there are none.
    void lookedUp(Time now, int number, const std::vector<LinkAddress>& addresses,
                  const std::string& problem) noexcept;
    void connected(Time now, ConnectionId connection) noexcept;
    void secured(Time now, ConnectionId connection) noexcept;
    void received(Time now, ConnectionId connection, std::string_view bytes) noexcept;
    void written(Time now, ConnectionId connection) noexcept;
    void closed(Time now, ConnectionId connection, const std::string& problem) noexcept;
    /// Its certificate was refused, or ours by it: there is no use in trying that node again.
    void refused(Time now, ConnectionId connection, const std::string& problem) noexcept;

    void call(Time now, const std::shared_ptr<Exchange>& exchange) noexcept;
    /// The caller has gone. One that is not yet sent is never sent; the answer of another is
    /// read and dropped.
    void givenUp(Time now, const std::shared_ptr<Exchange>& exchange) noexcept;

    void woken(Time now) noexcept;
    /// The driver could not do an action. A link that is refused or closed stays so.
    void failed(Time now) noexcept;
    /// Begins anew with other settings of the same robot, whatever the state.
    void reconnect(Time now, std::shared_ptr<const LinkSettings> settings) noexcept;
    /// Goes down for as long as nothing begins anew: only `reconnect` and `stop` end that, as they
    /// end a refusal.
    void disconnect(Time now) noexcept;
    void stop(Time now) noexcept;

    std::optional<LinkAction::Any> nextAction() noexcept { return fActions.next(); }
    /// When `woken` is due; Time::max(): not before another event.
    Time wakeAt() const noexcept;

    const LinkCondition& condition() const { return fCondition; }
    /// What the attempt to connect that is under way is at.
    ZoLinkStatus::Step step() const;
    /// When the last byte came.
    Time lastHeard() const { return fLastHeard; }
    const RoundTrip& roundTrip() const { return fTraffic.roundTrip(); }
    const TrafficTally& tally() const { return fTraffic.tally(); }

private:
    enum class Stage
    {
        Waiting, ///< for the next attempt
        LookingUp,
        Connecting,
        Securing,
        Greeting,
        Up,
        Refused,
        Closed, ///< for now
        Stopped
    };

    template <class Step>
    void guarded(Time now, Step step) noexcept;

    void beginAttempt(Time now);
    bool isTrying() const { return fStage >= Stage::LookingUp && fStage <= Stage::Greeting; }
    bool isUp() const { return fStage == Stage::Up; }
    bool isAtRest() const { return fStage >= Stage::Refused; }
    bool isTalking() const { return fStage == Stage::Greeting || fStage == Stage::Up; }
    bool isCurrent(ConnectionId connection) const
    {
        return fCurrent != 0 && connection == fCurrent;
    }
    void approach(Time now, const Nodes& nodes, RoundTrip::Duration patience);
    RoundTrip::Duration patienceFor(const ZoAddress& node) const;
    void timeOut(Time now);
    void take(Time now, ConnectionId winner, const NodePtr& node);
    void greet(Time now);
    void goOn(Time now);
    void judgeGreeting(Time now);
    void arrive(Time now);
    void askTheOthers(Time now, const std::string& problem);
    void leaveNode() noexcept;
    void turn(Time now, const std::string& error);
    void attend(Time now);
    const char* nameOfStep() const;

    void goUp(Time now);
    void fail(Time now, const std::string& problem);
    void endInVain(Time now, const SharedText& cause) noexcept;
    void refuse(Time now, const std::string& problem);
    SharedText told(const NodePtr& node, const std::string& problem) const;
    void goDown(Time now, Stage next, const SharedText& cause) noexcept;
    void closeConnections() noexcept;
    void setCondition(Time now, bool isUp, const SharedText& cause) noexcept;

    std::shared_ptr<const LinkSettings> fSettings;
    const SharedText fOutOfMemory;
    const SharedText fDisconnected;
    const SharedText fEnded;
    ActionQueue fActions;
    Traffic fTraffic;
    BackOff fBackOff;

    Stage fStage = Stage::Waiting;
    LinkCondition fCondition;
    OwnerSearch fSearch;
    Approach fApproach;
    ConnectionId fCurrent = 0; ///< the one that has won the race; 0: none has
    NodePtr fNode;             ///< where it leads
    std::optional<Greeting> fGreeting;
    SharedText
        fRefusal; ///< of the first node that refused, while no other was heard in the attempt
    RoundTrip::Duration fPatience{0}; ///< of the attempt, or of its part under way
    Time fAttemptEnd;
    Time fRetryAt;
    Time fUpSince;
    Time fLastHeard = Time::min();
};

} // namespace zo
