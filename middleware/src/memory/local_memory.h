// SPDX-License-Identifier: MIT
#pragma once

#include <zo/proxy.h>

#include <map>
#include <shared_mutex>
#include <string>

/// The module "ZoMemory" of this process: the same operations as the robot's, on a map. It keeps
/// and refuses just what a robot's memory does, since every value goes through its text.
/// May be called from any thread.
class LocalMemory : public ZoProxy
{
public:
    ZoValue call(const std::string& method, const ZoValue& arguments) override;

private:
    ZoValue values(const ZoValue& request) const;
    ZoValue names() const;
    void storeAll(const ZoValue& pairs);
    void store(const std::string& key, const std::string& text);

    mutable std::shared_mutex fMutex;
    std::map<std::string, ZoValue> fValues;
};
