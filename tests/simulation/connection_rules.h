// SPDX-License-Identifier: MIT
#pragma once

#include "simulation/answer_stream.h"

#include <link/link_actions.h>

#include <vector>

/// What holds for the connections of a link whatever else it does. Throws Violation.
class ConnectionRules
{
public:
    void take(const LinkAction::Any& action, bool hasTls);

    void connected(ConnectionId connection) { advance(connection, Phase::Connected); }
    void secured(ConnectionId connection) { advance(connection, Phase::Secured); }
    void written(ConnectionId connection);
    void received(ConnectionId connection, const Arrival& arrival);
    /// No connection may be open any more.
    void end() const;

private:
    enum class Phase
    {
        Connecting,
        Connected,
        Secured
    };

    struct Open
    {
        ConnectionId connection;
        Phase phase;
        bool isWriting;
        bool isTurnedAway; ///< the robot does not want this client, or makes no sense
    };

    void advance(ConnectionId connection, Phase phase);
    Open* find(ConnectionId connection);
    Open& require(ConnectionId connection, const char* what);

    std::vector<Open> fOpen;
    ConnectionId fNewest = 0;
};
