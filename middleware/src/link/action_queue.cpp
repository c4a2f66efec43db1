// SPDX-License-Identifier: MIT
#include "link/action_queue.h"

#include "link/address_race.h"

#include <utility>

namespace zo {

namespace {

// At most all connections of a race are closed, and a handful of other things done.
constexpr std::size_t mostBesideCalls = AddressRace::fMostAddresses + 8;

} // namespace

void ActionQueue::reserve(std::size_t calls)
{
    const std::size_t room = fActions.size() + mostBesideCalls + calls;
    if (fActions.capacity() < room)
        fActions.reserve(2 * room);
}

std::optional<LinkAction::Any> ActionQueue::next() noexcept
{
    if (fTaken == fActions.size()) {
        fActions.clear();
        fTaken = 0;
        return {};
    }
    return std::move(fActions[fTaken++]);
}

} // namespace zo
