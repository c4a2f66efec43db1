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
    result.resize(std::min(result.size(), AddressRace::fMostAddresses));
    return result;
}

} // namespace

AddressRace::AddressRace(const std::vector<LinkAddress>& addresses, std::chrono::nanoseconds time)
    : fAddresses(courseOf(addresses)),
      fPause(std::min<std::chrono::nanoseconds>(time / static_cast<int>(fAddresses.size()), fLead))
{
    fRunning.reserve(fAddresses.size());
}

std::optional<LinkAddress> AddressRace::next(Time now)
{
    if (now < nextAt())
        return {};
    fNextAt = now + fPause;
    return fAddresses[fNext++];
}

bool AddressRace::leave(ConnectionId connection)
{
    const auto found = std::find(fRunning.begin(), fRunning.end(), connection);
    if (found == fRunning.end())
        return false;
    fRunning.erase(found);
    fNextAt = Time::min();
    return true;
}

} // namespace zo
