// SPDX-License-Identifier: MIT
#pragma once

#include "link/asking.h"
#include "link/deadline.h"
#include "link/exchange.h"
#include "link/node.h"
#include "link/shared_text.h"

#include <boost/asio/ip/tcp.hpp>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <variant>

namespace zo {

/// A connection in the talk between the machine and its driver. Never used twice by a link.
using ConnectionId = std::uint64_t;

/// An address and port, as a plain value.
using LinkAddress = boost::asio::ip::tcp::endpoint;

/// Whether a link is up, and since when.
struct LinkCondition
{
    bool isUp = false;
    bool isOpening = true;         ///< the first attempt with these settings is under way
    bool isRefused = false;        ///< the robot wants us not: there are no further attempts
    bool isClosed = false;         ///< nobody wants it: there are no attempts
    SharedText cause;              ///< why it is down; null while it is up
    NodePtr node;                  ///< where it is up; null while it is down
    bool isInCluster = false;      ///< that node is one of a cluster
    SteadyClock::time_point since; ///< of the last change of `isUp`
};

/// What the machine of a link wants done. None of it throws when copied or moved.
struct LinkAction
{
    struct LookUp ///< find the addresses of a node
    {
        int number;
        NodePtr node;
    };
    struct Connect ///< open a connection
    {
        ConnectionId connection;
        LinkAddress address;
        NodePtr node; ///< whose address it is
    };
    struct StartTls ///< agree on encryption, and check the certificate if the options say so
    {
        ConnectionId connection;
    };
    struct Write
    {
        ConnectionId connection;
        SharedText bytes;
        std::size_t offset;
        std::size_t size;

        std::string_view slice() const { return std::string_view(*bytes).substr(offset, size); }
    };
    struct Close
    {
        ConnectionId connection;
    };
    struct End ///< of a call: it failed with the problem, or is answered when there is none
    {
        std::shared_ptr<Exchange> exchange;
        SharedText problem;
        SentSpan sent = {};
    };
    struct Tell ///< whoever asks for the link's state
    {
        LinkCondition condition;
    };

    using Any = std::variant<LookUp, Connect, StartTls, Write, Close, End, Tell>;
};

} // namespace zo
