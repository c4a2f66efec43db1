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
        if (!canBeKey(fValues.prefix(), key)) {
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
        if (slot < 0 ? canBeKey(fValues.prefix(), key) : fSlots[slot].entry->first != key)
            return false;
    }
    return true;
}

void FollowedList::called(Time now, bool mayFollow)
{
    if (isFollowed() || mayFollow)
        fPace.called(now);
    else
        fPace.calledOnce(now);
    fCredit = std::min(fCredit + 1, mostCredit);
    // A round that should have begun by now is late, and one that was just about to begin is not
    // left out because this call comes early.
    fIsUrgent = fIsUrgent || fBeginAt <= now + fPace.period() / 4 || !isFollowed();
    fBeginAt = isFollowed() ? fPace.beginOfRound() : Time::max();
}

// A first call waits for as long as its answer takes: what the next one is behind its end tells
// whether its caller asks again and again.
void FollowedList::waited(Time now)
{
    if (!isFollowed())
        fPace.calledOnce(now);
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
    if (!isNew || now - fMade > fPace.freshness())
        return {};
    fIsGiven = true;
    if (fFailure.empty())
        return fAnswer;
    fHasAnswer = false;
    throw ServerRefusal{std::exchange(fFailure, {})};
}

bool FollowedList::isNextDueBy(Time time, Time now) const
{
    const Time begin =
        fUnderWay.empty() ? std::max(beginsAt(), now) : fUnderWay.front().round->begin();
    return begin <= time - fPace.response() && time - fMade <= fPace.freshness();
}

bool FollowedList::isOutdated() const
{
    return std::any_of(fSlots.begin(), fSlots.end(), [this](const Slot& slot) {
        return slot.entry->second.version > fAnsweredAt;
    });
}

FollowedList::Time FollowedList::beginsAt() const
{
    if (underWay() >= fPace.mostUnderWay())
        return Time::max();
    if (isRefused() || (fIsUrgent && fCredit > 0))
        return Time::min();
    return fCredit > 0 ? fBeginAt : Time::max();
}

std::shared_ptr<Round> FollowedList::begin(Time now, bool canTell, Places& places,
                                           std::uint64_t writes, std::uint64_t number)
{
    fLastRound = number;
    const bool isMore = isRefused();
    ++fBegun;
    auto round = std::make_shared<Round>(plan(now, canTell, places.newest()), places, now);
    fPace.planned(static_cast<int>(round->plan()->keys().size()));
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
    takeRefused();
    const bool isToldNow = canTell && isTold(now);
    if (fSingles.empty())
        learnNotices(now, isToldNow);
    learnRegular();
    if (fSingles.empty())
        chooseKeys(now, isToldNow, canTell);
    fPlannedAt = newest;
    const Telling telling = !canTell    ? Telling::Unknown
                            : isToldNow ? Telling::Wanted
                                        : Telling::Refused;
    const bool isSame = fPlan && fPlan->telling() == telling && fPlan->keys() == fKeys;
    if (isSame && fSingles.empty())
        return fPlan;
    auto fresh = std::make_shared<const RoundPlan>(fKeys, fSingles, telling, fValues.prefix());
    fPlan = fSingles.empty() ? fresh : nullptr;
    return fresh;
}

void FollowedList::takeRefused()
{
    const auto count = std::min(fRefused.size(), std::size_t{fMostSingles});
    const auto end = fRefused.begin() + static_cast<std::ptrdiff_t>(count);
    fSingles.assign(fRefused.begin(), end);
    fRefused.erase(fRefused.begin(), end);
}

void FollowedList::chooseKeys(Time now, bool isTold, bool canTell)
{
    if (isTold)
        chooseChanged(now, nextTurn(now));
    else if (!isFollowed())
        chooseMissing(now, canTell);
    else
        std::for_each(fSlots.begin(), fSlots.end(), [&](Slot& slot) { choose(slot, now); });
    chooseForbidden();
}

// Adds it to what is asked for, if that may be now; returns whether it may.
bool FollowedList::choose(Slot& slot, Time now)
{
    const FollowedValue& followed = slot.entry->second;
    if (followed.isPaused(now))
        return false;
    if (followed.isForbidden) {
        fForbidden.push_back(&slot);
        return false;
    }
    fKeys.push_back(slot.entry);
    slot.readBy = fBegun;
    return true;
}

// Each by itself, and so not many at a time: those whose last trial was longest ago.
void FollowedList::chooseForbidden()
{
    if (fForbidden.size() > std::size_t{fMostSingles}) {
        const auto end = fForbidden.begin() + fMostSingles;
        std::nth_element(fForbidden.begin(), end, fForbidden.end(),
                         [](const Slot* one, const Slot* other) {
                             return std::pair(one->readBy, one) < std::pair(other->readBy, other);
                         });
        fForbidden.erase(end, fForbidden.end());
    }
    for (Slot* const slot : fForbidden) {
        fSingles.push_back(slot->entry);
        slot->readBy = slot->armedBy = fBegun;
    }
    fForbidden.clear();
}

