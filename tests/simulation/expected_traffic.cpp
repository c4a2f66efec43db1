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
constexpr std::size_t window = 4 * slice;

std::string word(const std::string& text)
{
    return "$" + std::to_string(text.size()) + "\r\n" + text + "\r\n";
}

int replies(const LinkSettings& settings)
{
    const ZoBrokerOptions& options = settings.options;
    return 2 + (options.user.empty() && options.password.empty() ? 0 : 1) +
           (options.prefix.empty() ? 0 : 1);
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
    bytes +=
        "*1\r\n$4\r\nPING\r\n*3\r\n$6\r\nCLIENT\r\n$7\r\nSETNAME\r\n" + word(settings.clientName);
    if (!settings.options.prefix.empty())
        bytes += "*3\r\n$7\r\nCLUSTER\r\n$7\r\nKEYSLOT\r\n" + word(settings.options.prefix);
    return bytes;
}

void ExpectedTraffic::open(Time now, ConnectionId connection,
                           std::shared_ptr<const LinkSettings> settings)
{
    fConnection = connection;
    fSettings = std::move(settings);
    fGreeted.clear();
    fIsGreeted = false;
    fReplies = 0;
    ask(std::make_shared<const Inquiry>("PING", sharedText(expectedGreeting(*fSettings)),
                                        replies(*fSettings), nullptr),
        nullptr);
    sendOn(now);
}

void ExpectedTraffic::close(const SharedText& problem)
{
    for (const AskedPtr& asked : fCalls)
        fActions.push_back(LinkAction::End{asked->call, problem, asked->sent});
    fCalls.clear();
    fTurn.clear();
    fAwaited.clear();
    fWhole.clear();
    fIsWriting = false;
}

bool ExpectedTraffic::hasCalls() const
{
    const auto isOfCall = [](const Commands& commands) { return !commands.asked->isOwn(); };
    return !fCalls.empty() || std::any_of(fAwaited.begin(), fAwaited.end(), isOfCall);
}

void ExpectedTraffic::ask(std::shared_ptr<const Inquiry> inquiry, const Call& call)
{
    fTurn.push_back(std::make_shared<Asked>(Asked{call, std::move(inquiry)}));
    if (call)
        fCalls.push_back(fTurn.back());
}

void ExpectedTraffic::add(const Call& call)
{
    ask(call, call);
}

void ExpectedTraffic::drop(const Call& call)
{
    const auto isIt = [&](const AskedPtr& asked) { return asked->call == call; };
    fCalls.erase(std::remove_if(fCalls.begin(), fCalls.end(), isIt), fCalls.end());
    fTurn.erase(std::remove_if(fTurn.begin(), fTurn.end(), isIt), fTurn.end());
    for (const Commands& commands : fAwaited) {
        if (commands.asked->call == call)
            commands.asked->call.reset();
    }
}

std::size_t ExpectedTraffic::sizeOfNext(const Asked& asked)
{
    const std::size_t before = asked.parts == 0 ? 0 : asked.inquiry->part(asked.parts - 1).end;
    return asked.inquiry->part(asked.parts).end - before;
}

bool ExpectedTraffic::hasTurn(Time now, const Asked& asked) const
{
    const bool isInTime = !isSilent(now) && (!asked.call || now < sendBy(asked.call));
    return (asked.parts > 0 || isInTime) &&
           (asked.unanswered == 0 || asked.unanswered + sizeOfNext(asked) <= window);
}

void ExpectedTraffic::sendOn(Time now)
{
    if (fIsWriting)
        return;
    if (!fAwaited.empty() && fAwaited.back().out < fAwaited.back().end) {
        fIsFirstOfCommands = false;
        return write(std::min(slice, fAwaited.back().end - fAwaited.back().out));
    }
    const auto next = std::find_if(fTurn.begin(), fTurn.end(),
                                   [&](const AskedPtr& asked) { return hasTurn(now, *asked); });
    if (next == fTurn.end())
        return;
    const AskedPtr asked = *next;
    fTurn.erase(next);
    sendFirstOf(now, asked);
    if (!isOut(*asked))
        fTurn.push_back(asked);
}

void ExpectedTraffic::sendFirstOf(Time now, const AskedPtr& asked)
{
    if (!isBusy())
        fSilentSince = now;
    const std::size_t begin = asked->parts == 0 ? 0 : asked->inquiry->part(asked->parts - 1).end;
    Commands commands{asked, begin, 0, 0, begin};
    do {
        commands.size += sizeOfNext(*asked);
        asked->unanswered += sizeOfNext(*asked);
        commands.missing += asked->inquiry->part(asked->parts).replies;
        commands.end = asked->inquiry->part(asked->parts++).end;
    } while (!isOut(*asked) && commands.size + sizeOfNext(*asked) <= slice &&
             asked->unanswered + sizeOfNext(*asked) <= window);
    commands.since = now;
    asked->sent.last = ++fSlices;
    if (asked->sent.first == 0)
        asked->sent.first = fSlices;
    fAwaited.push_back(commands);
    fIsFirstOfCommands = true;
    write(std::min(slice, commands.size));
}

void ExpectedTraffic::write(std::size_t size)
{
    Commands& commands = fAwaited.back();
    fActions.push_back(
        LinkAction::Write{fConnection, commands.asked->inquiry->bytes(), commands.out, size});
    commands.out += size;
    fIsWriting = true;
    endFirst();
}

