// SPDX-License-Identifier: MIT
#include "link/link_machine.h"

#include <algorithm>
#include <exception>
#include <utility>

namespace zo {

namespace {

std::string quoted(const Peer& peer, const ReplyProblem& problem)
{
    if (problem.sent.empty())
        return problem.text;
    return problem.text + ": \"" + peer.quote(problem.sent) + '"';
}

} // namespace

LinkMachine::LinkMachine(std::shared_ptr<const LinkSettings> settings, std::uint32_t seed,
                         ReplySink* pushes)
    : fSettings(std::move(settings)),
      fOutOfMemory(sharedText(fSettings->peer.says("out of memory"))),
      fDisconnected(sharedText(fSettings->peer.says("disconnected on request"))),
      fEnded(sharedText(fSettings->peer.says("the link is closed"))),
      fTraffic(fActions, pushes),
      fBackOff(fSettings->options.reconnectWait, fSettings->options.reconnectWaitMax, seed),
      fSearch(fSettings),
      fApproach(fActions)
{
    fCondition.cause = sharedText(fSettings->peer.says("not connected yet"));
}

/// Does `step`. What it throws is the end of the link, not of the program.
template <class Step>
void LinkMachine::guarded(Time now, Step step) noexcept
{
    if (fStage == Stage::Stopped)
        return;
    try {
        step();
    } catch (const std::exception&) {
        goDown(now, Stage::Waiting, fOutOfMemory);
    }
}

LinkMachine::Time LinkMachine::wakeAt() const noexcept
{
    if (fStage == Stage::Waiting)
        return fRetryAt;
    if (isTrying())
        return fStage == Stage::Connecting ? std::min(fAttemptEnd, fApproach.nextAt())
                                           : fAttemptEnd;
    return fStage == Stage::Up ? fTraffic.attentionAt() : Time::max();
}

void LinkMachine::woken(Time now) noexcept
{
    guarded(now, [&] {
        if (fStage == Stage::Waiting && now >= fRetryAt)
            beginAttempt(now);
        else if (isTrying() && now >= fAttemptEnd)
            timeOut(now);
        else if (fStage == Stage::Connecting)
            fApproach.connectNext(now);
        else if (fStage == Stage::Up)
            attend(now);
    });
}

void LinkMachine::timeOut(Time now)
{
    if (fNode)
        fSearch.fellSilent(fNode);
    fail(now, "no connection within " + inMilliseconds(fPatience) + ", while " + nameOfStep());
}

void LinkMachine::attend(Time now)
{
    const auto problem = fTraffic.attend(now);
    if (!problem)
        return;
    fSearch.fellSilent(fNode);
    fail(now, *problem);
}

void LinkMachine::failed(Time now) noexcept
{
    if (!isAtRest())
        guarded(now, [&] { goDown(now, Stage::Waiting, fOutOfMemory); });
}

void LinkMachine::start(Time now) noexcept
{
    fCondition.since = now;
    guarded(now, [&] { beginAttempt(now); });
}

void LinkMachine::beginAttempt(Time now)
{
    fRefusal.reset();
    approach(now, fSearch.begin(), fSettings->options.connectTimeout);
}

/// Goes to one of `nodes`. Each node that an attempt leads to has its own time, `patience`.
void LinkMachine::approach(Time now, const Nodes& nodes, RoundTrip::Duration patience)
{
    fStage = Stage::LookingUp;
    fPatience = patience;
    fAttemptEnd = now + patience;
    if (fApproach.begin(now, fAttemptEnd, nodes, fSettings->nodes))
        fStage = Stage::Connecting;
    fApproach.connectNext(now);
}

void LinkMachine::lookedUp(Time now, int number, const std::vector<LinkAddress>& addresses,
                           const std::string& problem) noexcept
{
    guarded(now, [&] {
        if (fStage == Stage::Waiting) // too late for that attempt, in time for the next
            return fApproach.lookedUpMeanwhile(number, addresses);
        const Approach::News news = fApproach.lookedUp(now, number, addresses);
        if (news == Approach::News::Way)
            fStage = Stage::Connecting;
        else if (news == Approach::News::End)
            fail(now, problem);
    });
}

void LinkMachine::connected(Time now, ConnectionId connection) noexcept
{
    guarded(now, [&] {
        if (const NodePtr node = fApproach.leave(connection))
            take(now, connection, node);
    });
}

void LinkMachine::take(Time now, ConnectionId winner, const NodePtr& node)
{
    closeConnections();
    fCurrent = winner;
    fNode = node;
    if (!fSettings->options.tls)
        return greet(now);
    fStage = Stage::Securing;
    fActions.push(LinkAction::StartTls{winner});
}

void LinkMachine::secured(Time now, ConnectionId connection) noexcept
{
    guarded(now, [&] {
        if (fStage == Stage::Securing && isCurrent(connection))
            greet(now);
    });
}

void LinkMachine::greet(Time now)
{
    fStage = Stage::Greeting;
    const bool isSentinel = fSearch.asksSentinel();
    fGreeting.emplace(*fSettings, fSearch.ask(), !isSentinel);
    fTraffic.open(now, fCurrent, fSettings, fGreeting->inquiry());
}

void LinkMachine::received(Time now, ConnectionId connection, std::string_view bytes) noexcept
{
    guarded(now, [&] {
        if (!isTalking() || !isCurrent(connection))
            return;
        fLastHeard = now;
        const ReplyProblem problem = fTraffic.received(now, bytes);
        if (!problem.text.empty())
            return fail(now, quoted(fSettings->peer, problem));
        const std::string redirection = isUp() ? fTraffic.takeRedirection() : std::string();
        if (redirection.empty())
            goOn(now);
        else
            turn(now, redirection);
    });
}

void LinkMachine::written(Time now, ConnectionId connection) noexcept
{
    guarded(now, [&] {
        if (!isTalking() || !isCurrent(connection))
            return;
        fTraffic.written(now);
        goOn(now);
    });
}

void LinkMachine::goOn(Time now)
{
    if (fStage == Stage::Greeting)
        judgeGreeting(now);
    else
        fTraffic.goOn(now);
}

void LinkMachine::judgeGreeting(Time now)
{
    switch (fGreeting->verdict()) {
    case Greeting::Verdict::Pending:
        return;
    case Greeting::Verdict::NotReady:
        fRefusal.reset();
        return fail(now, fGreeting->problem(fSettings->peer));
    case Greeting::Verdict::Refused:
        return askTheOthers(now, fGreeting->problem(fSettings->peer));
    case Greeting::Verdict::Welcome:
        if (fTraffic.endGreeting(now))
            arrive(now);
    }
}

/// A node bids welcome: it may know of another.
void LinkMachine::arrive(Time now)
{
    fRefusal.reset();
    const OwnerSearch::Lead lead = fSearch.judge(fNode);
    if (lead.isRefusal)
        return refuse(now, lead.problem);
    if (!lead.problem.empty())
        return fail(now, lead.problem);
    if (!lead.node)
        return goUp(now);
    leaveNode();
    approach(now, {lead.node}, patienceFor(*lead.node));
}

RoundTrip::Duration LinkMachine::patienceFor(const ZoAddress& node) const
{
    const RoundTrip::Duration full = fSettings->options.connectTimeout;
    if (!fSearch.isHurried(node))
        return full;
    // To connect, agree on encryption and log in, beside what a call waits.
    return std::min(full, fSettings->options.exchangeTimeout + 4 * roundTrip().value());
}

/// A node has refused us, which says nothing about the others. It counts when none of them can be
/// asked.
void LinkMachine::askTheOthers(Time now, const std::string& problem)
{
    if (!fRefusal)
        fRefusal = told(fNode, problem);
    const Nodes& others = fSearch.beside(*fNode);
    if (others.empty())
        return goDown(now, fSearch.isWelcome() ? Stage::Waiting : Stage::Refused, fRefusal);
    leaveNode();
    approach(now, others, fSettings->options.connectTimeout);
}

void LinkMachine::leaveNode() noexcept
{
    closeConnections();
    fGreeting.reset();
    fTraffic.close(nullptr);
}

/// A node that was the robot's says that it is no longer, or never was.
void LinkMachine::turn(Time now, const std::string& error)
{
    switch (fSearch.turned(now, error, *fNode)) {
    case OwnerSearch::Turn::None:
        return goOn(now);
    case OwnerSearch::Turn::Anew:
        fTraffic.endEarlier(now);
        return fail(now, fSearch.reason());
    case OwnerSearch::Turn::Refusal:
        return refuse(now, fSearch.reason());
    }
}

void LinkMachine::closed(Time now, ConnectionId connection, const std::string& problem) noexcept
{
    guarded(now, [&] {
        if (const NodePtr node = fApproach.leave(connection)) {
            fActions.push(LinkAction::Close{connection});
            fApproach.connectNext(now);
            if (fApproach.isOver())
                endInVain(now, told(node, problem));
        } else if (isCurrent(connection)) {
            fail(now, problem);
        }
    });
}

void LinkMachine::refused(Time now, ConnectionId connection, const std::string& problem) noexcept
{
    guarded(now, [&] {
        if (isCurrent(connection))
            askTheOthers(now, problem);
    });
}

ZoLinkStatus::Step LinkMachine::step() const
{
    switch (fStage) {
    case Stage::LookingUp:
        return ZoLinkStatus::Step::LookUp;
    case Stage::Connecting:
        return ZoLinkStatus::Step::Connection;
    case Stage::Securing:
        return ZoLinkStatus::Step::Tls;
    case Stage::Greeting:
        return ZoLinkStatus::Step::Login;
    default:
        return ZoLinkStatus::Step::None;
    }
}

const char* LinkMachine::nameOfStep() const
{
    switch (step()) {
    case ZoLinkStatus::Step::LookUp:
        return "looking up the host";
    case ZoLinkStatus::Step::Connection:
        return "connecting";
    case ZoLinkStatus::Step::Tls:
        return "setting up TLS";
    default:
        return "authenticating";
    }
}

void LinkMachine::goUp(Time now)
{
    fGreeting.reset();
    fStage = Stage::Up;
    fUpSince = now;
    fSearch.settle(fNode);
    fApproach.forgetFound();
    setCondition(now, true, nullptr);
}

/// The end of an attempt, or of a link that was up. Another attempt follows.
void LinkMachine::fail(Time now, const std::string& problem)
{
    endInVain(now, told(fNode ? fNode : fApproach.goal(), problem));
}

void LinkMachine::endInVain(Time now, const SharedText& cause) noexcept
{
    if (fRefusal)
        goDown(now, Stage::Refused, fRefusal);
    else
        goDown(now, Stage::Waiting, cause);
}

void LinkMachine::refuse(Time now, const std::string& problem)
{
    goDown(now, Stage::Refused, told(fNode, problem));
}

/// What `node` has to do with it; null: none has.
SharedText LinkMachine::told(const NodePtr& node, const std::string& problem) const
{
    const bool isOther = node && !(*node == *fSettings->nodes.front());
    return sharedText(
        fSettings->peer.says(isOther ? "node " + node->toText() + ": " + problem : problem));
}

// Needs no memory: it is what happens when there is none.
void LinkMachine::goDown(Time now, Stage next, const SharedText& cause) noexcept
{
    if (fStage == Stage::Up && now - fUpSince >= fSteady)
        fBackOff.startOver();
    fStage = next;
    if (fSearch.isHeard())
        fBackOff.shorten(fMostWaitOfCluster);
    if (next == Stage::Waiting)
        fRetryAt = fSearch.takeHurry() ? now : now + fBackOff.next();
    closeConnections();
    fGreeting.reset();
    setCondition(now, false, cause); // first: who learns that its call failed finds the link down
    fTraffic.close(cause);
}

void LinkMachine::closeConnections() noexcept
{
    fApproach.end();
    fNode.reset();
    if (fCurrent != 0)
        fActions.push(LinkAction::Close{std::exchange(fCurrent, 0)});
}

void LinkMachine::setCondition(Time now, bool isUp, const SharedText& cause) noexcept
{
    if (fCondition.isUp != isUp)
        fCondition.since = now;
    fCondition.isUp = isUp;
    fCondition.isOpening = fStage == Stage::LookingUp;
    fCondition.isRefused = fStage == Stage::Refused;
    fCondition.isClosed = fStage == Stage::Closed;
    fCondition.cause = cause;
    fCondition.node = isUp ? fNode : nullptr;
    fCondition.isInCluster = isUp && fSearch.isInCluster();
    fActions.push(LinkAction::Tell{fCondition});
}

void LinkMachine::call(Time now, const std::shared_ptr<Exchange>& exchange) noexcept
{
    if (fStage != Stage::Up) {
        fActions.push(LinkAction::End{exchange, fCondition.cause});
        return;
    }
    try {
        fTraffic.enqueue(exchange);
    } catch (const std::exception&) {
        fActions.push(LinkAction::End{exchange, fOutOfMemory});
        return;
    }
    guarded(now, [&] { fTraffic.goOn(now); });
}

void LinkMachine::givenUp(Time now, const std::shared_ptr<Exchange>& exchange) noexcept
{
    guarded(now, [&] { fTraffic.drop(exchange); });
}

void LinkMachine::reconnect(Time now, std::shared_ptr<const LinkSettings> settings) noexcept
{
    guarded(now, [&] {
        fSettings = std::move(settings);
        fSearch.use(fSettings);
        fBackOff.setBounds(fSettings->options.reconnectWait, fSettings->options.reconnectWaitMax);
        goDown(now, Stage::LookingUp, sharedText(fSettings->peer.says("connecting anew")));
        fBackOff.startOver();
        beginAttempt(now);
    });
}

void LinkMachine::disconnect(Time now) noexcept
{
    guarded(now, [&] { goDown(now, Stage::Closed, fDisconnected); });
}

void LinkMachine::stop(Time now) noexcept
{
    goDown(now, Stage::Stopped, fEnded);
}

} // namespace zo
