// SPDX-License-Identifier: MIT
#include "link/traffic.h"

#include "wire/request.h"
#include "wire/status_sink.h"

#include <algorithm>
#include <utility>

namespace zo {

Traffic::Traffic(ActionQueue& actions, ReplySink* pushes)
    : fActions(actions), fPushes(pushes), fPing(sharedText(encodeCommand({"PING"})))
{
    fActions.reserve(0);
}

void Traffic::open(Time now, ConnectionId connection, std::shared_ptr<const LinkSettings> settings,
                   std::shared_ptr<const Inquiry> greeting)
{
    fSettings = std::move(settings);
    fTalk.emplace(connection, fPushes, fSlices);
    askItself(now, std::move(greeting));
}

bool Traffic::endGreeting(Time now)
{
    if (!fTalk->takeWhole())
        return false;
    fTalk->takeRedirection(); // whoever asks behind a greeting hears it
    fIdleSince = now;
    return true;
}

void Traffic::close(const SharedText& problem) noexcept
{
    for (Call& call : fCalls)
        fActions.push(LinkAction::End{std::move(call.exchange), problem, call.asking->sent});
    fCalls.clear();
    fTalk.reset();
}

void Traffic::askItself(Time now, std::shared_ptr<const Inquiry> inquiry)
{
    fTalk->add(std::make_shared<Asking>(std::move(inquiry), nullptr));
    sendOn(now);
}

void Traffic::written(Time now)
{
    fTalk->written(now);
    sendOn(now);
}

ReplyProblem Traffic::received(Time now, std::string_view bytes)
{
    fTally.received += bytes.size();
    return fTalk->received(now, bytes, fRoundTrip);
}

void Traffic::enqueue(const std::shared_ptr<Exchange>& call)
{
    fActions.reserve(fCalls.size() + 1);
    const auto asking = std::make_shared<Asking>(call, call->flow());
    fCalls.push_back({call, asking});
    try {
        fTalk->add(asking);
    } catch (...) {
        fCalls.pop_back();
        throw;
    }
}

Traffic::Calls::iterator Traffic::find(const std::shared_ptr<Exchange>& exchange)
{
    return std::find_if(fCalls.begin(), fCalls.end(),
                        [&](const Call& call) { return call.exchange == exchange; });
}

void Traffic::drop(const std::shared_ptr<Exchange>& call)
{
    const auto found = find(call);
    if (found == fCalls.end())
        return;
    fTalk->cancel(found->asking);
    fCalls.erase(found);
}

void Traffic::endEarlier(Time now)
{
    while (const auto whole = fTalk->takeWholeBefore())
        endAnswered(now, whole);
}

void Traffic::goOn(Time now)
{
    while (const auto whole = fTalk->takeWhole()) {
        fIdleSince = now;
        endAnswered(now, whole);
    }
    sendOn(now);
}

void Traffic::endAnswered(Time now, const AskingPtr& asking)
{
    const auto found = std::find_if(fCalls.begin(), fCalls.end(),
                                    [&](const Call& call) { return call.asking == asking; });
    if (found == fCalls.end())
        return;
    if (found->exchange->isOfList()) {
        ++fTally.answers;
        fTally.newestAnswer = now;
    }
    fActions.push(LinkAction::End{std::move(found->exchange), nullptr, asking->sent});
    fCalls.erase(found);
}

void Traffic::sendOn(Time now)
{
    const auto slice =
        fTalk->nextSlice(now, [&](const Asking& asking) { return mayBegin(now, asking); });
    if (!slice)
        return;
    fTally.sent += slice->size;
    fActions.push(*slice);
}

// Who is late waits for `attend`: the others behind have the same turn then. On a link that is
// silent nothing begins: it would only wait, too.
bool Traffic::mayBegin(Time now, const Asking& asking) const
{
    if (isBusy() && isSilentFor(now, callPatience()))
        return false;
    const auto call = std::find_if(fCalls.begin(), fCalls.end(),
                                   [&](const Call& one) { return one.asking.get() == &asking; });
    return call == fCalls.end() || sendBy(*call->exchange) > now;
}

std::optional<std::string> Traffic::attend(Time now)
{
    endLateCalls(now);
    if (isBusy() && isSilentFor(now, linkPatience()))
        return "silent for " + inMilliseconds(linkPatience()) + " while " + fTalk->pending();
    sendOn(now);
    if (!isBusy() && now >= fIdleSince + fSettings->options.pingInterval)
        askItself(now, std::make_shared<const Inquiry>("PING", fPing, 1,
                                                       std::make_shared<StatusSink>("PING")));
    return {};
}

Traffic::Time Traffic::attentionAt() const
{
    Time at = isBusy() ? fTalk->silentSince() + linkPatience()
                       : fIdleSince + fSettings->options.pingInterval;
    for (const Call& call : fCalls) {
        at = std::min(at, dueAt(call));
        if (isBusy() && !call.exchange->deadline().isNone())
            at = std::min(at, fTalk->silentSince() + callPatience());
    }
    return at;
}

// Whoever waits gives up when the link is silent for so long: not only the calls under way, and
// also one that has come just now. So a robot that hangs costs its callers one such wait.
void Traffic::endLateCalls(Time now)
{
    for (auto call = fCalls.begin(); call != fCalls.end();) {
        if (!isOverdue(now, *call)) {
            ++call;
            continue;
        }
        fActions.push(LinkAction::End{call->exchange,
                                      sharedText(fSettings->peer.says(lateness(now, *call))),
                                      call->asking->sent});
        fTalk->cancel(call->asking);
        call = fCalls.erase(call);
    }
}

bool Traffic::isOverdue(Time now, const Call& call) const
{
    const bool isWaitedFor = !call.exchange->deadline().isNone();
    return dueAt(call) <= now || (isWaitedFor && isBusy() && isSilentFor(now, callPatience()));
}

Traffic::Time Traffic::dueAt(const Call& call) const
{
    return call.asking->hasBegun() ? call.exchange->deadline().at : sendBy(*call.exchange);
}

// Afterwards its answer, a round trip later, would come too late. A way that was slow for a while
// is no measure of one that is not: half of its time at least each call waits for its turn.
Traffic::Time Traffic::sendBy(const Exchange& call) const
{
    const Deadline& deadline = call.deadline();
    return deadline.at - std::min<RoundTrip::Duration>(fRoundTrip.value(), deadline.allowed / 2);
}

std::string Traffic::lateness(Time now, const Call& call) const
{
    const Exchange& exchange = *call.exchange;
    const bool hasBegun = call.asking->hasBegun();
    if (dueAt(call) <= now)
        return exchange.lateness() + (hasBegun ? "" : ": it was not sent, others were before it");
    if (!hasBegun)
        return exchange.name() + " was not sent: nothing came for " +
               inMilliseconds(now - fTalk->silentSince());
    const std::string limit = inMilliseconds(fSettings->options.exchangeTimeout);
    if (call.asking->isAnswered)
        return "the reply to " + exchange.name() + " broke off, nothing came for " + limit;
    return "no reply to " + exchange.name() + " within " + limit;
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
