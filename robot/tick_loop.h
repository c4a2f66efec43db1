// SPDX-License-Identifier: MIT
#pragma once

#include "publication.h"
#include "publisher.h"
#include "trouble.h"

#include <chrono>
#include <cstddef>
#include <vector>

/// One robot of a publication: publishes its keys tick after tick, and that it is there, and
/// reports each outage to what it shares with the others. Both must outlive it.
class TickLoop
{
public:
    /// Publishes the first values. Throws ZoError.
    TickLoop(const Publication& publication, std::size_t robot, std::vector<RobotKey> keys,
             double rate, Trouble& trouble);

    /// For the next tick, or the sign of life, which does not wait for a slow one.
    std::chrono::steady_clock::time_point wakeAt() const;
    /// To be called then. Throws ZoError when the server refuses user, password or certificate.
    void goOn();

private:
    using Steady = std::chrono::steady_clock;

    Steady::time_point nextTickTime() const;
    double elapsed() const { return std::chrono::duration<double>(Steady::now() - fStart).count(); }
    void publish();
    void startOverAfterALoss();

    const ZoBroker& fBroker;
    const std::size_t fRobot;
    Publisher fPublisher;
    SignOfLife fSign;
    const double fRate;
    Trouble& fTrouble;
    const Steady::time_point fStart = Steady::now();
    std::chrono::system_clock::time_point fUpSince = fBroker.linkStatus().since;
    long long fTick = 1;
};
