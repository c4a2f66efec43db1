// SPDX-License-Identifier: MIT
#pragma once

#include "simulation/answer_stream.h"

#include <link/link_actions.h>

#include <string>
#include <vector>

/// What a network tells a link.
class LinkEvents
{
public:
    LinkEvents() = default;
    virtual ~LinkEvents() = default;
    LinkEvents(const LinkEvents&) = delete;
    LinkEvents& operator=(const LinkEvents&) = delete;

    virtual void lookedUp(int number, const std::vector<LinkAddress>& addresses,
                          const std::string& problem) = 0;
    virtual void connected(ConnectionId connection) = 0;
    virtual void secured(ConnectionId connection) = 0;
    virtual void received(ConnectionId connection, const Arrival& arrival) = 0;
    virtual void written(ConnectionId connection) = 0;
    virtual void closed(ConnectionId connection, const std::string& problem) = 0;
    virtual void refused(ConnectionId connection, const std::string& problem) = 0;
};
