#include <zo/broker.h>
#include <zo/error.h>
#include <zo/proxy.h>

#include "local_memory.h"
#include "memory_methods.h"

#include <boost/make_shared.hpp>

#include <map>
#include <mutex>
#include <utility>

struct ZoBroker::Parts
{
    std::string name;
    boost::shared_ptr<ZoProxy> memory = boost::make_shared<LocalMemory>();
    std::chrono::system_clock::time_point since = std::chrono::system_clock::now();

    std::mutex mutex; ///< guards what follows
    std::map<std::string, boost::shared_ptr<ZoProxy>> modules;
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
                                             int port, const ZoBrokerOptions&)
{
    throw ZoError(name + ": a link to " + ip + ":" + std::to_string(port) +
                  " is not supported yet");
}

const std::string& ZoBroker::getName() const noexcept
{
    return fParts->name;
}

boost::shared_ptr<ZoProxy> ZoBroker::getProxy(const std::string& moduleName, int)
{
    const std::lock_guard<std::mutex> lock(fParts->mutex);
    const auto module = fParts->modules.find(moduleName);
    if (module != fParts->modules.end())
        return module->second;
    if (moduleName == memory_methods::moduleName)
        return fParts->memory;
    throw ZoError("broker '" + fParts->name + "' has no module '" + moduleName + "'");
}

boost::shared_ptr<ZoProxy> ZoBroker::getLocalMemory()
{
    return fParts->memory;
}

boost::shared_ptr<ZoBroker> ZoBroker::getThis()
{
    return shared_from_this();
}

void ZoBroker::registerModule(const std::string& moduleName, boost::shared_ptr<ZoProxy> module)
{
    if (moduleName.empty() || !module)
        throw ZoError("broker '" + fParts->name + "': a module needs a name and an object");
    const std::lock_guard<std::mutex> lock(fParts->mutex);
    fParts->modules[moduleName] = std::move(module);
}

bool ZoBroker::isConnected() const
{
    return linkStatus().connected;
}

ZoLinkStatus ZoBroker::linkStatus() const
{
    return {false, fParts->since, "broker '" + fParts->name + "' has no robot"};
}
