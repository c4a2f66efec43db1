// SPDX-License-Identifier: MIT
#include "memory/notice_sink.h"

namespace zo {

// A notice is the word "invalidate" and an array of keys, or nil for all keys: so a flush is told.
// Where a key stands that cannot be told, any may be meant.
bool NoticeSink::take(const ReplyPlace& place, const ReplyPiece& piece)
{
    if (place.depth == 0)
        return true;
    if (place.depth == 1 && place.index == 0) {
        fIsNotice = piece.kind == ReplyKind::Text && piece.text == "invalidate";
        return true;
    }
    if (!fIsNotice || (place.depth == 1 && piece.kind == ReplyKind::Array))
        return true;
    if (place.depth == 2 && piece.kind == ReplyKind::Text) {
        const std::string key(piece.text);
        fChanged(&key);
    } else {
        fChanged(nullptr);
    }
    return true;
}

std::string NoticeSink::nameOf(const ReplyPlace&) const
{
    return "a notice";
}

} // namespace zo
