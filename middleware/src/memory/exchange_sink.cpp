// SPDX-License-Identifier: MIT
#include "memory/exchange_sink.h"

#include "memory/values_sink.h"
#include "value/json.h"

#include <utility>

namespace zo {

ExchangeSink::ExchangeSink(std::string command) : fCommand(std::move(command)) {}

bool ExchangeSink::take(const ReplyPlace&, const ReplyPiece& piece)
{
    std::int64_t elements = ValuesSink::fMaxElements;
    switch (piece.kind) {
    case ReplyKind::Text:
        fValue = decodeJson(piece.text, elements);
        return true;
    case ReplyKind::Nil:
    case ReplyKind::TooLarge:
        return true;
    case ReplyKind::Error:
        fRefusal = piece.text;
        return true;
    default:
        return refuse(misplaced(fCommand, piece.kind));
    }
}

std::string ExchangeSink::nameOf(const ReplyPlace&) const
{
    return "the reply to " + fCommand;
}

} // namespace zo
