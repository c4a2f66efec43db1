// SPDX-License-Identifier: MIT
#include <tarvek/widget_interface.h>

WidgetInterface::WidgetInterface() = default;

WidgetInterface::~WidgetInterface() = default;

bool WidgetInterface::requiresConnection() const
{
    return true;
}

void WidgetInterface::initBroker(boost::shared_ptr<ZoBroker>& broker, const std::string& brokerName,
                                 const std::string& ip, int port, const std::string&)
{
    // Without a need for it, nobody is made to wait for a robot that is away.
    broker = requiresConnection() ? ZoBroker::create(brokerName, ip, port, fBrokerOptions)
                                  : ZoBroker::begin(brokerName, ip, port, fBrokerOptions);
}
