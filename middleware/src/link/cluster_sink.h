// SPDX-License-Identifier: MIT
#pragma once

#include "link/node.h"
#include "wire/reply_sink.h"

#include <string>
#include <string_view>

namespace zo {

/// Takes what a node tells of its cluster: whether it serves a key itself, and who else is there.
class ClusterSink : public ReplySink
{
public:
    /// So many nodes are remembered of each kind.
    static constexpr std::size_t fMostNodes = 16;

    /// For the owners of `slot`. The reply about the key is number `keyReply`, and the table of
    /// slots comes behind it.
    ClusterSink(int slot, int keyReply) : fSlot(slot), fKeyReply(keyReply) {}

    /// The node's error in place of the key; empty: it serves it.
    const std::string& error() const { return fError; }
    /// Whether there is a table: a server alone has none, and not everybody may see it.
    bool hasTable() const { return fHasTable; }
    /// The nodes that have the slot, first the one that takes writes. One without a host is where
    /// the node is that was asked.
    const Nodes& owners() const { return fOwners; }
    /// Those that take writes to other slots.
    const Nodes& others() const { return fOthers; }

    [[nodiscard]] bool take(const ReplyPlace& place, const ReplyPiece& piece) override;
    std::string nameOf(const ReplyPlace& place) const override;

private:
    bool takeTable(const ReplyPlace& place, const ReplyPiece& piece);
    bool takeRange(const ReplyPlace& place, const ReplyPiece& piece);
    bool takeNode(const ReplyPlace& place, const ReplyPiece& piece);
    void addNode(std::int64_t port);

    const int fSlot;
    const int fKeyReply;
    std::string fError;
    bool fHasTable = false;
    Nodes fOwners;
    Nodes fOthers;

    // Of the range that comes, and of the node in it.
    std::int64_t fBegin = 0;
    bool fIsOurs = false;
    int fNode = 0;
    std::string fHost;
    bool fIsKnown = false;
};

} // namespace zo
