// SPDX-License-Identifier: MIT
#include "link/link_machine.h"

#include <algorithm>
#include <exception>
#include <utility>

namespace zo {

namespace {

std::string told(const Peer& peer, const ReplyProblem& problem)
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
      fEnded(sharedText(fSettings->peer.says("the link is closed"))),
      fTraffic(fActions, pushes),
      fBackOff(fSettings->options.reconnectWait, fSettings->options.reconnectWaitMax, seed)
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
        return fStage == Stage::Connecting ? std::min(fAttemptEnd, fRace->nextAt()) : fAttemptEnd;
    return fStage == Stage::Up ? fTraffic.attentionAt() : Time::max();
}

void LinkMachine::woken(Time now) noexcept
{
    guarded(now, [&] {
        if (fStage == Stage::Waiting && now >= fRetryAt)
            beginAttempt(now);
        else if (isTrying() && now >= fAttemptEnd)
            fail(now, "no connection within " + inMilliseconds(fSettings->options.connectTimeout) +
                          ", while " + stageName());
        else if (fStage == Stage::Connecting)
            connectNext(now);
        else if (fStage == Stage::Up)
            attend(now);
    });
}

void LinkMachine::attend(Time now)
{
    if (const auto problem = fTraffic.attend(now))
        fail(now, *problem);
}

void LinkMachine::failed(Time now) noexcept
{
    if (fStage != Stage::Refused)
        guarded(now, [&] { goDown(now, Stage::Waiting, fOutOfMemory); });
}

void LinkMachine::start(Time now) noexcept
{
    fCondition.since = now;
    guarded(now, [&] { beginAttempt(now); });
}

void LinkMachine::beginAttempt(Time now)
{
    fStage = Stage::LookingUp;
    fAttemptEnd = now + fSettings->options.connectTimeout;
    if (!fFound.empty())
        beginRace(now, std::exchange(fFound, {}));
    else if (fLookUps.isAnotherNeeded(now))
        fActions.push(LinkAction::LookUp{fLookUps.begin(now)});
}

void LinkMachine::lookedUp(Time now, int number, const std::vector<LinkAddress>& addresses,
                           const std::string& problem) noexcept
{
    guarded(now, [&] {
        const bool isNewest = fLookUps.end(number);
        if (fStage == Stage::Waiting)
            fFound = addresses; // too late for that attempt, in time for the next
        if (fStage != Stage::LookingUp)
            return;
        if (!addresses.empty())
            beginRace(now, addresses);
        else if (isNewest)
            fail(now, problem);
    });
}

void LinkMachine::beginRace(Time now, const std::vector<LinkAddress>& addresses)
{
    fRace.emplace(addresses, fAttemptEnd - now);
    fStage = Stage::Connecting;
    connectNext(now);
}

void LinkMachine::connectNext(Time now)
{
    if (const auto address = fRace->next(now)) {
        fRace->started(++fNewest);
        fActions.push(LinkAction::Connect{fNewest, *address});
    }
}

void LinkMachine::connected(Time now, ConnectionId connection) noexcept
{
    guarded(now, [&] {
        if (fRace && fRace->leave(connection))
            take(now, connection);
    });
}

void LinkMachine::take(Time now, ConnectionId winner)
{
    closeConnections();
    fCurrent = winner;
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
    fGreeting.emplace(*fSettings);
    fTraffic.open(now, fCurrent, fSettings, fGreeting->inquiry());
}

void LinkMachine::received(Time now, ConnectionId connection, std::string_view bytes) noexcept
{
    guarded(now, [&] {
        if (!isTalking() || !isCurrent(connection))
            return;
        fLastHeard = now;
        const ReplyProblem problem = fTraffic.received(now, bytes);
        if (problem.text.empty())
            goOn(now);
        else
            fail(now, told(fSettings->peer, problem));
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
        return fail(now, fGreeting->problem(fSettings->peer));
    case Greeting::Verdict::Refused:
        return refuse(now, fGreeting->problem(fSettings->peer));
    case Greeting::Verdict::Welcome:
        if (fTraffic.endGreeting(now))
            goUp(now);
    }
}

void LinkMachine::closed(Time now, ConnectionId connection, const std::string& problem) noexcept
{
    guarded(now, [&] {
        if (fRace && fRace->leave(connection)) {
            fActions.push(LinkAction::Close{connection});
            connectNext(now);
            if (fRace->isOver())
                fail(now, problem);
        } else if (isCurrent(connection)) {
            fail(now, problem);
        }
    });
}

void LinkMachine::refused(Time now, ConnectionId connection, const std::string& problem) noexcept
{
    guarded(now, [&] {
        if (isCurrent(connection))
            refuse(now, problem);
    });
}

const char* LinkMachine::stageName() const
{
    switch (fStage) {
    case Stage::LookingUp:
        return "looking up the host";
    case Stage::Connecting:
        return "connecting";
    case Stage::Securing:
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
    setCondition(now, true, nullptr);
}

/// The end of an attempt, or of a link that was up. Another attempt follows.
void LinkMachine::fail(Time now, const std::string& problem)
{
    goDown(now, Stage::Waiting, sharedText(fSettings->peer.says(problem)));
}

void LinkMachine::refuse(Time now, const std::string& problem)
{
    goDown(now, Stage::Refused, sharedText(fSettings->peer.says(problem)));
}

// Needs no memory: it is what happens when there is none.
void LinkMachine::goDown(Time now, Stage next, const SharedText& cause) noexcept
{
    if (fStage == Stage::Up && now - fUpSince >= fSteady)
        fBackOff.startOver();
    fStage = next;
    if (next == Stage::Waiting)
        fRetryAt = now + fBackOff.next();
    closeConnections();
    fGreeting.reset();
    setCondition(now, false, cause); // first: who learns that its call failed finds the link down
    fTraffic.close(cause);
}

void LinkMachine::closeConnections() noexcept
{
    if (fRace) {
        for (const ConnectionId connection : fRace->running())
            fActions.push(LinkAction::Close{connection});
        fRace.reset();
    }
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
    fCondition.cause = cause;
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
        fBackOff.setBounds(fSettings->options.reconnectWait, fSettings->options.reconnectWaitMax);
        goDown(now, Stage::LookingUp, sharedText(fSettings->peer.says("connecting anew")));
        fBackOff.startOver();
        beginAttempt(now);
    });
}

void LinkMachine::stop(Time now) noexcept
{
    goDown(now, Stage::Stopped, fEnded);
}

} // namespace zo
