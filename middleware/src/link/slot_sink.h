// SPDX-License-Identifier: MIT
#pragma once

#include "wire/reply_sink.h"

#include <string>

namespace zo {

/// Takes the reply to CLUSTER KEYSLOT: only a node of a cluster has slots.
class SlotSink : public ReplySink
{
public:
    /// For a key that is in `slot`.
    explicit SlotSink(int slot) : fSlot(slot) {}

    bool isInCluster() const { return fIsInCluster; }

    [[nodiscard]] bool take(const ReplyPlace&, const ReplyPiece& piece) override
    {
        if (piece.kind == ReplyKind::Error)
            return true; // it is none, or does not tell us
        fIsInCluster = piece.kind == ReplyKind::Integer && piece.number == fSlot;
        return fIsInCluster || refuse("malformed reply to CLUSTER KEYSLOT: not that slot");
    }
    std::string nameOf(const ReplyPlace&) const override { return "the reply to CLUSTER KEYSLOT"; }

private:
    const int fSlot;
    bool fIsInCluster = false;
};

} // namespace zo
