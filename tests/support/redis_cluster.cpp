// SPDX-License-Identifier: MIT
#include "support/redis_cluster.h"

#include <kit/loopback_port.h>

#include <algorithm>
#include <functional>
#include <poll.h>
#include <sstream>
#include <stdexcept>

namespace {

constexpr auto joinDeadline = std::chrono::seconds(30);
constexpr int slotCount = 16384;

void waitUntil(const char* what, const std::function<bool()>& holds)
{
    const auto deadline = std::chrono::steady_clock::now() + joinDeadline;
    while (!holds()) {
        if (std::chrono::steady_clock::now() > deadline)
            throw std::runtime_error(std::string("the cluster of a test: ") + what);
        ::poll(nullptr, 0, 20);
    }
}

/// Whether a node of the table stands for `slot` with this field of its line: "0-5460" or "7".
bool holds(const std::string& range, int slot)
{
    const std::size_t dash = range.find('-');
    const int first = std::stoi(range);
    const int last = dash == std::string::npos ? first : std::stoi(range.substr(dash + 1));
    return first <= slot && slot <= last;
}

} // namespace

RedisCluster::RedisCluster()
{
    for (int number = 0; number < fNodes; ++number) {
        fBusPorts.push_back(kit::freeLoopbackPort());
        RedisServer::Options options;
        options.configuration = {"cluster-enabled yes",
                                 "cluster-config-file nodes.conf",
                                 "cluster-port " + std::to_string(fBusPorts.back()),
                                 "cluster-node-timeout " + std::to_string(fNodeTimeout.count()),
                                 "cluster-replica-validity-factor 0",
                                 "repl-diskless-sync-delay 0"};
        fServers.push_back(std::make_unique<RedisServer>(options));
    }
    join();
}

void RedisCluster::join() const
{
    for (int number = 0; number < fNodes; ++number)
        node(number).command({"CLUSTER", "SET-CONFIG-EPOCH", std::to_string(number + 1)});
    for (int number = 0; number < fMasters; ++number)
        node(number).command({"CLUSTER", "ADDSLOTSRANGE",
                              std::to_string(slotCount * number / fMasters),
                              std::to_string(slotCount * (number + 1) / fMasters - 1)});
    for (int number = 1; number < fNodes; ++number)
        node(0).command({"CLUSTER", "MEET", "127.0.0.1", std::to_string(node(number).port()),
                         std::to_string(fBusPorts[static_cast<std::size_t>(number)])});
    waitUntil("its nodes do not meet", [this] {
        return std::all_of(fServers.begin(), fServers.end(), [](const auto& server) {
            const std::string info = server->command({"CLUSTER", "INFO"});
            return info.find("cluster_state:ok") != std::string::npos &&
                   info.find("cluster_known_nodes:" + std::to_string(fNodes)) != std::string::npos;
        });
    });
    for (int number = fMasters; number < fNodes; ++number)
        node(number).command({"CLUSTER", "REPLICATE", idOf(number - fMasters)});
    waitUntil("its replicas do not follow", [this] { return isWhole(); });
}

// Each knows its place, and each replica is as far as its master.
bool RedisCluster::isWhole() const
{
    for (int number = 0; number < fNodes; ++number) {
        const std::string nodes = node(number).command({"CLUSTER", "NODES"});
        std::size_t replicas = 0;
        for (std::size_t at = 0; (at = nodes.find("slave", at)) != std::string::npos; ++at)
            ++replicas;
        const std::string link = node(number).command({"INFO", "replication"});
        const bool isLinked =
            number < fMasters || link.find("master_link_status:up") != std::string::npos;
        if (replicas != fNodes - fMasters || !isLinked)
            return false;
    }
    return true;
}

std::string RedisCluster::idOf(int number) const
{
    return node(number).command({"CLUSTER", "MYID"});
}

int RedisCluster::ownerOf(int slot, int number) const
{
    std::istringstream lines(node(number).command({"CLUSTER", "NODES"}));
    for (std::string line; std::getline(lines, line);) {
        std::istringstream fields(line);
        std::string id;
        std::string address;
        std::string flags;
        std::string field;
        fields >> id >> address >> flags;
        for (int i = 0; i < 5; ++i) // whose replica, pings, epoch, link
            fields >> field;
        while (fields >> field) {
            if (field.front() == '[' || !holds(field, slot))
                continue;
            for (int owner = 0; owner < fNodes; ++owner) {
                const std::string port = ":" + std::to_string(node(owner).port()) + "@";
                if (address.find(port) != std::string::npos)
                    return owner;
            }
        }
    }
    throw std::runtime_error("the cluster of a test: nobody has slot " + std::to_string(slot));
}

void RedisCluster::beginToMove(int slot, int to) const
{
    const int from = ownerOf(slot);
    const std::string number = std::to_string(slot);
    node(to).command({"CLUSTER", "SETSLOT", number, "IMPORTING", idOf(from)});
    node(from).command({"CLUSTER", "SETSLOT", number, "MIGRATING", idOf(to)});
}

void RedisCluster::moveKey(int slot, const std::string& key, int to) const
{
    node(ownerOf(slot))
        .command({"MIGRATE", "127.0.0.1", std::to_string(node(to).port()), key, "0", "5000"});
}

void RedisCluster::endMove(int slot, int to) const
{
    const int from = ownerOf(slot);
    for (const int number : {to, from})
        node(number).command({"CLUSTER", "SETSLOT", std::to_string(slot), "NODE", idOf(to)});
}
