#pragma once

#include <zo/proxy.h>

#include <map>
#include <shared_mutex>
#include <string>

/// The module "ZoMemory" of this process: the same operations as the robot's, on a map.
/// May be called from any thread.
class LocalMemory : public ZoProxy
{
public:
    ZoValue call(const std::string& method, const ZoValue& arguments) override;

private:
    std::shared_mutex fMutex;
    std::map<std::string, ZoValue> fValues;
};
