// SPDX-License-Identifier: MIT
#include "simulation/cluster_troubles.h"

#include <algorithm>

using std::chrono::milliseconds;
using std::chrono::seconds;

void ClusterTroubles::start()
{
    fWorld.agenda.in(fWorld.random.upTo(seconds(2)), [this] {
        if (fIsOver)
            return;
        happen();
        start();
    });
}

void ClusterTroubles::heal()
{
    fIsOver = true;
    fWorld.network.condition.dead.clear();
    fWorld.network.condition.isSilent = false;
    fWorld.network.condition.robotHangs = false;
    fWorld.network.condition.drips = false;
    fWorld.cluster.agree();
    fWorld.network.resume();
}

/// Does `action` after a while, unless all is well by then.
template <class Action>
void ClusterTroubles::later(Action action)
{
    fWorld.agenda.in(fWorld.random.upTo(seconds(4)), [this, action] {
        if (fIsOver)
            return;
        action();
        fWorld.network.resume();
    });
}

int ClusterTroubles::other() const
{
    const int count = fWorld.cluster.count();
    return (fWorld.cluster.owner + fWorld.random.between(1, count - 1)) % count;
}

void ClusterTroubles::happen()
{
    const auto trouble = static_cast<ClusterTrouble>(fWorld.random.below(clusterTroubles));
    fWorld.trace.line([&] { return std::string("trouble: ") + nameOf(trouble); });
    ++fWorld.tally.troubles[static_cast<std::size_t>(trouble)];
    strike(trouble);
}

void ClusterTroubles::strike(ClusterTrouble trouble)
{
    auto& cluster = fWorld.cluster;
    auto& condition = fWorld.network.condition;
    auto& someNode = cluster.nodes[fWorld.random.below(cluster.nodes.size())];
    switch (trouble) {
    case ClusterTrouble::OwnerMoves:
        return moveOwner();
    case ClusterTrouble::OwnerDies:
        return killOwner();
    case ClusterTrouble::NodeDies: {
        const int node = other();
        kill(node);
        return later([this, node] { revive(node); });
    }
    case ClusterTrouble::SlotIsMoving:
        cluster.isMoving = true;
        return later([this] { fWorld.cluster.isMoving = false; });
    case ClusterTrouble::NodesSendAround:
        for (SimulatedCluster::Node& node : cluster.nodes)
            node.believed = static_cast<int>(fWorld.random.below(cluster.nodes.size()));
        return spread();
    case ClusterTrouble::NodeLies:
        someNode.lies = true;
        return later([&someNode] { someNode.lies = false; });
    case ClusterTrouble::NodeIsCutOff:
        someNode.isDown = true;
        return later([&someNode] { someNode.isDown = false; });
    case ClusterTrouble::ConnectionsBreak:
        return fWorld.network.breakAll(fWorld.random.chance(50));
    case ClusterTrouble::NetworkGoesSilent:
        condition.isSilent = true;
        return later([&condition] { condition.isSilent = false; });
    case ClusterTrouble::NodesHang:
        condition.robotHangs = true;
        return later([&condition] { condition.robotHangs = false; });
    }
}

/// The others hear of it one by one; the old owner knows.
void ClusterTroubles::moveOwner()
{
    const int old = fWorld.cluster.owner;
    fWorld.cluster.owner = other();
    fWorld.cluster.isMoving = false;
    fWorld.cluster.nodes[static_cast<std::size_t>(old)].believed = fWorld.cluster.owner;
    spread();
}

void ClusterTroubles::killOwner()
{
    const int dead = fWorld.cluster.owner;
    kill(dead);
    later([this, dead] {
        if (fWorld.cluster.owner == dead)
            moveOwner();
        later([this, dead] { revive(dead); });
    });
}

void ClusterTroubles::spread()
{
    for (SimulatedCluster::Node& node : fWorld.cluster.nodes) {
        later([this, &node] { node.believed = fWorld.cluster.owner; });
    }
}

void ClusterTroubles::kill(int node)
{
    const auto& address = fWorld.cluster.nodes[static_cast<std::size_t>(node)].address;
    fWorld.network.condition.dead.push_back(address);
    fWorld.network.breakAll(false, &address);
}

void ClusterTroubles::revive(int node)
{
    auto& dead = fWorld.network.condition.dead;
    const auto& address = fWorld.cluster.nodes[static_cast<std::size_t>(node)].address;
    dead.erase(std::remove(dead.begin(), dead.end(), address), dead.end());
}
