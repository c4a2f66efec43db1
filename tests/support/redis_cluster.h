// SPDX-License-Identifier: MIT
#pragma once

#include "support/redis_server.h"

#include <zo/address.h>

#include <chrono>
#include <memory>
#include <string>
#include <vector>

/// A private cluster of three masters, which have a third of the slots each, and as many replicas.
/// It is whole when it is made. Whatever takes too long throws std::runtime_error.
class RedisCluster
{
public:
    static constexpr int fMasters = 3;
    static constexpr int fNodes = 2 * fMasters;
    /// After so long without a word a node counts as dead.
    static constexpr std::chrono::milliseconds fNodeTimeout{1000};

    RedisCluster();

    /// The masters first, the replica of each in the same order behind them.
    RedisServer& node(int number) const { return *fServers[static_cast<std::size_t>(number)]; }
    ZoAddress address(int number) const { return {"127.0.0.1", node(number).port()}; }

    /// The node that takes the writes to `slot`, as that with `number` knows.
    int ownerOf(int slot, int number = 0) const;

    /// Begins to move a slot from its owner to another master: its keys are at both for a while.
    void beginToMove(int slot, int to) const;
    /// Moves `key` on the way.
    void moveKey(int slot, const std::string& key, int to) const;
    /// Ends it: all keys must be there.
    void endMove(int slot, int to) const;

private:
    void join() const;
    std::string idOf(int number) const;
    bool isWhole() const;

    std::vector<std::unique_ptr<RedisServer>> fServers;
    std::vector<int> fBusPorts;
};
