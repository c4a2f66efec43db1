// SPDX-License-Identifier: MIT
#pragma once

#include "simulation/random.h"

#include <link/node.h>

#include <boost/asio/ip/tcp.hpp>

#include <string>
#include <vector>

/// The nodes of a cluster, of which one has the robot's keys: who that is, and what each of them
/// believes and tells. All values are in one place: a node that does not have them serves none.
class SimulatedCluster
{
public:
    using Address = boost::asio::ip::tcp::endpoint;

    struct Node
    {
        Address address;
        int believed = 0;    ///< the owner, as it thinks
        bool isDown = false; ///< it has lost sight of the others
        bool lies = false;
    };

    SimulatedCluster(Random& random, int count);

    int count() const { return static_cast<int>(nodes.size()); }
    int nodeAt(const Address& address) const;
    zo::NodePtr nodePtr(int node) const;

    /// What the node at `address` says in place of the values of some keys; empty: it has them. One
    /// that is not there, `isAbsent`, may be where its slot is moving.
    std::string redirection(const Address& address, bool areSeveral, bool isAbsent) const;
    /// Its table of slots.
    std::string table(const Address& address) const;
    /// All know who the owner is.
    void agree();

    std::vector<Node> nodes;
    int owner = 0;
    bool isMoving = false; ///< some keys are at another node already

private:
    std::string addressText(int node) const;

    Random& fRandom;
};
