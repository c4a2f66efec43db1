// SPDX-License-Identifier: MIT
#include "simulation/following_rounds.h"

#include "simulation/violation.h"

#include <algorithm>
#include <string>
#include <utility>

using namespace zo;

namespace {

using std::chrono::seconds;

constexpr std::size_t mostRemembered = 80;
constexpr int mostUnderWay = 8;

// That many keys at most are tried again one by one; one more may be all that is asked for
// together.
constexpr int mostSingles = 50 + 1;

// Until a list is left alone for which nobody asks: at least, and while it has no rhythm.
constexpr seconds shortestMemory{1};
constexpr seconds memoryWithoutRhythm{30};

int singles(const RoundPlan& plan)
{
    const auto isSingle = [](const RoundPlan::Command& command) { return command.keys == 1; };
    return static_cast<int>(
        std::count_if(plan.commands().begin(), plan.commands().end(), isSingle));
}

/// Whether keys are to be asked for again, one by one.
bool isRefusedTogether(const Round& round)
{
    const auto& commands = round.plan()->commands();
    for (int command = 0; command < static_cast<int>(commands.size()); ++command) {
        if (commands[command].keys > 1 && !round.reply(command).refusal.empty())
            return true;
    }
    return false;
}

} // namespace

void FollowingRounds::called(Time now)
{
    ++fCredit;
    fLastCall = now;
}

void FollowingRounds::began(const Follower::Begun& begun, Time now)
{
    checkCalls(*begun.list, now);
    const RoundPlan& plan = *begun.round->plan();
    require(singles(plan) <= mostSingles, "few keys are asked for one by one",
            [&] { return std::to_string(singles(plan)) + " are"; });
    ++fUnderWay;
    const int most = std::exchange(fMostUnderWay, begun.list->pace().mostUnderWay());
    require(fUnderWay <= std::min(mostUnderWay, most), "few rounds are under way",
            [&] { return std::to_string(fUnderWay) + " are"; });
    if (begun.isMore) {
        ++fMore;
        return;
    }
    --fCredit;
    require(fCredit >= 0, "no more rounds than calls", [] { return "one more begins"; });
    fSent.push_back({begun.round, now, ++fTurns});
    if (fSent.size() > mostRemembered)
        fSent.pop_front();
}

void FollowingRounds::checkCalls(const FollowedList& list, Time now) const
{
    const auto memory = list.isFollowed()
                            ? std::max<Agenda::Duration>(2 * list.pace().period(), shortestMemory)
                            : memoryWithoutRhythm;
    require(now <= fLastCall + memory, "a list that is left is left alone", [&] {
        return std::to_string(std::chrono::duration<double>(now - fLastCall).count()) + " s";
    });
}

void FollowingRounds::ended(const Follower::Begun& begun, std::uint64_t order, Time now)
{
    fMostUnderWay = begun.list->pace().mostUnderWay();
    --fUnderWay;
    fMore -= begun.isMore ? 1 : 0;
    const auto found = std::find_if(fSent.begin(), fSent.end(),
                                    [&](const Sent& one) { return one.round == begun.round; });
    if (found != fSent.end()) {
        found->order = order;
        found->isMore = isRefusedTogether(*begun.round);
        found->isOver = !found->isMore;
    }
    // Nothing is shown as long as more of something is to come.
    if (fMore > 0 || begun.list->isRefused())
        return;
    showAll(now);
}

/// One that asks for nothing is over at once, and waits for those before it.
void FollowingRounds::showAll(Time now)
{
    for (Sent& one : fSent) {
        one.isOver = one.isOver || one.isMore;
        if (!one.isOver)
            break;
        if (one.ended == 0)
            show(one, now);
    }
}

void FollowingRounds::show(Sent& sent, Time now)
{
    sent.end = now;
    sent.ended = ++fTurns;
    fNewest = &sent;
    fValidAfter = validAfterBegin(sent);
    sent.isTrip = sent.begun > fTripEnded;
    if (sent.isTrip)
        fTripEnded = fTurns;
    if (sent.isMore)
        fApartEnded = fTurns;
}

void FollowingRounds::forget()
{
    fSent.clear();
    fUnderWay = fMore = 0;
    fNewest = nullptr;
}

// A round may leave out what is known; what a notice tells while it is on its way is read by the
// next one. So a value is as old as the one that was answered before the newest began.
FollowingRounds::Time FollowingRounds::validAfterBegin(const Sent& sent) const
{
    Time after = Time::min();
    for (const Sent& one : fSent) {
        if (one.ended > 0 && one.ended < sent.begun)
            after = std::max(after, one.begin);
    }
    return after;
}

int FollowingRounds::tripsSince(Time time) const
{
    const auto isSince = [&](const Sent& one) {
        return one.isTrip && one.begin >= time && one.begun > fApartEnded;
    };
    return static_cast<int>(std::count_if(fSent.begin(), fSent.end(), isSince));
}

int FollowingRounds::roundsSince(Time time) const
{
    const auto isSince = [&](const Sent& one) {
        return one.begin >= time && one.ended > 0 && one.ended <= fNewest->ended;
    };
    return static_cast<int>(std::count_if(fSent.begin(), fSent.end(), isSince));
}
