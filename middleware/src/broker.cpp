// SPDX-License-Identifier: MIT
#include <zo/broker.h>
#include <zo/error.h>
#include <zo/proxy.h>

#include "memory/local_memory.h"
#include "memory/memory_methods.h"
#include "memory/remote_memory.h"
#include "memory/robot_link.h"

#include <boost/make_shared.hpp>

#include <map>
#include <mutex>
#include <utility>

struct ZoBroker::Parts
{
    std::string name;
    std::shared_ptr<zo::RobotLink> robot; ///< null without one
    boost::shared_ptr<ZoProxy> memory = boost::make_shared<zo::LocalMemory>();
    std::chrono::system_clock::time_point since = std::chrono::system_clock::now();

    std::mutex mutex; ///< guards what follows
    std::map<std::string, boost::shared_ptr<ZoProxy>> modules;

    boost::shared_ptr<ZoProxy> registered(const std::string& moduleName)
    {
        const std::lock_guard<std::mutex> lock(mutex);
        const auto module = modules.find(moduleName);
        return module == modules.end() ? nullptr : module->second;
    }
    boost::shared_ptr<ZoProxy> makeMemory() const
    {
        if (!robot)
            return memory;
        return boost::make_shared<zo::RemoteMemory>(robot);
    }
};

ZoBroker::ZoBroker(std::unique_ptr<Parts> parts) : fParts(std::move(parts)) {}

ZoBroker::~ZoBroker() = default;

boost::shared_ptr<ZoBroker> ZoBroker::create(const std::string& name)
{
    auto parts = std::make_unique<Parts>();
    parts->name = name;
    return boost::shared_ptr<ZoBroker>(new ZoBroker(std::move(parts)));
}

boost::shared_ptr<ZoBroker> ZoBroker::create(const std::string& name, const std::string& ip,
                                             int port, const ZoBrokerOptions& options)
{
    auto broker = begin(name, ip, port, options);
    broker->fParts->robot->link.waitUntilOpen();
    return broker;
}

boost::shared_ptr<ZoBroker> ZoBroker::begin(const std::string& name, const std::string& ip,
                                            int port, const ZoBrokerOptions& options)
{
    auto broker = create(name);
    broker->fParts->robot = zo::beginRobotLink(zo::makeLinkSettings(ip, port, options, name));
    return broker;
}

const std::string& ZoBroker::getName() const noexcept
{
    return fParts->name;
}

boost::shared_ptr<ZoProxy> ZoBroker::getProxy(const std::string& moduleName, int)
{
    if (auto module = fParts->registered(moduleName))
        return module;
    if (moduleName == zo::memoryModuleName)
        return fParts->makeMemory();
    throw ZoError("broker '" + fParts->name + "' has no module '" + moduleName + "'");
}

boost::shared_ptr<ZoProxy> ZoBroker::getLocalMemory()
{
    const auto module = fParts->registered(zo::memoryModuleName);
    return module ? module : fParts->memory;
}

boost::shared_ptr<ZoBroker> ZoBroker::getThis()
{
    return shared_from_this();
}

void ZoBroker::registerModule(const std::string& moduleName, boost::shared_ptr<ZoProxy> module)
{
    if (moduleName.empty() || !module)
        throw ZoError("broker '" + fParts->name + "': a module needs a name and an object");
    // The module whose place it takes goes when the lock is gone: what its end does is its own.
    const std::lock_guard<std::mutex> lock(fParts->mutex);
    fParts->modules[moduleName].swap(module);
}

bool ZoBroker::isConnected() const
{
    return fParts->robot && fParts->robot->link.isUp();
}

ZoLinkStatus ZoBroker::linkStatus() const
{
    if (fParts->robot)
        return fParts->robot->link.status();
    return {false, fParts->since, "broker '" + fParts->name + "' has no robot"};
}

void ZoBroker::reconnect(const ZoBrokerOptions& options)
{
    if (!fParts->robot)
        throw ZoError("broker '" + fParts->name + "' has no robot");
    zo::Link& link = fParts->robot->link;
    const auto last = link.settings();
    link.reconnect(std::make_shared<const zo::LinkSettings>(*last, options));
}

void ZoBroker::disconnect()
{
    if (fParts->robot)
        fParts->robot->link.disconnect();
}

const void* ZoBroker::linkIdentity() const noexcept
{
    return fParts->robot.get();
}
