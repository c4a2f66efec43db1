// SPDX-License-Identifier: MIT
#include "memory/followed_list.h"

#include "memory/key_text.h"
#include "memory/keys_per_command.h"
#include "memory/memory_arguments.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace zo {

namespace {

// A round for this call and one for the next.
constexpr int mostCredit = 2;

// What was written before three rounds in a row will be written before the next one, too: it is
// read in each, so that what one command writes again and again is shown together, whichever of its
// notices are here already. For a while also when none are: rounds may overtake them when the way
// is blocked, or come close together behind.
constexpr int scoreOfWritten = 2;
constexpr int scoreOfRegular = 3 * scoreOfWritten;
constexpr int mostScore = 2 * scoreOfRegular;

} // namespace

FollowedList::FollowedList(const ZoValue& request, FollowedValues& values) : fValues(values)
{
    const int count = requestedCount(request);
    fSlotOf.reserve(count);
    std::vector<std::string> keys;
    std::unordered_map<std::string, int> slots;
    for (int i = 0; i < count; ++i) {
        const std::string& key = requestedKey(request, i);
        if (!canBeKey(key)) {
            fSlotOf.push_back(-1);
            continue;
        }
        const auto [slot, isNew] = slots.try_emplace(key, static_cast<int>(slots.size()));
        fSlotOf.push_back(slot->second);
        if (isNew)
            fSlots.push_back({fValues.acquire(key)});
    }
    fAnswer.resize(count);
}

void FollowedList::leave()
{
    for (const Slot& slot : fSlots)
        fValues.release(slot.entry);
    fSlots.clear();
}

bool FollowedList::isFor(const ZoValue& request) const
{
    if (requestedCount(request) != count())
        return false;
    for (int i = 0; i < count(); ++i) {
        const std::string& key = requestedKey(request, i);
        const int slot = fSlotOf[i];
        if (slot < 0 ? canBeKey(key) : fSlots[slot].entry->first != key)
            return false;
    }
    return true;
}

void FollowedList::called(Time now)
{
    fPace.called(now);
    fCredit = std::min(fCredit + 1, mostCredit);
    // A round that should have begun by now is late, and one that was just about to begin is not
    // left out because this call comes early.
    fIsUrgent = fIsUrgent || fBeginAt <= now + fPace.period() / 4 || !isFollowed();
    fBeginAt = isFollowed() ? fPace.beginOfRound() : Time::max();
}

void FollowedList::hurry()
{
    const bool servesNext = fPace.freshness() >= fPace.period();
    if (fCredit == mostCredit || servesNext)
        fIsUrgent = true;
}

bool FollowedList::isShared() const
{
    return std::any_of(fSlots.begin(), fSlots.end(), [](const Slot& slot) {
        const FollowedValue& followed = slot.entry->second;
        return followed.lists > 1 && followed.readAt > 0;
    });
}

std::optional<ZoValue::Elements> FollowedList::answer(Time now, const OwnWrite& lastWrite)
{
    const bool isNew = fHasAnswer && lastWrite.isSeenFrom(fBehind);
    if (!isNew || now - fArrived > fPace.freshness())
        return {};
    if (fFailure.empty())
        return fAnswer;
    fHasAnswer = false;
    throw ServerRefusal{std::exchange(fFailure, {})};
}

bool FollowedList::isOutdated() const
{
    return std::any_of(fSlots.begin(), fSlots.end(), [this](const Slot& slot) {
        return slot.entry->second.version > fAnsweredAt;
    });
}

FollowedList::Time FollowedList::beginsAt() const
{
    if (!isRefused() && static_cast<int>(fUnderWay.size()) >= fPace.mostUnderWay())
        return Time::max();
    if (isRefused() || (fIsUrgent && fCredit > 0))
        return Time::min();
    return fCredit > 0 ? fBeginAt : Time::max();
}

std::shared_ptr<Round> FollowedList::begin(Time now, bool canTell, Places& places,
                                           std::uint64_t writes)
{
    const bool isMore = isRefused();
    ++fBegun;
    auto round = std::make_shared<Round>(plan(now, canTell, places.newest()), places, now);
    fUnderWay.push_back({round, fBegun, isMore, {writes}});
    if (isMore)
        return round;
    --fCredit;
    // An urgent one is for the last call. Without another to spend it is also the one that was to
    // begin later: that is not late when the next call comes.
    if (!std::exchange(fIsUrgent, false) || fCredit == 0)
        fBeginAt = Time::max();
    return round;
}

std::shared_ptr<const RoundPlan> FollowedList::plan(Time now, bool canTell, Place newest)
{
    fKeys.clear();
    fSingles = std::exchange(fRefused, {});
    const bool isToldNow = canTell && isTold(now);
    const int noticed = countWritten();
    if (isToldNow && fSingles.empty())
        fNotices.told(noticed, static_cast<int>(fSlots.size()), now);
    if (fSingles.empty())
        chooseKeys(now, isToldNow, canTell && !isFollowed());
    fPlannedAt = newest;
    const Telling telling = !canTell    ? Telling::Unknown
                            : isToldNow ? Telling::Wanted
                                        : Telling::Refused;
    const bool isSame = fPlan && fPlan->telling() == telling && fPlan->keys() == fKeys;
    if (isSame && fSingles.empty())
        return fPlan;
    auto fresh = std::make_shared<const RoundPlan>(fKeys, fSingles, telling);
    fPlan = fSingles.empty() ? fresh : nullptr;
    return fresh;
}

void FollowedList::chooseKeys(Time now, bool isTold, bool isOnce)
{
    if (isTold)
        chooseChanged(now, nextTurn(now));
    else if (isOnce)
        chooseMissing(now, nextTurn(now));
    else
        std::for_each(fSlots.begin(), fSlots.end(), [&](Slot& slot) { choose(slot, now); });
}

