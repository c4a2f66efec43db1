// SPDX-License-Identifier: MIT
#include "simulation/expected_traffic.h"

#include <algorithm>
#include <utility>

using namespace zo;

namespace {

using std::chrono::duration_cast;
using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr std::size_t slice = 65536;

std::string word(const std::string& text)
{
    return "$" + std::to_string(text.size()) + "\r\n" + text + "\r\n";
}

int replies(const LinkSettings& settings)
{
    return settings.options.user.empty() && settings.options.password.empty() ? 2 : 3;
}

} // namespace

std::string expectedGreeting(const LinkSettings& settings)
{
    std::string bytes;
    if (!settings.options.user.empty())
        bytes =
            "*3\r\n$4\r\nAUTH\r\n" + word(settings.options.user) + word(settings.options.password);
    else if (!settings.options.password.empty())
        bytes = "*2\r\n$4\r\nAUTH\r\n" + word(settings.options.password);
    return bytes + "*1\r\n$4\r\nPING\r\n*3\r\n$6\r\nCLIENT\r\n$7\r\nSETNAME\r\n" +
           word(settings.clientName);
}

void ExpectedTraffic::open(Time now, ConnectionId connection,
                           std::shared_ptr<const LinkSettings> settings)
{
    fConnection = connection;
    fSettings = std::move(settings);
    fGreeted.clear();
    ask(now, {nullptr, sharedText(expectedGreeting(*fSettings)), replies(*fSettings)});
}

void ExpectedTraffic::close(const SharedText& problem)
{
    if (std::exchange(fIsAwaited, false))
        fActions.push_back(LinkAction::End{fAsking->call, problem});
    for (const Call& call : fWaiting)
        fActions.push_back(LinkAction::End{call, problem});
    fWaiting.clear();
    fAsking.reset();
}

void ExpectedTraffic::drop(const Call& call)
{
    fWaiting.erase(std::remove(fWaiting.begin(), fWaiting.end(), call), fWaiting.end());
    fIsAwaited = fIsAwaited && fAsking->call != call;
}

void ExpectedTraffic::ask(Time now, Asking asking)
{
    fAsking = std::move(asking);
    fAsking->since = now;
    fSilentSince = now;
    writeOn();
}

void ExpectedTraffic::writeOn()
{
    const std::size_t size = std::min(slice, fAsking->bytes->size() - fAsking->offset);
    if (size == 0)
        return;
    fActions.push_back(LinkAction::Write{fConnection, fAsking->bytes, fAsking->offset, size});
    fAsking->offset += size;
    fAsking->isWritten = false;
}

void ExpectedTraffic::written(Time now)
{
    fSilentSince = now;
    if (!fAsking)
        return;
    fAsking->isWritten = true;
    if (fAsking->offset <= slice && !fAsking->isAnswered)
        fAsking->since = now;
    writeOn();
}

void ExpectedTraffic::received(Time now, const Arrival& arrival)
{
    fSilentSince = now;
    if (!fAsking)
        return;
    if (!std::exchange(fAsking->isAnswered, true)) {
        const Duration sample =
            std::min<Duration>(duration_cast<Duration>(now - fAsking->since), seconds(1));
        fRoundTrip = fIsRoundTripKnown ? fRoundTrip + (sample - fRoundTrip) / 8 : sample;
        fIsRoundTripKnown = true;
    }
    for (const Saying* saying = arrival.first; saying != arrival.last; ++saying) {
        if (saying->word == Word::Push || saying->word == Word::Part ||
            saying->word == Word::Spoilt)
            continue;
        --fAsking->missing;
        if (!fAsking->call)
            fGreeted.push_back(saying->word);
    }
}

bool ExpectedTraffic::takeWhole(Time now)
{
    const bool isWhole = fAsking && fAsking->isWritten && fAsking->missing == 0 &&
                         fAsking->offset == fAsking->bytes->size();
    if (!isWhole)
        return false;
    fIdleSince = now;
    if (std::exchange(fIsAwaited, false))
        fActions.push_back(LinkAction::End{fAsking->call, nullptr});
    fAsking.reset();
    return true;
}

