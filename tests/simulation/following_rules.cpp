// SPDX-License-Identifier: MIT
#include "simulation/following_rules.h"

#include "simulation/violation.h"

#include <algorithm>
#include <variant>

using namespace zo;

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

// How long a key may be wrong that the robot refuses, that is too large, or whose change nobody was
// told of, beside the way: it is asked for again after 10 s at most.
constexpr seconds pauseOfOdd{13};
constexpr seconds shortestTurn{10};
constexpr int roundsOfTurn = 20;

// What is written at every tick must have been seen a few times before it is known to be.
constexpr int roundsOfRegular = 12;

// What one command reads; others may be done between two commands.
constexpr std::size_t mostTogether = 1000;

std::string lengthText(Agenda::Duration time)
{
    return std::to_string(std::chrono::duration<double, std::milli>(time).count()) + " ms";
}

std::int64_t shownBy(const ZoValue& value)
{
    const auto* number = std::get_if<std::int64_t>(&value.data());
    return number ? *number : FollowingRobot::fNone;
}

} // namespace

FollowingRules::FollowingRules(const Agenda& agenda, const FollowingRobot& robot, int callers,
                               Duration way)
    : fAgenda(agenda),
      fRobot(robot),
      fWay(way),
      fSeen(callers, std::vector<std::ptrdiff_t>(robot.keys().size()))
{
}

void FollowingRules::began(const Follower::Begun& begun)
{
    fLists[begun.list].began(begun, fAgenda.now());
}

void FollowingRules::ended(const Follower::Begun& begun)
{
    fLists[begun.list].ended(begun, fAgenda.now());
}

void FollowingRules::lost()
{
    for (auto& [list, rounds] : fLists)
        rounds.forget();
}

void FollowingRules::check(const Answer& answer)
{
    const auto& [caller, list, keys, values, period] = answer;
    FollowingRounds& rounds = fLists[list];
    require(values.size() == keys.size(), "an answer has what was asked for",
            [&values = values] { return std::to_string(values.size()) + " values"; });
    checkArrival(answer, rounds.arrivedAt());
    const Time validAfter = rounds.validAfter();
    for (std::size_t i = 0; i < keys.size(); ++i) {
        if (keys[i] < 0)
            require(values[i].getType() == ZoValue::Invalid, "what is no key has no value",
                    [] { return "it has one"; });
        else
            checkKey(answer, keys[i], {fRobot.keys()[keys[i]], shownBy(values[i]), validAfter});
    }
    if (values.size() <= mostTogether && rounds.whole() >= roundsOfRegular)
        checkTogether(answer);
}

void FollowingRules::checkArrival(const Answer& answer, Time arrivedAt) const
{
    require(arrivedAt > Time::min(), "an answer has arrived", [] { return "no round is over"; });
    const Duration age = fAgenda.now() - arrivedAt;
    require(age <= milliseconds(100) + answer.list->pace().period() / 4,
            "an answer has just arrived", [&] { return lengthText(age) + " ago"; });
}

void FollowingRules::checkKey(const Answer& answer, int number, const Shown& shown)
{
    if (isOdd(shown.key))
        return;
    const auto isShown = [&](const FollowingRobot::Past& one) { return one.value == shown.value; };
    const auto tell = [&] { return told(shown); };
    const auto& past = shown.key.past;
    std::ptrdiff_t& seen = fSeen[answer.caller][number];
    const auto first = std::find_if(past.begin() + seen, past.end(), isShown);
    require(first != past.end(), "no key goes back in time", tell);
    seen = first - past.begin();
    const auto last = std::find_if(past.rbegin(), past.rend(), isShown).base() - 1;
    const auto own = fOwn.find(number);
    require(own == fOwn.end() || last - past.begin() >= own->second,
            "the link's own writes are seen", tell);
    require(isQuiet(answer, shown.key) || last->until > shown.validAfter,
            "a value is no older than a round", tell);
}

/// Whether a change of which nobody was told may still be waiting for its turn.
bool FollowingRules::isQuiet(const Answer& answer, const FollowingRobot::Key& key) const
{
    const Duration turn =
        std::max<Duration>(shortestTurn, roundsOfTurn * (answer.period + answer.period / 10));
    return fAgenda.now() - key.quietSince < turn + 8 * fWay;
}

bool FollowingRules::isOdd(const FollowingRobot::Key& key) const
{
    return key.isOdd() || fAgenda.now() - key.oddUntil < pauseOfOdd + 4 * fWay;
}

/// All that one command writes again and again was the robot's at one moment.
void FollowingRules::checkTogether(const Answer& answer)
{
    Time from = Time::min();
    Time until = Time::max();
    for (const int number : answer.keys) {
        if (number < 0)
            continue;
        const FollowingRobot::Key& key = fRobot.keys()[number];
        if (!key.isTogether || isOdd(key))
            continue;
        const FollowingRobot::Past& past = key.past[fSeen[answer.caller][number]];
        if (past.value == FollowingRobot::fNone)
            continue; // it may be none again, and nobody knows which this is
        from = std::max(from, past.from);
        until = std::min(until, past.until);
    }
    require(from < until, "what is written together is shown together",
            [&] { return toldTogether(answer); });
}

std::string FollowingRules::told(const Shown& shown) const
{
    std::string text = shown.key.name + " is " + std::to_string(shown.value);
    if (shown.validAfter > Time::min())
        text += ", asked for " + lengthText(fAgenda.now() - shown.validAfter) + " ago";
    for (const auto& past : shown.key.past) {
        if (past.until > fAgenda.now() - seconds(1))
            text += "; " + std::to_string(past.value) + " since " +
                    lengthText(fAgenda.now() - past.from);
    }
    return text;
}

std::string FollowingRules::toldTogether(const Answer& answer) const
{
    std::string text = "caller " + std::to_string(answer.caller) + " sees";
    for (const int number : answer.keys) {
        if (number < 0 || !fRobot.keys()[number].isTogether)
            continue;
        const FollowingRobot::Key& key = fRobot.keys()[number];
        const FollowingRobot::Past& past = key.past[fSeen[answer.caller][number]];
        text += " " + key.name + " since " + lengthText(fAgenda.now() - past.from);
    }
    return text;
}
