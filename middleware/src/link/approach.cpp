// SPDX-License-Identifier: MIT
#include "link/approach.h"

#include <algorithm>
#include <utility>

namespace zo {

namespace {

// Of more than the nodes of two attempts nothing need be known.
constexpr std::size_t mostPlaces = 2 * ZoAddress::fMostAddresses;
// The system answers a look-up sooner or later; so many at a time are enough, whatever names a
// server makes up.
constexpr std::size_t mostAsked = 64;
constexpr std::size_t mostAskedOfGiven = 64; // beside those
constexpr std::chrono::seconds longestLookUp{600};

bool isAmong(const Nodes& nodes, const ZoAddress& wanted)
{
    return std::any_of(nodes.begin(), nodes.end(),
                       [&](const NodePtr& node) { return *node == wanted; });
}

} // namespace

Approach::Approach(ActionQueue& actions) : fActions(actions)
{
    fPlaces.reserve(mostPlaces);
    fAsked.reserve(mostAsked + mostAskedOfGiven);
}

// The addresses of an earlier answer serve one attempt only: they may change.
bool Approach::begin(Time now, Time end, const Nodes& nodes, const Nodes& given)
{
    fRace.reset();
    fEnd = end;
    fGoal = nodes.size() == 1 ? nodes.front() : nullptr;
    for (Place& place : fPlaces)
        place.isAwaited = false;
    for (const NodePtr& node : nodes) {
        Place& place = placeOf(node);
        place.isAwaited = place.found.empty();
        if (!place.isAwaited)
            enter(now, place, std::exchange(place.found, {}));
    }
    for (const NodePtr& node : nodes) {
        Place& place = placeOf(node);
        if (!place.isAwaited || !place.lookUps.isAnotherNeeded(now))
            continue;
        place.isAwaited = hasRoom(now) || isAmong(given, *node);
        if (place.isAwaited)
            lookUp(now, place);
    }
    return fRace.has_value();
}

// Whoever was not asked about for longest makes room.
Approach::Place& Approach::placeOf(const NodePtr& node)
{
    const auto found = std::find_if(fPlaces.begin(), fPlaces.end(),
                                    [&](const Place& place) { return *place.node == *node; });
    if (found != fPlaces.end()) {
        std::rotate(found, found + 1, fPlaces.end());
        return fPlaces.back();
    }
    if (fPlaces.size() == mostPlaces)
        fPlaces.erase(std::find_if(fPlaces.begin(), fPlaces.end(),
                                   [](const Place& place) { return !place.isAwaited; }));
    fPlaces.push_back({node, {}, {}});
    return fPlaces.back();
}

bool Approach::hasRoom(Time now)
{
    if (fAsked.size() < mostAsked)
        return true;
    const auto isLost = [now](const Asked& one) { return now >= one.since + longestLookUp; };
    fAsked.erase(std::remove_if(fAsked.begin(), fAsked.end(), isLost), fAsked.end());
    return fAsked.size() < mostAsked;
}

void Approach::lookUp(Time now, Place& place)
{
    if (fAsked.size() == mostAsked + mostAskedOfGiven)
        fAsked.erase(fAsked.begin());
    fAsked.push_back({++fNewestLookUp, place.node, now});
    place.lookUps.begin(now, fNewestLookUp);
    fActions.push(LinkAction::LookUp{fNewestLookUp, place.node});
}

Approach::Place* Approach::answered(int number)
{
    const auto asked = std::find_if(fAsked.begin(), fAsked.end(),
                                    [&](const Asked& one) { return one.number == number; });
    if (asked == fAsked.end())
        return nullptr;
    const NodePtr node = asked->node;
    fAsked.erase(asked);
    const auto place = std::find_if(fPlaces.begin(), fPlaces.end(),
                                    [&](const Place& one) { return *one.node == *node; });
    return place == fPlaces.end() ? nullptr : &*place;
}

Approach::News Approach::lookedUp(Time now, int number, const Addresses& addresses)
{
    Place* const place = answered(number);
    const bool isNewest = place && place->lookUps.end(number);
    if (!place || !place->isAwaited || (addresses.empty() && !isNewest))
        return News::None;
    place->isAwaited = false;
    if (addresses.empty())
        return isOver() ? News::End : News::None;
    enter(now, *place, addresses);
    connectNext(now);
    return News::Way;
}

void Approach::lookedUpMeanwhile(int number, const Addresses& addresses)
{
    if (Place* const place = answered(number)) {
        place->lookUps.end(number);
        place->found = addresses;
    }
}

void Approach::enter(Time now, Place& place, const Addresses& addresses)
{
    if (!fRace)
        fRace.emplace(fEnd - now);
    fRace->add(place.node, addresses);
}

void Approach::connectNext(Time now)
{
    const auto next = fRace ? fRace->next(now) : std::nullopt;
    if (!next)
        return;
    fRace->started(++fNewest, next->node);
    fActions.push(LinkAction::Connect{fNewest, next->address, next->node});
}

bool Approach::isOver() const
{
    const bool isAwaiting = std::any_of(fPlaces.begin(), fPlaces.end(),
                                        [](const Place& place) { return place.isAwaited; });
    return !isAwaiting && (!fRace || fRace->isOver());
}

void Approach::forgetFound() noexcept
{
    for (Place& place : fPlaces)
        place.found.clear();
}

void Approach::end() noexcept
{
    for (Place& place : fPlaces)
        place.isAwaited = false;
    if (!fRace)
        return;
    for (const AddressRace::Running& running : fRace->running())
        fActions.push(LinkAction::Close{running.connection});
    fRace.reset();
}

} // namespace zo
