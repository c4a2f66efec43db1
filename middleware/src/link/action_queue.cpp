// SPDX-License-Identifier: MIT
#include "link/action_queue.h"

#include "link/address_race.h"

#include <utility>

namespace zo {

namespace {

// At most all connections of a race are closed, all nodes looked up after that, and a handful of
// other things wait to be done.
constexpr std::size_t mostBesideCalls = AddressRace::fMostAddresses + ZoAddress::fMostAddresses + 8;

} // namespace

void ActionQueue::reserve(std::size_t calls)
{
    fActions.reserve(fActions.size() + mostBesideCalls + calls);
}

// Those that are taken make room for it.
void ActionQueue::push(LinkAction::Any action) noexcept
{
    fActions.erase(fActions.begin(), fActions.begin() + static_cast<std::ptrdiff_t>(fTaken));
    fTaken = 0;
    fActions.push_back(std::move(action));
}

std::optional<LinkAction::Any> ActionQueue::next() noexcept
{
    if (fTaken == fActions.size())
        return {};
    return std::move(fActions[fTaken++]);
}

} // namespace zo
