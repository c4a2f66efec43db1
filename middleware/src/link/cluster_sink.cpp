// SPDX-License-Identifier: MIT
#include "link/cluster_sink.h"

#include "link/hash_slot.h"
#include "link/host_name.h"

#include <algorithm>

namespace zo {

namespace {

constexpr char command[] = "CLUSTER SLOTS";

// Where in a range its parts stand.
constexpr int beginOfRange = 0;
constexpr int endOfRange = 1;
constexpr int firstNode = 2; // the one that takes writes
constexpr int hostOfNode = 0;
constexpr int portOfNode = 1;

} // namespace

bool ClusterSink::take(const ReplyPlace& place, const ReplyPiece& piece)
{
    if (place.reply > fKeyReply)
        return takeTable(place, piece);
    if (place.reply == fKeyReply && place.depth == 0 && piece.kind == ReplyKind::Error)
        fError = piece.text;
    return true; // nobody wants its value
}

bool ClusterSink::takeTable(const ReplyPlace& place, const ReplyPiece& piece)
{
    if (place.depth == 0 && piece.kind == ReplyKind::Error)
        return true;
    if (place.depth == 0)
        fHasTable = true;
    if (place.depth < 2)
        return piece.kind == ReplyKind::Array || refuse(misplaced(command, piece.kind));
    if (place.depth == 2)
        return takeRange(place, piece);
    return place.depth > 3 || takeNode(place, piece);
}

bool ClusterSink::takeRange(const ReplyPlace& place, const ReplyPiece& piece)
{
    const ReplyKind wanted = place.index < firstNode ? ReplyKind::Integer : ReplyKind::Array;
    if (piece.kind != wanted)
        return refuse(misplaced(command, piece.kind));
    fNode = place.index;
    fHost.clear();
    fIsKnown = false;
    if (place.index == beginOfRange)
        fBegin = piece.number;
    if (place.index != endOfRange)
        return true;
    fIsOurs = fBegin <= fSlot && fSlot <= piece.number;
    if (fBegin < 0 || piece.number < fBegin || piece.number >= hashSlots)
        return refuse("malformed reply to CLUSTER SLOTS: slots from " + std::to_string(fBegin) +
                      " to " + std::to_string(piece.number));
    return true;
}

bool ClusterSink::takeNode(const ReplyPlace& place, const ReplyPiece& piece)
{
    if (place.index == hostOfNode) {
        fHost = piece.text;
        fIsKnown = piece.kind == ReplyKind::Text || piece.kind == ReplyKind::Nil;
    }
    if (place.index != portOfNode)
        return true; // its name, and what else it may tell
    if (piece.kind != ReplyKind::Integer)
        return refuse(misplaced(command, piece.kind));
    if (fIsKnown)
        addNode(piece.number);
    return true;
}

// One that cannot be reached at all is none. Without a host it is where the one is that was asked.
void ClusterSink::addNode(std::int64_t port)
{
    Nodes& nodes = fIsOurs ? fOwners : fOthers;
    const bool isWanted = fIsOurs || fNode == firstNode;
    if (!isWanted || nodes.size() >= fMostNodes || port < 1 || port > ZoAddress::fHighestPort)
        return;
    const ZoAddress node{fHost, static_cast<int>(port)};
    const auto isSame = [&](const NodePtr& known) { return *known == node; };
    if ((fHost.empty() || canBeNode(node)) && std::none_of(nodes.begin(), nodes.end(), isSame))
        nodes.push_back(std::make_shared<const ZoAddress>(node));
}

std::string ClusterSink::nameOf(const ReplyPlace& place) const
{
    return place.reply > fKeyReply ? "the reply to CLUSTER SLOTS" : "the reply to MGET";
}

} // namespace zo