// Adds it to what is asked for, if that may be now; returns whether it may.
bool FollowedList::choose(Slot& slot, Time now)
{
    const FollowedValue& followed = slot.entry->second;
    RoundPlan::Keys& keys = followed.isForbidden ? fSingles : fKeys;
    if (followed.isPaused(now) ||
        (followed.isForbidden && keys.size() >= std::size_t{fMostSingles}))
        return false;
    keys.push_back(slot.entry);
    slot.readBy = fBegun;
    return true;
}

// Whoever asks once reads what the link does not have, and one key at least, to hear from the
// robot.
void FollowedList::chooseMissing(Time now, const Turn& turn)
{
    for (int i = 0; i < static_cast<int>(fSlots.size()); ++i) {
        Slot& slot = fSlots[i];
        const FollowedValue& followed = slot.entry->second;
        const bool isMissing = !followed.isTold() || followed.writes > 0 || slot.isRegular;
        if (isMissing || i == 0 || turn.has(i) || turn.isLate(slot))
            choose(slot, now);
    }
}

// Returns of how many there was a notice since the round before: the new value that comes of it
// later is no second write. That a key was not written is known only when it was read anew, or a
// round has come back and it is told of.
int FollowedList::countWritten()
{
    const bool isNewsHere = std::exchange(fEndedAtPlan, fEnded) < fEnded;
    int noticed = 0;
    for (Slot& slot : fSlots) {
        const FollowedValue& followed = slot.entry->second;
        const bool isWritten = followed.isWrittenSince(fPlannedAt);
        const bool isKnown = followed.readAt > fPlannedAt || (isNewsHere && followed.isTold());
        if (isWritten)
            slot.score = std::min(slot.score + scoreOfWritten, mostScore);
        else if (isKnown)
            slot.score = std::max(slot.score - 1, 0);
        slot.isRegular = slot.score >= scoreOfRegular || (slot.isRegular && slot.score > 0);
        noticed += followed.noticedAt > fPlannedAt ? 1 : 0;
    }
    return noticed;
}

// What is asked for already needs not be asked again: a notice that comes before the reply was sent
// before the robot did what it replies to. But what the link writes may be behind that question.
void FollowedList::chooseChanged(Time now, const Turn& turn)
{
    for (int i = 0; i < static_cast<int>(fSlots.size()); ++i) {
        Slot& slot = fSlots[i];
        const FollowedValue& followed = slot.entry->second;
        const bool isStale = (!followed.isTold() || turn.isLate(slot)) && slot.askedBy <= fEnded;
        if (!isStale && followed.writes == 0 && !slot.isRegular && !turn.has(i))
            continue;
        if (choose(slot, now))
            slot.askedBy = fBegun;
    }
}

// The turn begins anew with each list, in the midst of that of another one before it: what that
// would have read by now is late.
FollowedList::Turn FollowedList::nextTurn(Time now)
{
    const int all = static_cast<int>(fSlots.size());
    const Turn turn{fTurn, fPace.turnOf(all), all, now - Pace::fTimeUntilLate,
                    fBegun - fPace.roundsUntilLate(all)};
    fTurn = all > 0 ? (fTurn + turn.count) % all : 0;
    return turn;
}

void FollowedList::ended(const std::shared_ptr<Round>& round, bool isAnswered, std::uint64_t order,
                         Time now, Pace::Duration trip)
{
    const auto found = std::find_if(fUnderWay.begin(), fUnderWay.end(),
                                    [&](const UnderWay& one) { return one.round == round; });
    if (found == fUnderWay.end())
        return;
    if (!isAnswered) {
        fUnderWay.erase(found);
        return;
    }
    found->isWhole = true;
    found->behind.sent = order;
    const int keys = static_cast<int>(round->plan()->keys().size());
    fPace.answered(round->begin(), now, keys, trip);
    while (!fUnderWay.empty() && fUnderWay.front().isWhole) {
        const UnderWay whole = std::move(fUnderWay.front());
        fUnderWay.pop_front();
        take(whole, now);
    }
}

void FollowedList::take(const UnderWay& whole, Time now)
{
    fEnded = whole.number;
    const Round::Given given = whole.round->giveTo(fValues, now);
    fFailure = whole.round->failure();
    if (fFailure.empty())
        fRefused.insert(fRefused.end(), given.refused.begin(), given.refused.end());
    if (!whole.isMore)
        fNext = whole.behind;
    const auto isMore = [](const UnderWay& one) { return one.isMore; };
    if (!fRefused.empty() || std::any_of(fUnderWay.begin(), fUnderWay.end(), isMore))
        return;
    if (given.isOvertaken && static_cast<int>(fSlots.size()) <= keysPerCommand)
        withdraw();
    else
        publish(now);
}

// What one command has read together would be shown beside a part of it that is newer.
void FollowedList::withdraw()
{
    fHasAnswer = false;
    fIsUrgent = true;
}

void FollowedList::publish(Time now)
{
    for (std::size_t i = 0; i < fSlotOf.size(); ++i) {
        if (fSlotOf[i] < 0)
            continue;
        const FollowedValue& followed = fSlots[fSlotOf[i]].entry->second;
        if (followed.version > fAnsweredAt)
            fAnswer[i] = followed.value;
    }
    fHasAnswer = true;
    fArrived = now;
    fAnsweredAt = fValues.version();
    fBehind = fNext;
}

void FollowedList::forget()
{
    fUnderWay.clear();
    fRefused.clear();
    fEnded = fBegun;
    fCredit = 0; // the first call on the next connection begins a round, and at once
    fIsUrgent = true;
    fHasAnswer = false;
    fFailure.clear();
    fPlannedAt = 0;
}

} // namespace zo
