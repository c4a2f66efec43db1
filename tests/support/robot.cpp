// SPDX-License-Identifier: MIT
#include "support/robot.h"

#include <chrono>

ZoBrokerOptions patientOptions()
{
    ZoBrokerOptions options;
    options.connectTimeout = std::chrono::seconds(10);
    options.exchangeTimeout = std::chrono::seconds(10);
    options.keyListTimeout = std::chrono::seconds(10);
    return options;
}

boost::shared_ptr<ZoBroker> linkTo(int port, const ZoBrokerOptions& options)
{
    return ZoBroker::create("TestBroker", "127.0.0.1", port, options);
}

ZoMemoryProxy memoryOf(const boost::shared_ptr<ZoBroker>& broker)
{
    return ZoMemoryProxy(broker->getProxy("ZoMemory", 0));
}

ZoValue requestFor(const std::vector<std::string>& keys)
{
    ZoValue request;
    request.arraySetSize(static_cast<int>(keys.size()));
    for (int i = 0; i < request.getSize(); ++i) {
        request[i].arraySetSize(2);
        request[i][0] = keys[i];
        request[i][1] = 0;
    }
    return request;
}

std::string errorOf(const std::function<void()>& action)
{
    try {
        action();
    } catch (const ZoError& error) {
        return error.toString();
    }
    return {};
}

bool contains(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}
