// SPDX-License-Identifier: MIT
#include "memory/forbidden_keys.h"

#include <utility>

namespace zo {

std::shared_ptr<const ForbiddenKeys::Set> ForbiddenKeys::known(int connection, Time now)
{
    const std::lock_guard<std::mutex> lock(fMutex);
    forgetOld(connection, now);
    return fKnown;
}

void ForbiddenKeys::add(const std::vector<std::string>& keys, int connection, Time now)
{
    const std::lock_guard<std::mutex> lock(fMutex);
    forgetOld(connection, now);
    if (keys.empty() || connection < fConnection)
        return;
    if (fKnown->empty())
        fSince = now;
    auto more = std::make_shared<Set>(*fKnown);
    more->insert(keys.begin(), keys.end());
    fKnown = std::move(more);
}

void ForbiddenKeys::forgetOld(int connection, Time now)
{
    const bool isOld = connection > fConnection || now - fSince >= fMemory;
    if (isOld && !fKnown->empty())
        fKnown = std::make_shared<const Set>();
    if (connection > fConnection)
        fConnection = connection;
}

} // namespace zo
