// SPDX-License-Identifier: MIT
#include "memory/names_sink.h"

#include "wire/reply_numbers.h"

#include <algorithm>

namespace zo {

namespace {

// A page holds about a thousand names; more come when many share a slot of the server's table.
constexpr int largestPage = 100000;
constexpr std::size_t longestCursor = 20;

bool isCursor(std::string_view text)
{
    return !text.empty() && text.size() <= longestCursor &&
           std::all_of(text.begin(), text.end(), isDigit);
}

} // namespace

bool NamesSink::take(const ReplyPlace& place, const ReplyPiece& piece)
{
    if (piece.kind == ReplyKind::Array)
        return takeElements(place, piece);
    if (piece.kind == ReplyKind::Text && place.depth > 0)
        return takeText(place, piece.text);
    if (piece.kind == ReplyKind::TooLarge && place.depth == 2)
        return true; // no robot is asked for such a key
    if (piece.kind != ReplyKind::Error || place.depth > 0)
        return refuse(misplaced("SCAN", piece.kind));
    fRefusal = piece.text;
    return true;
}

bool NamesSink::takeElements(const ReplyPlace& place, const ReplyPiece& piece)
{
    const bool isPage = place.depth == 0 && piece.number == 2;
    const bool isList = place.depth == 1 && place.index == 1 && piece.number <= largestPage;
    if (isPage || isList)
        return true;
    return refuse("malformed reply to SCAN: an array of " + std::to_string(piece.number) +
                  " elements where none belongs");
}

bool NamesSink::takeText(const ReplyPlace& place, std::string_view text)
{
    if (place.depth == 2) {
        fNames.emplace_back(text);
        return true;
    }
    if (place.index > 0)
        return refuse(misplaced("SCAN", ReplyKind::Text));
    if (!isCursor(text))
        return refuse("malformed reply to SCAN: no cursor");
    fCursor = text;
    return true;
}

std::string NamesSink::nameOf(const ReplyPlace&) const
{
    return "a name in the key list";
}

} // namespace zo
