// SPDX-License-Identifier: MIT
#include "link/traffic.h"

#include "wire/request.h"
#include "wire/status_sink.h"

#include <algorithm>
#include <utility>

namespace zo {

Traffic::Traffic(ActionQueue& actions)
    : fActions(actions), fPing(sharedText(encodeCommand({"PING"})))
{
    fActions.reserve(0);
}

void Traffic::open(Time now, ConnectionId connection, std::shared_ptr<const LinkSettings> settings,
                   std::shared_ptr<const Inquiry> greeting)
{
    fSettings = std::move(settings);
    fTalk.emplace(connection);
    begin(now, std::move(greeting));
}

bool Traffic::endGreeting(Time now)
{
    if (!fTalk->finish())
        return false;
    fIdleSince = now;
    return true;
}

void Traffic::close(const SharedText& problem) noexcept
{
    if (fCall)
        fActions.push(LinkAction::End{std::exchange(fCall, nullptr), problem});
    for (auto& call : fWaiting)
        fActions.push(LinkAction::End{std::move(call), problem});
    fWaiting.clear();
    fTalk.reset();
}

void Traffic::begin(Time now, std::shared_ptr<const Inquiry> inquiry)
{
    fActions.push(fTalk->begin(now, std::move(inquiry)));
}

void Traffic::written(Time now)
{
    if (const auto slice = fTalk->written(now))
        fActions.push(*slice);
}

ReplyProblem Traffic::received(Time now, std::string_view bytes)
{
    return fTalk->received(now, bytes, fRoundTrip);
}

void Traffic::enqueue(const std::shared_ptr<Exchange>& call)
{
    fActions.reserve(fWaiting.size() + 2); // the waiting ones, this one, and the one under way
    fWaiting.push_back(call);
}

void Traffic::drop(const std::shared_ptr<Exchange>& call)
{
    fWaiting.erase(std::remove(fWaiting.begin(), fWaiting.end(), call), fWaiting.end());
    if (fCall == call)
        fCall.reset();
}

void Traffic::goOn(Time now)
{
    if (fTalk->finish()) {
        fIdleSince = now;
        if (fCall)
            fActions.push(LinkAction::End{std::exchange(fCall, nullptr), nullptr});
    }
    sendNext(now);
}

// Who is late waits for `attend`: the others behind have the same turn then.
void Traffic::sendNext(Time now)
{
    if (isBusy() || fWaiting.empty() || sendBy(*fWaiting.front()) <= now)
        return;
    fCall = std::move(fWaiting.front());
    fWaiting.pop_front();
    begin(now, fCall);
}

std::optional<std::string> Traffic::attend(Time now)
{
    endLateCalls(now);
    if (isBusy() && isSilentFor(now, linkPatience()))
        return "silent for " + inMilliseconds(linkPatience()) + " while " +
               fTalk->inquiry().name() + " awaits its reply";
    sendNext(now);
    if (!isBusy() && now >= fIdleSince + fSettings->options.pingInterval)
        begin(now, std::make_shared<const Inquiry>("PING", fPing, 1,
                                                   std::make_shared<StatusSink>("PING")));
    return {};
}

Traffic::Time Traffic::attentionAt() const
{
    Time at = Time::max();
    for (const auto& call : fWaiting)
        at = std::min(at, sendBy(*call));
    if (!isBusy())
        return std::min(at, fIdleSince + fSettings->options.pingInterval);
    if (fCall)
        at = std::min(at, fCall->deadline().at);
    const bool hasCalls = fCall || !fWaiting.empty();
    return std::min(at, fTalk->silentSince() + (hasCalls ? callPatience() : linkPatience()));
}

// Whoever waits gives up when the link is silent for so long: not only the call under way, and
// also one that has come just now. So a robot that hangs costs its callers one such wait.
void Traffic::endLateCalls(Time now)
{
    if (fCall && isOverdue(now, fCall->deadline().at)) {
        endWith(latenessUnderWay(now), fCall);
        fCall.reset();
    }
    for (auto call = fWaiting.begin(); call != fWaiting.end();) {
        if (isOverdue(now, sendBy(**call))) {
            endWith(latenessWaiting(now, **call), *call);
            call = fWaiting.erase(call);
        } else {
            ++call;
        }
    }
}

bool Traffic::isOverdue(Time now, Time due) const
{
    return due <= now || (isBusy() && isSilentFor(now, callPatience()));
}

// Afterwards its answer, a round trip later, would come too late. A way that was slow for a while
// is no measure of one that is not: half of its time at least each call waits for its turn.
Traffic::Time Traffic::sendBy(const Exchange& call) const
{
    const Deadline& deadline = call.deadline();
    return deadline.at - std::min<RoundTrip::Duration>(fRoundTrip.value(), deadline.allowed / 2);
}

std::string Traffic::latenessUnderWay(Time now) const
{
    if (fCall->deadline().at <= now)
        return fCall->lateness();
    const std::string limit = inMilliseconds(fSettings->options.exchangeTimeout);
    if (fTalk->isAnswered())
        return "the reply to " + fCall->name() + " broke off, nothing came for " + limit;
    return "no reply to " + fCall->name() + " within " + limit;
}

std::string Traffic::latenessWaiting(Time now, const Exchange& call) const
{
    if (sendBy(call) <= now)
        return call.lateness() + ": it was not sent, others were before it";
    return call.name() + " was not sent: nothing came for " +
           inMilliseconds(now - fTalk->silentSince());
}

void Traffic::endWith(const std::string& problem, std::shared_ptr<Exchange> call)
{
    fActions.push(LinkAction::End{std::move(call), sharedText(fSettings->peer.says(problem))});
}

bool Traffic::isSilentFor(Time now, RoundTrip::Duration time) const
{
    return now >= fTalk->silentSince() + time;
}

RoundTrip::Duration Traffic::callPatience() const
{
    return fSettings->options.exchangeTimeout + fRoundTrip.value();
}

/// As long as any call's at least: that one gives up says nothing about the link.
RoundTrip::Duration Traffic::linkPatience() const
{
    const auto silence = std::max(fLongestSilence, fSettings->options.exchangeTimeout);
    return silence + 4 * fRoundTrip.value();
}

} // namespace zo
