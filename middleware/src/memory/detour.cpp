// SPDX-License-Identifier: MIT
#include "memory/detour.h"

#include <utility>

namespace zo {

namespace {

/// Those of the one node. Its keys are named as the server does.
std::shared_ptr<const LinkSettings> settingsOf(const ZoAddress& node, const LinkSettings& robot)
{
    ZoBrokerOptions options = robot.options;
    options.prefix.clear(); // with a tag the link would go where the keys are said to be
    options.furtherAddresses.clear();
    return makeLinkSettings(node.host, node.port, options, robot.clientName);
}

} // namespace

std::shared_ptr<Link> Detour::to(const ZoAddress& node, const LinkSettings& settings, Time deadline)
{
    std::shared_ptr<Link> last; // its end takes time: behind the lock
    std::shared_ptr<Link> link;
    {
        const std::lock_guard<std::mutex> lock(fMutex);
        const auto wanted = settingsOf(node, settings);
        if (!fLink || !isSameWay(*fLink->settings(), *wanted))
            last = std::exchange(fLink, std::make_shared<Link>(wanted));
        fLastUse = SteadyClock::now();
        link = fLink;
    }
    link->waitUntilOpen(deadline);
    return link;
}

void Detour::tidy(Time now)
{
    std::shared_ptr<Link> last; // outlives the lock, as above
    const std::lock_guard<std::mutex> lock(fMutex);
    if (fLink && now >= fLastUse + fMemory)
        last.swap(fLink);
}

} // namespace zo
