// SPDX-License-Identifier: MIT
#include "simulation/expected_link.h"

#include <algorithm>
#include <utility>

using namespace zo;

namespace {

using std::chrono::microseconds;
using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr seconds steady{1};

milliseconds firstBound(const ZoBrokerOptions& options)
{
    return std::min(options.reconnectWait, options.reconnectWaitMax);
}

} // namespace

ExpectedLink::ExpectedLink(const LinkMachine& machine, Settings settings, std::uint32_t seed)
    : fMachine(machine),
      fSettings(std::move(settings)),
      fTraffic(fActions),
      fBound(firstBound(fSettings->options)),
      fRandom(seed)
{
    fCondition.cause = sharedText(fSettings->peer.says("not connected yet"));
}

void ExpectedLink::begin(Time now, bool hasGoneDown, bool hasFailed)
{
    fNow = now;
    fHasGoneDown = hasGoneDown;
    fHasFailed = hasFailed;
}

/// Whether memory ran out, after which only one thing can be right.
bool ExpectedLink::failsHere()
{
    if (!fHasFailed || !fHasGoneDown)
        return false;
    goDown(Stage::Waiting, "out of memory");
    return true;
}

void ExpectedLink::start()
{
    fCondition.since = fNow;
    beginAttempt();
}

void ExpectedLink::received(ConnectionId connection, const Arrival& arrival)
{
    if (!isTalking() || connection != fCurrent)
        return;
    fTraffic.received(fNow, arrival);
    if (fHasGoneDown)
        fTraffic.learnRoundTrip(fMachine.roundTrip()); // how far it had got, nobody can foresee
    if (failsHere())
        return;
    const bool isNoticed = fHasGoneDown && !fMachine.condition().isRefused;
    if (arrival.mustNotice || (arrival.mayNotice && isNoticed))
        fail("");
    else
        goOn();
}

void ExpectedLink::written(ConnectionId connection)
{
    if (!isTalking() || connection != fCurrent)
        return;
    fTraffic.written(fNow);
    if (failsHere())
        return;
    fTraffic.sendOn(fNow);
    goOn();
}

void ExpectedLink::goOn()
{
    if (fStage == Stage::Greeting)
        judgeGreeting();
    else
        fTraffic.goOn(fNow);
}

void ExpectedLink::judgeGreeting()
{
    const auto& words = fTraffic.greeted();
    const std::size_t logins = expectedGreeting(*fSettings).find("AUTH") == 8 ? 1 : 0;
    if (logins > 0 && !words.empty() && words[0] != Word::Fine)
        return words[0] == Word::Passing ? fail("not ready: ")
                                         : goDown(Stage::Refused, "user or password refused: ");
    if (words.size() <= logins)
        return;
    const Word ping = words[logins];
    if (ping == Word::NeedsLogin)
        return goDown(Stage::Refused, "login refused: NOAUTH");
    if (ping != Word::Fine && ping != Word::NoRight)
        return fail("not ready: ");
    if (!fTraffic.takeGreeting(fNow))
        return;
    fStage = Stage::Up;
    fUpSince = fNow;
    tell(true, nullptr);
}

void ExpectedLink::closed(ConnectionId connection, const std::string& problem)
{
    if (leaveRace(connection)) {
        fActions.push_back(LinkAction::Close{connection});
        fNextAt = fNow;
        connectNext();
        if (fRunning.empty() && fCourse.empty() && !failsHere())
            fail(problem);
    } else if (connection == fCurrent && fCurrent != 0 && !failsHere()) {
        fail(problem);
    }
}

void ExpectedLink::refused(ConnectionId connection, const std::string& problem)
{
    if (connection == fCurrent && fCurrent != 0 && !failsHere())
        goDown(Stage::Refused, problem);
}

void ExpectedLink::call(const Call& call)
{
    if (fStage != Stage::Up) {
        fActions.push_back(LinkAction::End{call, fCondition.cause});
    } else if (fHasFailed && !fHasGoneDown) {
        fActions.push_back(LinkAction::End{call, sharedText("out of memory")});
    } else {
        fTraffic.add(call);
        if (!failsHere())
            fTraffic.goOn(fNow);
    }
}

void ExpectedLink::givenUp(const Call& call)
{
    if (!isStopped())
        fTraffic.drop(call);
}

void ExpectedLink::woken()
{
    if (fStage == Stage::Waiting && fNow >= fRetryAt)
        return beginAttempt();
    if (isTrying() && fNow >= fAttemptEnd) {
        if (!failsHere())
            fail(tooLate());
    } else if (fStage == Stage::Connecting) {
        connectNext();
    } else if (fStage == Stage::Up) {
        fIsEndingLate = failsHere();
        if (!fIsEndingLate && !fTraffic.attend(fNow))
            fail("silent for ");
    }
}

void ExpectedLink::failed()
{
    if (!isStopped() && fStage != Stage::Refused)
        goDown(Stage::Waiting, "out of memory");
}

void ExpectedLink::reconnect(Settings settings)
{
    if (isStopped())
        return;
    fSettings = std::move(settings);
    fBound = firstBound(fSettings->options);
    if (fHasFailed) {
        goDown(Stage::Waiting, "out of memory");
        return;
    }
    goDown(Stage::LookingUp, "connecting anew");
    fBound = firstBound(fSettings->options);
    beginAttempt();
}

void ExpectedLink::stop()
{
    goDown(Stage::Stopped, "the link is closed");
}

void ExpectedLink::fail(const std::string& problem)
{
    goDown(Stage::Waiting, problem);
}

void ExpectedLink::goDown(Stage next, const std::string& cause)
{
    if (fStage == Stage::Up && fNow - fUpSince >= steady)
        fBound = firstBound(fSettings->options);
    fStage = next;
    if (next == Stage::Waiting)
        beginWait();
    for (const ConnectionId running : std::exchange(fRunning, {}))
        fActions.push_back(LinkAction::Close{running});
    fCourse.clear();
    if (fCurrent != 0)
        fActions.push_back(LinkAction::Close{std::exchange(fCurrent, 0)});
    const SharedText shared = sharedText(cause);
    tell(false, shared);
    fTraffic.close(shared);
}

/// A random wait, any up to a bound that doubles.
void ExpectedLink::beginWait()
{
    const microseconds bound = fBound;
    const microseconds wait(
        std::uniform_int_distribution<microseconds::rep>(0, bound.count())(fRandom));
    fRetryAt = fNow + wait;
    fBound = std::min(2 * fBound, fSettings->options.reconnectWaitMax);
    fWait = static_cast<double>(wait.count()) / static_cast<double>(bound.count());
}

void ExpectedLink::tell(bool isUp, const SharedText& cause)
{
    if (fCondition.isUp != isUp)
        fCondition.since = fNow;
    fCondition.isUp = isUp;
    fCondition.isOpening = fStage == Stage::LookingUp;
    fCondition.isRefused = fStage == Stage::Refused;
    fCondition.cause = cause;
    fActions.push_back(LinkAction::Tell{fCondition});
}

std::string ExpectedLink::tooLate() const
{
    static constexpr const char* doings[] = {"looking up the host", "connecting", "setting up TLS",
                                             "authenticating"};
    const int trying = static_cast<int>(fStage) - static_cast<int>(Stage::LookingUp);
    return "no connection within " + std::to_string(fSettings->options.connectTimeout.count()) +
           " ms, while " + doings[trying];
}
