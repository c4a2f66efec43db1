// SPDX-License-Identifier: MIT
#include "wire/status_sink.h"

#include <utility>

namespace zo {

StatusSink::StatusSink(std::string command) : fCommand(std::move(command)) {}

bool StatusSink::take(const ReplyPlace&, const ReplyPiece& piece)
{
    const bool isError = piece.kind == ReplyKind::Error;
    if (!isError && piece.kind != ReplyKind::Status && piece.kind != ReplyKind::Text)
        return refuse(misplaced(fCommand, piece.kind));
    fAnswers.push_back({isError, std::string(piece.text)});
    return true;
}

std::string StatusSink::nameOf(const ReplyPlace&) const
{
    return "the reply to " + fCommand;
}

} // namespace zo