void ExpectedTraffic::goOn(Time now)
{
    takeWhole(now);
    sendNext(now);
}

void ExpectedTraffic::sendNext(Time now)
{
    if (fAsking || fWaiting.empty() || now >= sendBy(fWaiting.front()))
        return;
    fIsAwaited = true;
    const Call call = fWaiting.front();
    fWaiting.pop_front();
    ask(now, {call, call->bytes(), call->replies()});
}

bool ExpectedTraffic::attend(Time now)
{
    static const SharedText ping = sharedText("*1\r\n$4\r\nPING\r\n");
    endLate(now);
    if (fAsking && now >= fSilentSince + linkPatience())
        return false;
    sendNext(now);
    if (!fAsking && now >= fIdleSince + fSettings->options.pingInterval)
        ask(now, {nullptr, ping, 1});
    return true;
}

ExpectedTraffic::Time ExpectedTraffic::dueAt() const
{
    Time due = Time::max();
    for (const Call& call : fWaiting)
        due = std::min(due, sendBy(call));
    if (!fAsking)
        return std::min(due, fIdleSince + fSettings->options.pingInterval);
    if (fIsAwaited)
        due = std::min(due, fAsking->call->deadline().at);
    const bool isWaitedFor = fIsAwaited || !fWaiting.empty();
    return std::min(due, fSilentSince + (isWaitedFor ? callPatience() : linkPatience()));
}

bool ExpectedTraffic::isSilent(Time now) const
{
    return fAsking && now >= fSilentSince + callPatience();
}

/// A reply takes a round trip, but no more than half of a call's time is left for that.
ExpectedTraffic::Time ExpectedTraffic::sendBy(const Call& call) const
{
    return call->deadline().at - std::min<Duration>(call->deadline().allowed / 2, fRoundTrip);
}

void ExpectedTraffic::endLate(Time now)
{
    if (fIsAwaited && (now >= fAsking->call->deadline().at || isSilent(now))) {
        end(fAsking->call, latenessOfAsked(now));
        fIsAwaited = false;
    }
    std::deque<Call> inTime;
    for (const Call& call : fWaiting) {
        const std::string& name = call->name();
        if (now >= sendBy(call))
            end(call, "no reply to " + name + " within " +
                          std::to_string(call->deadline().allowed.count()) +
                          " ms: it was not sent, others were before it");
        else if (isSilent(now))
            end(call, name + " was not sent: nothing came for " +
                          std::to_string(duration_cast<milliseconds>(now - fSilentSince).count()) +
                          " ms");
        else
            inTime.push_back(call);
    }
    fWaiting = std::move(inTime);
}

std::string ExpectedTraffic::latenessOfAsked(Time now) const
{
    const Call& call = fAsking->call;
    const std::string name = call->name();
    const auto within = [](milliseconds time) { return std::to_string(time.count()) + " ms"; };
    if (call->deadline().at <= now)
        return "no reply to " + name + " within " + within(call->deadline().allowed);
    const std::string patience = within(fSettings->options.exchangeTimeout);
    if (fAsking->isAnswered)
        return "the reply to " + name + " broke off, nothing came for " + patience;
    return "no reply to " + name + " within " + patience;
}

void ExpectedTraffic::end(const Call& call, const std::string& problem)
{
    fActions.push_back(LinkAction::End{call, sharedText(fSettings->peer.says(problem))});
}

ExpectedTraffic::Duration ExpectedTraffic::callPatience() const
{
    return fSettings->options.exchangeTimeout + fRoundTrip;
}

ExpectedTraffic::Duration ExpectedTraffic::linkPatience() const
{
    return std::max<milliseconds>(fSettings->options.exchangeTimeout, seconds(2)) + 4 * fRoundTrip;
}
