// SPDX-License-Identifier: MIT
#include "memory/values_sink.h"

#include "memory/key_text.h"
#include "value/json.h"

#include <utility>

namespace zo {

ValuesSink::ValuesSink(std::shared_ptr<const ListRequest> request, ZoValue::Elements values)
    : fRequest(std::move(request)), fValues(std::move(values))
{
}

bool ValuesSink::take(const ReplyPlace& place, const ReplyPiece& piece)
{
    const bool isTaken = takePiece(place, piece);
    if (isTaken && isLast(place, piece))
        fWholeAt = SteadyClock::now();
    return isTaken;
}

bool ValuesSink::isLast(const ReplyPlace& place, const ReplyPiece& piece) const
{
    if (place.reply + 1 < fRequest->replies())
        return false;
    return place.depth == 0 ? piece.kind == ReplyKind::Error
                            : place.index + 1 == fRequest->sizeOfReply(place.reply);
}

bool ValuesSink::takePiece(const ReplyPlace& place, const ReplyPiece& piece)
{
    if (place.depth == 0)
        return takeReply(place.reply, piece);
    ZoValue& value = fValues[fRequest->position(place.reply, place.index)];
    switch (piece.kind) {
    case ReplyKind::Text:
        value = decodeJson(piece.text, fElements);
        return true;
    case ReplyKind::TooLarge:
        ++fTooLarge;
        [[fallthrough]];
    case ReplyKind::Nil:
        value = ZoValue();
        return true;
    default:
        return refuse(misplaced("MGET", piece.kind));
    }
}

bool ValuesSink::takeReply(int reply, const ReplyPiece& piece)
{
    if (piece.kind == ReplyKind::Error) {
        fRefusals.push_back({reply, std::string(piece.text)});
        return true;
    }
    if (piece.kind != ReplyKind::Array)
        return refuse(misplaced("MGET", piece.kind));
    const int asked = fRequest->sizeOfReply(reply);
    if (piece.number == asked)
        return true;
    return refuse("malformed reply to MGET: " + std::to_string(piece.number) + " values for " +
                  std::to_string(asked) + " keys");
}

std::string ValuesSink::nameOf(const ReplyPlace& place) const
{
    if (place.depth != 1)
        return "the reply to MGET";
    return "the value of " + quotedKey(fRequest->key(fRequest->position(place.reply, place.index)));
}

} // namespace zo
