// SPDX-License-Identifier: MIT
#include "simulation/following_rules.h"

#include "simulation/violation.h"

#include <algorithm>
#include <variant>

using namespace zo;

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

// How long a change of which nobody was told may stay unknown: so long, and so many rounds.
constexpr seconds longestUnknown{10};
constexpr int roundsUnknown = 20;

// How long a key that could not be read is left alone, and how many forbidden ones are tried again
// in one of so many rounds that may be under way.
constexpr seconds longestPause{10};
constexpr int singlesOfRound = 50;
constexpr int roundsUnderWay = 8;

// What is written at every tick must have been seen a few times before it is known to be: one round
// trip tells of it once.
constexpr int tripsOfRegular = 8;

// What one command reads; others may be done between two commands.
constexpr std::size_t mostTogether = 1000;

std::int64_t shownBy(const ZoValue& value)
{
    const auto* number = std::get_if<std::int64_t>(&value.data());
    return number ? *number : FollowingRobot::fNone;
}

} // namespace

FollowingRules::FollowingRules(const Agenda& agenda, const FollowingRobot& robot, int callers)
    : fAgenda(agenda),
      fRobot(robot),
      fSeen(callers, std::vector<std::ptrdiff_t>(robot.keys().size())),
      fOdd(robot.keys().size())
{
}

void FollowingRules::began(const Follower::Begun& begun)
{
    fLists[begun.list].began(begun, fAgenda.now());
    int underWay = 0;
    for (const auto& [list, rounds] : fLists)
        underWay += rounds.underWay();
    require(underWay <= roundsUnderWay, "few rounds are under way on a link",
            [&] { return std::to_string(underWay) + " are"; });
}

void FollowingRules::ended(const Follower::Begun& begun, std::uint64_t order,
                           const std::vector<int>& odd)
{
    for (const int key : odd)
        fOdd[key] = {begun.round->begin(), fAgenda.now()};
    fLists[begun.list].ended(begun, order, fAgenda.now());
}

void FollowingRules::lost()
{
    for (auto& [list, rounds] : fLists)
        rounds.forget();
    std::fill(fOdd.begin(), fOdd.end(), Odd());
}

void FollowingRules::wrote(int key, std::ptrdiff_t past, std::uint64_t order)
{
    fOwn[key] = std::max(fOwn[key], past);
    fLastOwn = std::max(fLastOwn, order);
}

void FollowingRules::check(const Answer& answer)
{
    const auto& [who, list, keys, values] = answer;
    const FollowingRounds& rounds = fLists[list];
    require(values.size() == keys.size(), "an answer has what was asked for",
            [&values = values] { return std::to_string(values.size()) + " values"; });
    checkArrival(answer, rounds);
    for (std::size_t i = 0; i < keys.size(); ++i) {
        const int key = keys[i];
        if (key < 0)
            require(values[i].getType() == ZoValue::Invalid, "what is no key has no value",
                    [] { return "it has one"; });
        else
            checkKey({key, fRobot.keys()[key], shownBy(values[i])}, fSeen[who][key], rounds);
    }
    if (values.size() <= mostTogether)
        checkTogether(answer, rounds);
}

void FollowingRules::checkArrival(const Answer& answer, const FollowingRounds& rounds) const
{
    require(rounds.isAnswered(), "an answer has arrived", [] { return "no round is over"; });
    const Duration age = fAgenda.now() - rounds.arrivedAt();
    require(age <= milliseconds(100) + answer.list->pace().period() / 4,
            "an answer has just arrived", [&] { return lengthText(age) + " ago"; });
    require(rounds.order() > fLastOwn, "an answer was asked for after the link's own last write",
            [&] { return lengthText(fAgenda.now() - rounds.begunAt()) + " ago"; });
}

void FollowingRules::checkKey(const Shown& shown, std::ptrdiff_t& seen,
                              const FollowingRounds& rounds) const
{
    const auto isShown = [&](const FollowingRobot::Past& one) {
        return one.shown() == shown.value;
    };
    const auto tell = [&] { return told(shown, rounds); };
    const Pasts& past = shown.key.past;
    const auto first = std::find_if(past.begin() + seen, past.end(), isShown);
    require(first != past.end(), "no key goes back in time", tell);
    seen = first - past.begin();
    const auto last = std::find_if(past.rbegin(), past.rend(), isShown).base() - 1;
    const auto own = fOwn.find(shown.number);
    require(own == fOwn.end() || last - past.begin() >= own->second,
            "the link's own writes are seen", tell);
    require(knownUntil(shown, last, rounds) > validAfter(shown.number, rounds),
            "a value is no older than a round", tell);
}

