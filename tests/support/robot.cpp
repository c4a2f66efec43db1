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

ZoBrokerOptions quietOptions(std::chrono::milliseconds limit)
{
    ZoBrokerOptions options = patientOptions();
    options.exchangeTimeout = limit;
    options.callTimeout = limit;
    options.keyListTimeout = limit;
    options.pingInterval = std::chrono::hours(1);
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

std::string errorOf(const std::function<void()>& action)
{
    try {
        action();
    } catch (const ZoError& error) {
        return error.toString();
    }
    return {};
}
