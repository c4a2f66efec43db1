#include "forbidden_keys.h"

std::shared_ptr<const ForbiddenKeys::Set> ForbiddenKeys::known() const
{
    const std::lock_guard<std::mutex> lock(fMutex);
    return fKnown;
}

void ForbiddenKeys::add(const std::vector<std::string>& keys)
{
    if (keys.empty())
        return;
    const std::lock_guard<std::mutex> lock(fMutex);
    auto more = std::make_shared<Set>(*fKnown);
    more->insert(keys.begin(), keys.end());
    fKnown = std::move(more);
}
