// SPDX-License-Identifier: MIT
#include "link/address_race.h"

#include <algorithm>

namespace zo {

namespace {

/// The first of these addresses, those of the two families in turn, each family in its order.
std::vector<LinkAddress> courseOf(const std::vector<LinkAddress>& addresses)
{
    std::vector<LinkAddress> families[2];
    for (const LinkAddress& address : addresses)
        families[address.protocol() == addresses.front().protocol() ? 0 : 1].push_back(address);
    std::vector<LinkAddress> result;
    for (std::size_t i = 0; i < addresses.size(); ++i) {
        for (const auto& family : families) {
            if (i < family.size())
                result.push_back(family[i]);
        }
    }
    return result;
}

} // namespace

void AddressRace::add(const NodePtr& node, const std::vector<LinkAddress>& addresses)
{
    std::size_t turn = 0;
    for (const LinkAddress& address : courseOf(addresses))
        fEntries.push_back({node, address, turn++});
    std::stable_sort(fEntries.begin() + static_cast<std::ptrdiff_t>(fNext), fEntries.end(),
                     [](const Entry& one, const Entry& other) { return one.turn < other.turn; });
    if (fEntries.size() > fMostAddresses)
        fEntries.erase(fEntries.begin() + fMostAddresses, fEntries.end());
    fRunning.reserve(fEntries.size());
}

std::optional<AddressRace::Entry> AddressRace::next(Time now)
{
    if (now < nextAt())
        return {};
    const auto share = fTime / static_cast<int>(fEntries.size());
    fNextAt = now + std::min<std::chrono::nanoseconds>(share, fLead);
    return fEntries[fNext++];
}

NodePtr AddressRace::leave(ConnectionId connection)
{
    const auto found = std::find_if(fRunning.begin(), fRunning.end(), [&](const Running& running) {
        return running.connection == connection;
    });
    if (found == fRunning.end())
        return nullptr;
    NodePtr node = found->node;
    fRunning.erase(found);
    fNextAt = Time::min();
    return node;
}

} // namespace zo
