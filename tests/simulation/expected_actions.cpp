// SPDX-License-Identifier: MIT
#include "simulation/action_text.h"
#include "simulation/expected_link.h"
#include "simulation/violation.h"

#include <algorithm>

using namespace zo;

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

/// Whether a link may say `text` where something like `part` belongs. What it says names the robot.
bool isText(const SharedText& text, const SharedText& part)
{
    if (!text || !part)
        return !text && !part;
    return text->compare(0, 9, "robot at ") == 0 && text->find(*part) != std::string::npos;
}

bool isCondition(const LinkCondition& is, const LinkCondition& expected)
{
    return is.isUp == expected.isUp && is.isOpening == expected.isOpening &&
           is.isRefused == expected.isRefused && is.since == expected.since &&
           isText(is.cause, expected.cause);
}

bool isSame(const LinkAction::LookUp& is, const LinkAction::LookUp& expected)
{
    return is.number == expected.number;
}
bool isSame(const LinkAction::Connect& is, const LinkAction::Connect& expected)
{
    return is.connection == expected.connection && is.address == expected.address;
}
bool isSame(const LinkAction::StartTls& is, const LinkAction::StartTls& expected)
{
    return is.connection == expected.connection;
}
bool isSame(const LinkAction::Write& is, const LinkAction::Write& expected)
{
    return is.connection == expected.connection && is.offset == expected.offset &&
           is.size == expected.size && (is.bytes == expected.bytes || *is.bytes == *expected.bytes);
}
bool isSame(const LinkAction::Close& is, const LinkAction::Close& expected)
{
    return is.connection == expected.connection;
}
bool isSame(const LinkAction::End& is, const LinkAction::End& expected)
{
    const bool isSent = is.sent.first == expected.sent.first && is.sent.last == expected.sent.last;
    return is.exchange == expected.exchange && isText(is.problem, expected.problem) &&
           (isSent || is.problem);
}
bool isSame(const LinkAction::Tell& is, const LinkAction::Tell& expected)
{
    return isCondition(is.condition, expected.condition);
}

struct IsSame
{
    template <class Action>
    bool operator()(const Action& is, const Action& expected) const
    {
        return isSame(is, expected);
    }
    template <class Action, class Other>
    bool operator()(const Action&, const Other&) const
    {
        return false;
    }
};

} // namespace

void ExpectedLink::take(const LinkAction::Any& action)
{
    if (fIsEndingLate) {
        // So many late calls had ended before memory ran out; they do not end again.
        const auto* const end = std::get_if<LinkAction::End>(&action);
        const auto isItsEnd = [&](const LinkAction::Any& other) {
            const auto* const otherEnd = std::get_if<LinkAction::End>(&other);
            return end && otherEnd && otherEnd->exchange == end->exchange;
        };
        const auto found = std::find_if(fActions.begin(), fActions.end(), isItsEnd);
        if (found != fActions.end() && found != fActions.begin() &&
            !std::holds_alternative<LinkAction::End>(fActions.front())) {
            fActions.erase(found);
            return;
        }
        fIsEndingLate = false;
    }
    require(!fActions.empty(), "nothing is done unasked", [&] { return actionText(action); });
    require(std::visit(IsSame(), action, fActions.front()), "each event has its consequence",
            [&] { return actionText(action) + "; expected was " + actionText(fActions.front()); });
    fActions.pop_front();
}

void ExpectedLink::settle()
{
    require(fActions.empty(), "nothing is left out",
            [&] { return "expected was " + actionText(fActions.front()); });
    require(isCondition(fMachine.condition(), fCondition), "the link knows its condition", [&] {
        return actionText(LinkAction::Tell{fMachine.condition()}) + "; expected was " +
               actionText(LinkAction::Tell{fCondition});
    });
    require(fMachine.roundTrip().value() == fTraffic.roundTrip(), "the round trip is measured",
            [&] {
                return std::to_string(fMachine.roundTrip().value().count()) + " us instead of " +
                       std::to_string(fTraffic.roundTrip().count());
            });
    fCondition.cause = fMachine.condition().cause; // whose words nobody can foresee
    require(fMachine.wakeAt() == dueAt(), "the link is woken when something is due", [&] {
        return "off by " + std::to_string((fMachine.wakeAt() - dueAt()).count()) + " ns";
    });
}

std::optional<double> ExpectedLink::takeWait()
{
    return std::exchange(fWait, std::nullopt);
}

ExpectedLink::Time ExpectedLink::dueAt() const
{
    if (fStage == Stage::Waiting)
        return fRetryAt;
    if (fStage == Stage::Connecting && !fCourse.empty())
        return std::min(fAttemptEnd, fNextAt);
    if (isTrying())
        return fAttemptEnd;
    return fStage == Stage::Up ? fTraffic.dueAt() : Time::max();
}

LinkDoing ExpectedLink::doing() const
{
    switch (fStage) {
    case Stage::Up:
        return fTraffic.hasCalls() ? LinkDoing::Busy : LinkDoing::Idle;
    case Stage::Refused:
        return LinkDoing::Refused;
    case Stage::Stopped:
        return LinkDoing::Stopped;
    default:
        return static_cast<LinkDoing>(fStage);
    }
}

ExpectedLink::Time ExpectedLink::upAt(Time now) const
{
    const ZoBrokerOptions& options = fSettings->options;
    const Time lookUpAt = fIsLookingUp ? fLookUpSince + fLookUpPatience : now;
    const auto silence = std::max<milliseconds>(options.exchangeTimeout, seconds(2)) + seconds(4);
    return std::max(now + silence, lookUpAt) +
           3 * (options.connectTimeout + options.reconnectWaitMax);
}