// Whoever asks once reads what the link does not have, and one key at least, to hear from the
// robot.
void FollowedList::chooseMissing(Time now, bool canTell)
{
    const Turn turn = nextTurn(now);
    for (int i = 0; i < static_cast<int>(fSlots.size()); ++i) {
        Slot& slot = fSlots[i];
        const FollowedValue& followed = slot.entry->second;
        const bool isMissing = !isKnown(followed, now, canTell) || followed.writes > 0;
        if (isMissing || slot.isRegular || i == 0 || turn.has(i) || turn.isLate(slot))
            choose(slot, now);
    }
}

// Where the robot tells nothing, what another list has read is known for as long as it could be
// shown: unless a round of this list was answered that began later.
bool FollowedList::isKnown(const FollowedValue& followed, Time now, bool canTell) const
{
    if (canTell)
        return followed.isTold();
    return followed.readAt > followed.noticedAt && followed.askedAt >= fAsked &&
           now - followed.arrivedAt <= fPace.freshness();
}

// What was written since the round before. With notices the new value that comes of one later is no
// second write.
void FollowedList::learnNotices(Time now, bool isTold)
{
    const int all = static_cast<int>(fSlots.size());
    const Version planned = std::exchange(fPlannedVersion, fValues.version());
    if (isTold)
        fNotices.told(countOf([this](const auto& one) { return one.noticedAt > fPlannedAt; }), all,
                      now);
    else
        fNotices.read(countOf([planned](const auto& one) { return one.version > planned; }), all,
                      now);
}

template <class Condition>
int FollowedList::countOf(Condition isIt) const
{
    return static_cast<int>(std::count_if(
        fSlots.begin(), fSlots.end(), [&](const Slot& slot) { return isIt(slot.entry->second); }));
}

// That a key was not written is known only when it was read anew, or a round has come back and it
// is told of.
void FollowedList::learnRegular()
{
    const bool isNewsHere = std::exchange(fEndedAtPlan, fEnded) < fEnded;
    for (Slot& slot : fSlots) {
        const FollowedValue& followed = slot.entry->second;
        const bool isWritten = followed.isWrittenSince(fPlannedAt);
        const bool isKnown = followed.readAt > fPlannedAt || (isNewsHere && followed.isTold());
        if (isWritten)
            slot.score = std::min(slot.score + scoreOfWritten, mostScore);
        else if (isKnown)
            slot.score = std::max(slot.score - 1, 0);
        slot.isRegular = slot.score >= scoreOfRegular || (slot.isRegular && slot.score > 0);
    }
}

// What is asked for already needs not be asked again: a notice that comes before the reply was sent
// before the robot did what it replies to. But what the link writes may be behind that question.
void FollowedList::chooseChanged(Time now, const Turn& turn)
{
    for (int i = 0; i < static_cast<int>(fSlots.size()); ++i) {
        Slot& slot = fSlots[i];
        const FollowedValue& followed = slot.entry->second;
        const bool isStale = (!followed.isTold() || turn.isLate(slot)) && slot.armedBy <= fEnded;
        if (!isStale && followed.writes == 0 && !slot.isRegular && !turn.has(i))
            continue;
        if (choose(slot, now))
            slot.armedBy = fBegun;
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
    if (keys > 0)
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
    fAsked = whole.round->begin();
    const Round::Given given = whole.round->giveTo(fValues, now);
    fFailure = whole.round->failure();
    leaveOutExcess(now);
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
        publish(now, whole.round->plan()->keys().empty());
}

// What is more than a link keeps for one list alone is as good as too large.
void FollowedList::leaveOutExcess(Time now)
{
    if (fValues.memory() <= FollowedValues::fMostMemory)
        return;
    std::size_t bytes = 0;
    for (const Slot& slot : fSlots) {
        bytes += slot.entry->second.bytes;
        if (bytes <= FollowedValues::fMostMemory)
            continue;
        bytes -= slot.entry->second.bytes;
        fValues.leaveOut(*slot.entry, now);
    }
}

// What one command has read together would be shown beside a part of it that is newer.
void FollowedList::withdraw()
{
    fHasAnswer = false;
    fIsUrgent = true;
}

// When nothing may be asked for, no news comes: what was there is still the newest.
void FollowedList::publish(Time now, bool isEmpty)
{
    for (std::size_t i = 0; i < fSlotOf.size(); ++i) {
        if (fSlotOf[i] < 0)
            continue;
        const FollowedValue& followed = fSlots[fSlotOf[i]].entry->second;
        if (followed.version > fAnsweredAt)
            fAnswer[i] = followed.value;
    }
    fHasAnswer = true;
    fIsGiven = false;
    fMade = now;
    if (!isEmpty || fArrived == Time())
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
