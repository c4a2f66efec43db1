// SPDX-License-Identifier: MIT
#include <zo/cluster.h>
#include <zo/error.h>

#include "link/cluster_sink.h"
#include "link/greeting.h"
#include "link/probe.h"
#include "wire/request.h"

#include <algorithm>
#include <memory>
#include <string>

namespace {

// What a node is asked, in this order.
constexpr int tableReply = 0;
constexpr int helloReply = 1;
constexpr int replies = 2;

/// Takes the table of slots, and whether the server is a node of a cluster at all: one that may not
/// show the table to everybody still tells that.
class MastersSink : public zo::ClusterSink
{
public:
    MastersSink() : ClusterSink(-1, tableReply - 1) {} // no slot is ours

    /// Why there is no table; empty: there is one.
    const std::string& refusal() const { return fRefusal; }
    bool isInCluster() const { return fIsInCluster; }

    [[nodiscard]] bool take(const zo::ReplyPlace& place, const zo::ReplyPiece& piece) override
    {
        if (place.reply == helloReply)
            return takeHello(piece);
        if (place.depth == 0 && piece.kind == zo::ReplyKind::Error)
            fRefusal = piece.text;
        return ClusterSink::take(place, piece);
    }
    std::string nameOf(const zo::ReplyPlace& place) const override
    {
        return place.reply == helloReply ? "the reply to HELLO" : ClusterSink::nameOf(place);
    }

private:
    /// Names and values in turn; a server too old for it sends an error.
    bool takeHello(const zo::ReplyPiece& piece)
    {
        fIsInCluster = fIsInCluster || (fIsMode && piece.text == "cluster");
        fIsMode = piece.text == "mode";
        return true;
    }

    std::string fRefusal;
    bool fIsMode = false;
    bool fIsInCluster = false;
};

/// The connection to one node.
void greet(zo::Probe& probe, const zo::LinkSettings& settings, const ZoAddress& node)
{
    probe.connect(probe.lookUp(node).front(), node.host);
    if (settings.options.tls)
        probe.startTls();
    const zo::Greeting greeting(settings);
    probe.ask(*greeting.inquiry());
    if (greeting.verdict() != zo::Greeting::Verdict::Welcome)
        throw ZoError(greeting.problem(settings.peer));
}

std::vector<ZoAddress> mastersAt(const ZoAddress& node, const ZoBrokerOptions& options)
{
    const auto settings = zo::makeLinkSettings(node.host, node.port, options, "zo-cluster");
    try {
        zo::Probe probe(settings);
        greet(probe, *settings, node);
        const auto sink = std::make_shared<MastersSink>();
        probe.ask(zo::Inquiry(
            "CLUSTER SLOTS",
            zo::sharedText(zo::encodeCommand({"CLUSTER", "SLOTS"}) + zo::encodeCommand({"HELLO"})),
            replies, sink));
        if (sink->isInCluster() && !sink->refusal().empty())
            throw ZoError("does not tell of the other nodes of its cluster: give the user the "
                          "right +cluster|slots (" +
                          settings->peer.quote(sink->refusal()) + ")");
        std::vector<ZoAddress> masters;
        for (const zo::NodePtr& master : sink->others())
            masters.push_back({master->host.empty() ? node.host : master->host, master->port});
        return masters;
    } catch (const ZoError& error) {
        throw settings->peer.error(error.toString());
    }
}

} // namespace

std::vector<ZoAddress> ZoCluster::masters(const ZoAddress& robot, const ZoBrokerOptions& options)
{
    std::vector<ZoAddress> nodes = options.furtherAddresses;
    nodes.insert(nodes.begin(), robot);
    ZoBrokerOptions ofOne = options;
    ofOne.furtherAddresses.clear();
    std::string problems;
    for (const ZoAddress& node : nodes) {
        try {
            std::vector<ZoAddress> masters = mastersAt(node, ofOne);
            std::sort(masters.begin(), masters.end(), [](const auto& one, const auto& other) {
                return one.toText() < other.toText();
            });
            return masters;
        } catch (const ZoError& error) {
            problems += (problems.empty() ? "" : "; ") + error.toString();
        }
    }
    throw ZoError(problems);
}
