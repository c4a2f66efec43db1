// SPDX-License-Identifier: MIT
#pragma once

#include "simulation/callers.h"
#include "simulation/connection_rules.h"
#include "simulation/link_events.h"
#include "simulation/simulated_network.h"
#include "simulation/trace.h"

#include <link/link_machine.h>

/// The driver of a real link machine whose robot is on a cluster. What the machine does next,
/// nobody foretells here: it is checked what holds however it finds its way. Throws Violation.
class ClusterLink : public LinkEvents
{
public:
    using Time = Agenda::Time;
    using Settings = std::shared_ptr<const zo::LinkSettings>;

    /// What this is part of; must outlive it.
    struct World
    {
        Agenda& agenda;
        Callers& callers;
        const Trace& trace;
        SimulatedNetwork* network; ///< may come later
    };

    ClusterLink(World& world, Settings settings, std::uint32_t seed);

    void lookedUp(int number, const std::vector<zo::LinkAddress>& addresses,
                  const std::string& problem) override;
    void connected(zo::ConnectionId connection) override;
    void secured(zo::ConnectionId connection) override;
    void received(zo::ConnectionId connection, const Arrival& arrival) override;
    void written(zo::ConnectionId connection) override;
    void closed(zo::ConnectionId connection, const std::string& problem) override;
    void refused(zo::ConnectionId connection, const std::string& problem) override;

    void start();
    void call();
    void wake();
    void stop();

    Time wakeAt() const { return fMachine.wakeAt(); }
    const zo::LinkCondition& condition() const { return fMachine.condition(); }
    int events() const { return fEvents; }
    int connects() const { return fConnects; }
    /// After `stop`: everything is closed, and nothing keeps what has ended.
    void checkEnd();

private:
    template <class Event>
    void report(Event event);
    void act();

    void execute(const zo::LinkAction::LookUp& action);
    void execute(const zo::LinkAction::Connect& action);
    void execute(const zo::LinkAction::StartTls& action);
    void execute(const zo::LinkAction::Write& action);
    void execute(const zo::LinkAction::Close& action);
    void execute(const zo::LinkAction::End& action);
    void execute(const zo::LinkAction::Tell& action);

    World& fWorld;
    const Settings fSettings;
    zo::LinkMachine fMachine;
    ConnectionRules fConnections;
    bool fIsActing = false;
    bool fIsUp = false; ///< as it was told
    Time fAwake;
    int fEvents = 0;
    int fConnects = 0;
};