/// What is left alone is as old as the round that could not read it, if nobody else has read it.
FollowingRules::Time FollowingRules::validAfter(int key, const FollowingRounds& rounds) const
{
    return mayBePaused(key, rounds) ? std::min(fOdd[key].begin, rounds.validAfter())
                                    : rounds.validAfter();
}

/// When the first change happened behind `last` that had to be known by now.
FollowingRules::Time FollowingRules::knownUntil(const Shown& shown, Pasts::const_iterator last,
                                                const FollowingRounds& rounds) const
{
    const auto found =
        std::find_if(last + 1, shown.key.past.end(), [&](const FollowingRobot::Past& change) {
            return !change.isQuiet || !mayBeUnknown(change, rounds);
        });
    return found == shown.key.past.end() ? Time::max() : found->from;
}

/// Of a change that nobody was told of: whether it still waits for its turn.
bool FollowingRules::mayBeUnknown(const FollowingRobot::Past& change,
                                  const FollowingRounds& rounds) const
{
    return rounds.begunAt() <= change.from + longestUnknown ||
           rounds.roundsSince(change.from) <= roundsUnknown;
}

/// Whether it is left alone because it could not be read.
bool FollowingRules::mayBePaused(int key, const FollowingRounds& rounds) const
{
    if (fOdd[key].end == Time::min())
        return false;
    const Time again = fOdd[key].end + longestPause;
    const int others = fRobot.mostForbidden() / singlesOfRound * roundsUnderWay;
    return rounds.begunAt() <= again || rounds.roundsSince(again) <= others;
}

/// Whether all know by now that it is written at every tick.
bool FollowingRules::isRegular(int key, const FollowingRounds& rounds) const
{
    const Time end = fOdd[key].end;
    const Time since = end == Time::min() ? end : end + longestPause;
    return !mayBePaused(key, rounds) && rounds.tripsSince(since) >= tripsOfRegular;
}

/// All that one command writes again and again, and one reads, was the robot's at one moment.
void FollowingRules::checkTogether(const Answer& answer, const FollowingRounds& rounds)
{
    Time from = Time::min();
    Time until = Time::max();
    for (const int number : answer.keys) {
        if (number < 0 || !fRobot.keys()[number].isTogether || !isRegular(number, rounds))
            continue;
        const FollowingRobot::Past& past = fRobot.keys()[number].past[fSeen[answer.who][number]];
        // It may be none again, and nobody knows which this is; or it was there for no time at all.
        if (past.shown() == FollowingRobot::fNone || past.from == past.until)
            continue;
        from = std::max(from, past.from);
        until = std::min(until, past.until);
    }
    require(from < until, "what is written together is shown together",
            [&] { return toldTogether(answer); });
}

std::string FollowingRules::told(const Shown& shown, const FollowingRounds& rounds) const
{
    std::string text = shown.key.name + " is " + std::to_string(shown.value);
    if (rounds.validAfter() > Time::min())
        text += ", asked for " + lengthText(fAgenda.now() - rounds.validAfter()) + " ago";
    for (const auto& past : shown.key.past) {
        if (past.until > fAgenda.now() - seconds(1))
            text += "; " + std::to_string(past.value) + (past.isQuiet ? " quietly" : "") +
                    " since " + lengthText(fAgenda.now() - past.from);
    }
    return text;
}

std::string FollowingRules::toldTogether(const Answer& answer) const
{
    std::string text = "caller " + std::to_string(answer.who) + " sees";
    for (const int number : answer.keys) {
        if (number < 0 || !fRobot.keys()[number].isTogether)
            continue;
        const FollowingRobot::Key& key = fRobot.keys()[number];
        const FollowingRobot::Past& past = key.past[fSeen[answer.who][number]];
        text += " " + key.name + " since " + lengthText(fAgenda.now() - past.from);
    }
    return text;
}
