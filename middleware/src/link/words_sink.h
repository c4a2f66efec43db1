// SPDX-License-Identifier: MIT
#pragma once

#include "wire/reply_sink.h"

#include <string>
#include <utility>
#include <vector>

namespace zo {

/// Takes the first words of one reply, of whatever else it has.
class WordsSink : public ReplySink
{
public:
    /// To `command`.
    explicit WordsSink(std::string command) : fCommand(std::move(command)) {}

    /// Two at most: each text that stands first, or second, in the reply.
    const std::vector<std::string>& words() const { return fWords; }
    /// The error in its place; empty: there is none.
    const std::string& error() const { return fError; }

    [[nodiscard]] bool take(const ReplyPlace& place, const ReplyPiece& piece) override
    {
        if (place.depth == 0 && piece.kind == ReplyKind::Error)
            fError = piece.text;
        if (place.depth == 1 && place.index < 2 && piece.kind == ReplyKind::Text)
            fWords.emplace_back(piece.text);
        return true;
    }
    std::string nameOf(const ReplyPlace&) const override { return "the reply to " + fCommand; }

private:
    const std::string fCommand;
    std::vector<std::string> fWords;
    std::string fError;
};

} // namespace zo
