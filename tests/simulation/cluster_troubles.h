// SPDX-License-Identifier: MIT
#pragma once

#include "simulation/simulated_cluster.h"
#include "simulation/simulated_network.h"
#include "simulation/tally.h"
#include "simulation/trace.h"

/// What happens to a cluster: owners that change, die and are succeeded, nodes that are late to
/// know, that lie, hang, or send each other around.
class ClusterTroubles
{
public:
    /// What they act upon; must outlive this.
    struct World
    {
        Agenda& agenda;
        Random& random;
        Tally& tally;
        const Trace& trace;
        SimulatedCluster& cluster;
        SimulatedNetwork& network;
    };

    explicit ClusterTroubles(const World& world) : fWorld(world) {}

    /// From now on something happens again and again.
    void start();
    /// All is well, and stays so.
    void heal();

private:
    void happen();
    void strike(ClusterTrouble trouble);
    void moveOwner();
    void killOwner();
    void spread();
    void kill(int node);
    void revive(int node);
    int other() const;
    template <class Action>
    void later(Action action);

    const World fWorld;
    bool fIsOver = false;
};
