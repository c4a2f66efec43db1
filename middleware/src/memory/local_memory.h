// SPDX-License-Identifier: MIT
#pragma once

#include "memory/memory_module.h"

#include <map>
#include <shared_mutex>
#include <string>

namespace zo {

/// The module "ZoMemory" of this process: the same operations as the robot's, on a map. A value
/// reads back as from a robot, since each goes through its text, and one that has none is refused.
/// Nothing is sent, so keys and texts may be of any size. May be called from any thread.
class LocalMemory : public MemoryModule
{
private:
    ZoListAnswer values(const ZoValue& request) override;
    ZoValue names(const std::string& ending) override;
    void store(const std::string& key, const std::string& text) override;
    ZoValue exchange(const std::string& key, const std::string& text) override;
    void storeAll(const ZoValue& pairs) override;
    ZoError error(const std::string& problem) const override;

    std::shared_mutex fMutex;
    std::map<std::string, ZoValue> fValues;
};

} // namespace zo
