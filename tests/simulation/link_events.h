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

    virtual void lookedUp(int number, const std::vector<zo::LinkAddress>& addresses,
                          const std::string& problem) = 0;
    virtual void connected(zo::ConnectionId connection) = 0;
    virtual void secured(zo::ConnectionId connection) = 0;
    virtual void received(zo::ConnectionId connection, const Arrival& arrival) = 0;
    virtual void written(zo::ConnectionId connection) = 0;
    virtual void closed(zo::ConnectionId connection, const std::string& problem) = 0;
    virtual void refused(zo::ConnectionId connection, const std::string& problem) = 0;
};
