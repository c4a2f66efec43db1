// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <string>

/// State of the link to the robot, as told by `ZoBroker::linkStatus`.
struct ZoLinkStatus
{
    bool connected = false;
    std::chrono::system_clock::time_point since; ///< of the last change of `connected`
    std::string cause; ///< why it is down, with the robot's address; empty while connected
    /// Login or certificate were refused: it stays down until `ZoBroker::reconnect`.
    bool refused = false;
};
