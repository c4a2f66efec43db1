// SPDX-License-Identifier: MIT
#pragma once

#include "simulation/answer_stream.h"

#include <link/link_actions.h>

#include <vector>

/// What holds for the connections of a link whatever else it does. Throws Violation.
class ConnectionRules
{
public:
    void take(const zo::LinkAction::Any& action, bool hasTls);
    /// Other settings: a refusal that came before is no longer final.
    void reconnect() { fIsRefused = false; }

    void connected(zo::ConnectionId connection) { advance(connection, Phase::Connected); }
    void secured(zo::ConnectionId connection) { advance(connection, Phase::Secured); }
    void written(zo::ConnectionId connection);
    void received(zo::ConnectionId connection, const Arrival& arrival);
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
        zo::ConnectionId connection;
        Phase phase;
        bool isWriting;
        bool isTurnedAway; ///< the robot does not want this client, or makes no sense
    };

    void takeRefusal(const zo::LinkAction::Any& action);
    void advance(zo::ConnectionId connection, Phase phase);
    Open* find(zo::ConnectionId connection);
    Open& require(zo::ConnectionId connection, const char* what);

    std::vector<Open> fOpen;
    zo::ConnectionId fNewest = 0;
    bool fIsRefused = false;
};