void ExpectedTraffic::written(Time now)
{
    fIsWriting = false;
    if (fAwaited.size() == 1)
        fSilentSince = now;
    if (!fAwaited.empty() && fIsFirstOfCommands && !fAwaited.back().isAnswered)
        fAwaited.back().since = now;
}

void ExpectedTraffic::received(Time now, const Arrival& arrival)
{
    fSilentSince = now;
    for (const Saying* saying = arrival.first; saying != arrival.last; ++saying) {
        if (saying->word == Word::Push || saying->word == Word::Part ||
            saying->word == Word::Spoilt || fAwaited.empty())
            continue;
        ++fReplies;
        answerFirst(now);
        --fAwaited.front().missing;
        if (!fAwaited.front().asked->call && !fIsGreeted)
            fGreeted.push_back(saying->word);
        endFirst();
    }
    if (arrival.begun > fReplies)
        answerFirst(now);
}

void ExpectedTraffic::learnRoundTrip(const RoundTrip& roundTrip)
{
    fRoundTrip = roundTrip.value();
    fIsRoundTripKnown = roundTrip.isKnown();
}

void ExpectedTraffic::answerFirst(Time now)
{
    if (fAwaited.empty() || std::exchange(fAwaited.front().isAnswered, true))
        return;
    fAwaited.front().asked->isAnswered = true;
    const Duration sample =
        std::min<Duration>(duration_cast<Duration>(now - fAwaited.front().since), seconds(1));
    fRoundTrip = fIsRoundTripKnown ? fRoundTrip + (sample - fRoundTrip) / 8 : sample;
    fIsRoundTripKnown = true;
}

void ExpectedTraffic::endFirst()
{
    const Commands& first = fAwaited.front();
    if (first.missing > 0 || first.out < first.end)
        return;
    first.asked->unanswered -= first.size;
    if (isOut(*first.asked) && first.asked->unanswered == 0)
        fWhole.push_back(first.asked);
    fAwaited.pop_front();
}

bool ExpectedTraffic::takeGreeting(Time now)
{
    if (fWhole.empty())
        return false;
    fWhole.pop_front();
    fIsGreeted = true;
    fIdleSince = now;
    return true;
}

void ExpectedTraffic::takeWhole(Time now)
{
    for (const AskedPtr& asked : std::exchange(fWhole, {})) {
        fIdleSince = now;
        if (!asked->call)
            continue;
        fActions.push_back(LinkAction::End{asked->call, nullptr, asked->sent});
        drop(asked->call);
    }
}

void ExpectedTraffic::goOn(Time now)
{
    takeWhole(now);
    sendOn(now);
}

bool ExpectedTraffic::attend(Time now)
{
    static const SharedText ping = sharedText("*1\r\n$4\r\nPING\r\n");
    endLate(now);
    if (isBusy() && now >= fSilentSince + linkPatience())
        return false;
    sendOn(now);
    if (!isBusy() && now >= fIdleSince + fSettings->options.pingInterval) {
        ask(std::make_shared<const Inquiry>("PING", ping, 1, nullptr), nullptr);
        sendOn(now);
    }
    return true;
}

ExpectedTraffic::Time ExpectedTraffic::dueAt() const
{
    Time due =
        isBusy() ? fSilentSince + linkPatience() : fIdleSince + fSettings->options.pingInterval;
    for (const AskedPtr& asked : fCalls)
        due = std::min(due, dueAt(*asked));
    if (isBusy() && !fCalls.empty())
        due = std::min(due, fSilentSince + callPatience());
    return due;
}

bool ExpectedTraffic::isSilent(Time now) const
{
    return isBusy() && now >= fSilentSince + callPatience();
}

/// A reply takes a round trip, but no more than half of a call's time is left for that.
ExpectedTraffic::Time ExpectedTraffic::sendBy(const Call& call) const
{
    return call->deadline().at - std::min<Duration>(call->deadline().allowed / 2, fRoundTrip);
}

ExpectedTraffic::Time ExpectedTraffic::dueAt(const Asked& asked) const
{
    return asked.parts == 0 ? sendBy(asked.call) : asked.call->deadline().at;
}

void ExpectedTraffic::endLate(Time now)
{
    const auto calls = fCalls;
    for (const AskedPtr& asked : calls) {
        if (now < dueAt(*asked) && !isSilent(now))
            continue;
        const Call call = asked->call;
        fActions.push_back(LinkAction::End{
            call, sharedText(fSettings->peer.says(lateness(now, *asked))), asked->sent});
        drop(call);
    }
}

std::string ExpectedTraffic::lateness(Time now, const Asked& asked) const
{
    const std::string name = asked.call->name();
    const auto within = [](milliseconds time) { return std::to_string(time.count()) + " ms"; };
    const std::string allowed = within(asked.call->deadline().allowed);
    if (now >= dueAt(asked))
        return "no reply to " + name + " within " + allowed +
               (asked.parts == 0 ? ": it was not sent, others were before it" : "");
    if (asked.parts == 0)
        return name + " was not sent: nothing came for " +
               within(duration_cast<milliseconds>(now - fSilentSince));
    const std::string patience = within(fSettings->options.exchangeTimeout);
    if (asked.isAnswered)
        return "the reply to " + name + " broke off, nothing came for " + patience;
    return "no reply to " + name + " within " + patience;
}

ExpectedTraffic::Duration ExpectedTraffic::callPatience() const
{
    return fSettings->options.exchangeTimeout + fRoundTrip;
}

ExpectedTraffic::Duration ExpectedTraffic::linkPatience() const
{
    return std::max<milliseconds>(fSettings->options.exchangeTimeout, seconds(2)) + 4 * fRoundTrip;
}
