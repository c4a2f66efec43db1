// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <optional>
#include <string>

/// State of the link to the robot, as told by `ZoBroker::linkStatus`.
struct ZoLinkStatus
{
    /// How lists are kept up to date that are asked for again and again.
    enum class Following
    {
        None,      ///< none is followed now: each call reads what it asks for
        Changes,   ///< the robot tells what was written, and only that is read again
        Everything ///< a list is read again as a whole: the robot tells nothing, or it is not worth
                   ///< it
    };

    /// What an attempt to connect is at.
    enum class Step
    {
        None, ///< no attempt is under way
        LookUp,
        Connection,
        Tls,
        Login
    };

    bool connected = false;
    std::chrono::system_clock::time_point since; ///< of the last change of `connected`
    std::string cause; ///< why it is down, with the robot's address; empty while connected
    /// Login or certificate were refused: it stays down until `ZoBroker::reconnect`.
    bool refused = false;
    /// Closed by `ZoBroker::disconnect`: it stays down until `ZoBroker::reconnect`.
    bool closed = false;

    /// HOST:PORT of the node that serves it, one of those given or another that these have named;
    /// empty while it is down.
    std::string node = {};
    bool inCluster = false; ///< it is one of a cluster's

    /// From a request to the first byte of its reply, smoothed over the last eight or so, pings
    /// among them; at most 1 s. Nothing before the first.
    std::optional<std::chrono::microseconds> roundTrip = std::nullopt;
    /// How long ago, by the steady clock, the newest answer to `getListData` came in whole. Nothing
    /// before the first.
    std::optional<std::chrono::milliseconds> answerAge = std::nullopt;

    // Over the last 2 s or so; 0 when nothing goes over the link.
    double answersPerSecond = 0;       ///< to `getListData`, of all lists; nothing else counts
    double bytesReceivedPerSecond = 0; ///< without what TLS and the network add, as is the next
    double bytesSentPerSecond = 0;

    Following following = Following::None; ///< only with `ZoBrokerOptions::follow`

    /// The first attempt with its options is under way: nothing has failed yet.
    bool opening = false;
    Step step = Step::None;
};
