// SPDX-License-Identifier: MIT
#include "simulation/simulated_cluster.h"

#include <algorithm>

using namespace zo;

namespace {

constexpr unsigned firstAddress = 0x0a000100U;
constexpr int firstPort = 7000;

std::string bulk(const std::string& text)
{
    return "$" + std::to_string(text.size()) + "\r\n" + text + "\r\n";
}

std::string entry(const std::string& host, int port)
{
    return "*4\r\n" + bulk(host) + ":" + std::to_string(port) + "\r\n$2\r\nid\r\n*0\r\n";
}

/// What no honest node tells of where keys are.
const std::vector<std::string>& falseRedirections()
{
    static const std::vector<std::string> all = {"MOVED",
                                                 "MOVED 13104",
                                                 "MOVED 13104 nowhere",
                                                 "MOVED 13104 10.0.1.1:0",
                                                 "MOVED 99999999999999999999 :7000",
                                                 "MOVED 13104 " + std::string(3000, 'h') + ":7000",
                                                 "MOVED 13104 10.9.9.9:7000"};
    return all;
}

const std::vector<std::string>& falseTables()
{
    static const std::vector<std::string> all = {
        "*0\r\n",
        "*-1\r\n",
        ":7\r\n",
        "*1\r\n*2\r\n:0\r\n:16384\r\n",
        "*1\r\n*2\r\n:5\r\n:4\r\n",
        "*1\r\n*3\r\n:0\r\n:16383\r\n" + entry("10.9.9.9", 7000),
        "*1\r\n*3\r\n:0\r\n:16383\r\n" + entry("?", 7000),
        "*1\r\n*3\r\n:0\r\n:16383\r\n" + entry("", 70000),
        "*1\r\n*3\r\n:0\r\n:16383\r\n*2\r\n$-1\r\n:7000\r\n",
        "*1\r\n*3\r\n:0\r\n:16383\r\n*1\r\n*1\r\n*1\r\n*1\r\n*1\r\n*1\r\n*1\r\n:1\r\n"};
    return all;
}

} // namespace

SimulatedCluster::SimulatedCluster(Random& random, int count) : fRandom(random)
{
    using boost::asio::ip::address_v4;
    for (int node = 0; node < count; ++node) {
        const auto number = static_cast<unsigned>(node + 1);
        nodes.push_back(
            {{address_v4(firstAddress + number), static_cast<unsigned short>(firstPort + node)}});
    }
    owner = static_cast<int>(random.below(nodes.size()));
    agree();
}

void SimulatedCluster::agree()
{
    isMoving = false;
    for (Node& node : nodes) {
        node.believed = owner;
        node.isDown = false;
        node.lies = false;
    }
}

int SimulatedCluster::nodeAt(const Address& address) const
{
    const auto found = std::find_if(nodes.begin(), nodes.end(),
                                    [&](const Node& node) { return node.address == address; });
    return found == nodes.end() ? -1 : static_cast<int>(found - nodes.begin());
}

NodePtr SimulatedCluster::nodePtr(int node) const
{
    const Address& address = nodes[static_cast<std::size_t>(node)].address;
    return std::make_shared<const ZoAddress>(
        ZoAddress{address.address().to_string(), address.port()});
}

std::string SimulatedCluster::addressText(int node) const
{
    return nodePtr(node)->toText();
}

// One that takes itself for the owner, and is not, is one that the others have left behind: it
// serves nobody then.
std::string SimulatedCluster::redirection(const Address& address, bool areSeveral,
                                          bool isAbsent) const
{
    const int number = nodeAt(address);
    const Node& node = nodes[static_cast<std::size_t>(number)];
    if (node.isDown || (number != owner && node.believed == number))
        return "CLUSTERDOWN The cluster is down";
    if (number != owner && node.lies)
        return fRandom.pick(falseRedirections());
    if (number != owner)
        return "MOVED 13104 " + addressText(node.believed);
    if (isMoving && (isAbsent || fRandom.chance(50)))
        return areSeveral ? "TRYAGAIN Multiple keys request during rehashing of slot"
                          : "ASK 13104 " + addressText(0);
    return {};
}

std::string SimulatedCluster::table(const Address& address) const
{
    const Node& node = nodes[static_cast<std::size_t>(nodeAt(address))];
    if (node.lies)
        return fRandom.pick(falseTables());
    std::string others;
    for (int other = 0; other < count(); ++other) {
        if (other != node.believed) {
            const NodePtr known = nodePtr(other);
            others += entry(known->host, known->port);
        }
    }
    const NodePtr believed = nodePtr(node.believed);
    return "*1\r\n*" + std::to_string(2 + count()) + "\r\n:0\r\n:16383\r\n" +
           entry(believed->host, believed->port) + others;
}
