// SPDX-License-Identifier: MIT
#pragma once

#include "link/redirection.h"
#include "wire/reply_sink.h"

#include <string>
#include <utility>

namespace zo {

/// Hands replies on to who awaits them, and looks out for an error that tells of another node.
class RedirectionWatch : public ReplySink
{
public:
    /// From now on for `sink`, which must outlive the replies.
    void handOnTo(ReplySink& sink) { fSink = &sink; }

    /// The first such error since the last call; empty: there was none.
    std::string takeError() { return std::exchange(fError, {}); }
    bool hasError() const { return !fError.empty(); }

    [[nodiscard]] bool take(const ReplyPlace& place, const ReplyPiece& piece) override
    {
        if (piece.kind == ReplyKind::Error && place.depth == 0 && fError.empty() &&
            readRedirection(piece.text, {}).kind != Redirection::Kind::None)
            fError = piece.text;
        return fSink->take(place, piece) || refuse(fSink->problem());
    }
    std::string nameOf(const ReplyPlace& place) const override { return fSink->nameOf(place); }

private:
    ReplySink* fSink = nullptr;
    std::string fError;
};

} // namespace zo
