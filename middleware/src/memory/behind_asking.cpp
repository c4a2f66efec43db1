// SPDX-License-Identifier: MIT
#include "memory/behind_asking.h"

#include "link/redirection.h"
#include "wire/request.h"

namespace zo {

void appendAsking(std::string& bytes)
{
    appendCommand({"ASKING"}, bytes);
}

bool BehindAsking::take(const ReplyPlace& place, const ReplyPiece& piece)
{
    if (!isOfAsking(place))
        return fSink->take({place.reply / fRepliesPerCommand, place.depth, place.index}, piece) ||
               refuse(fSink->problem());
    if (piece.kind == ReplyKind::Error)
        fRefusal = piece.text;
    return true;
}

std::string BehindAsking::nameOf(const ReplyPlace& place) const
{
    if (isOfAsking(place))
        return "the reply to ASKING";
    return fSink->nameOf({place.reply / fRepliesPerCommand, place.depth, place.index});
}

bool AskWatch::take(const ReplyPlace& place, const ReplyPiece& piece)
{
    const bool isAsk = piece.kind == ReplyKind::Error && place.depth == 0 &&
                       readRedirection(piece.text, {}).kind == Redirection::Kind::Ask;
    if (!isAsk)
        return fSink->take(place, piece) || refuse(fSink->problem());
    fError = piece.text;
    return true;
}

} // namespace zo
