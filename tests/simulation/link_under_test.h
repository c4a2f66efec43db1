// SPDX-License-Identifier: MIT
#pragma once

#include "simulation/callers.h"
#include "simulation/connection_rules.h"
#include "simulation/expected_link.h"
#include "simulation/heap.h"
#include "simulation/link_events.h"
#include "simulation/simulated_network.h"
#include "simulation/tally.h"
#include "simulation/trace.h"

#include <link/link_machine.h>

/// The driver of a real link machine in a simulated world: tells it what happens, does what it
/// asks for, and checks at each step that the invariants hold. Throws Violation.
class LinkUnderTest : public LinkEvents
{
public:
    using Time = Agenda::Time;
    using Settings = std::shared_ptr<const zo::LinkSettings>;

    /// What this is part of; must outlive it.
    struct World
    {
        Agenda& agenda;
        Random& random;
        Callers& callers;
        Tally& tally;
        const Trace& trace;
        SimulatedNetwork* network; ///< may come later
    };

    LinkUnderTest(World& world, const Settings& settings, std::uint32_t seed);

    void lookedUp(int number, const std::vector<zo::LinkAddress>& addresses,
                  const std::string& problem) override;
    void connected(zo::ConnectionId connection) override;
    void secured(zo::ConnectionId connection) override;
    void received(zo::ConnectionId connection, const Arrival& arrival) override;
    void written(zo::ConnectionId connection) override;
    void closed(zo::ConnectionId connection, const std::string& problem) override;
    void refused(zo::ConnectionId connection, const std::string& problem) override;

    void start();
    void call(bool isLate);
    void callForMuch();
    /// One that is under way, or else one that has ended.
    void giveUpCall();
    void wake();
    void failed();
    void reconnect(const Settings& settings);
    void stop();
    /// An event of a connection that the machine has closed or never known.
    void eventOfOtherConnection();

    Time wakeAt() const { return fMachine.wakeAt(); }
    bool isUp() const { return fMachine.condition().isUp; }
    bool isStopped() const { return doing() == LinkDoing::Stopped; }
    LinkDoing doing() const { return fExpected.doing(); }
    const ExpectedLink& expected() const { return fExpected; }
    int events() const { return fEvents; }
    /// After `stop`: everything is closed, and nothing keeps what has ended.
    void checkEnd();

private:
    template <class Event, class Expect>
    void report(Event event, Expect expect);
    void act();
    void check();
    void count(const Arrival& arrival);

    void execute(const zo::LinkAction::LookUp& action);
    void execute(const zo::LinkAction::Connect& action);
    void execute(const zo::LinkAction::StartTls& action);
    void execute(const zo::LinkAction::Write& action);
    void execute(const zo::LinkAction::Close& action);
    void execute(const zo::LinkAction::End& action);
    void execute(const zo::LinkAction::Tell&) {}

    World& fWorld;
    zo::LinkMachine fMachine;
    ExpectedLink fExpected;
    ConnectionRules fConnections;
    zo::ConnectionId fNewest = 0;
    zo::ConnectionId fClosed = 0; ///< the last one; 0: none
    bool fIsActing = false;
    Time fAwake;
    int fEvents = 0;
    std::weak_ptr<const std::string> fGreeting; ///< with a password, maybe
};
