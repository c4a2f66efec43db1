// SPDX-License-Identifier: MIT
#include "memory/names_sink.h"

#include "wire/limits.h"
#include "wire/reply_numbers.h"
#include "wire/request.h"

#include <algorithm>

namespace zo {

namespace {

// A page holds some ten thousand names at most; more when many share a slot of the server's table.
constexpr int largestPage = 100000;
constexpr std::size_t longestCursor = 20;

bool isCursor(std::string_view text)
{
    return !text.empty() && text.size() <= longestCursor &&
           std::all_of(text.begin(), text.end(), isDigit);
}

} // namespace

std::string encodeScan(std::string_view cursor, int names, std::string_view kind,
                       std::string_view pattern)
{
    const std::string count = std::to_string(names);
    std::vector<std::string_view> words{"SCAN", cursor, "COUNT", count};
    if (!pattern.empty())
        words.insert(words.end(), {"MATCH", pattern});
    if (!kind.empty())
        words.insert(words.end(), {"TYPE", kind});
    return encodeCommand(words);
}

bool NamesSink::take(const ReplyPlace& place, const ReplyPiece& piece)
{
    if (piece.kind == ReplyKind::Array)
        return takeElements(place, piece);
    if (piece.kind == ReplyKind::Text && place.depth > 0)
        return takeText(place, piece.text);
    if (piece.kind == ReplyKind::TooLarge && place.depth == 2)
        return takeTooLarge(piece.number);
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

// No robot is asked for a key that is too large by itself.
bool NamesSink::takeTooLarge(std::int64_t size)
{
    fIsCut = fIsCut || size <= std::int64_t{ReplyLimits::fMaxValue};
    return true;
}

std::string NamesSink::nameOf(const ReplyPlace&) const
{
    return "a name in the key list";
}

std::string encodeKeysInSlot(int slot, std::string_view key)
{
    std::string bytes = encodeCommand({"CLUSTER", "GETKEYSINSLOT", std::to_string(slot),
                                       std::to_string(ReplyLimits::fMaxElements)});
    appendCommand({"MGET", key}, bytes);
    return bytes;
}

bool SlotNamesSink::isCut() const
{
    return fIsCut || fNames.size() >= std::size_t{ReplyLimits::fMaxElements};
}

bool SlotNamesSink::take(const ReplyPlace& place, const ReplyPiece& piece)
{
    if (place.depth == 0 && piece.kind == ReplyKind::Error)
        fRefusals.emplace_back(piece.text);
    if (place.reply > 0 || piece.kind == ReplyKind::Error)
        return true;
    if (place.depth == 1 && piece.kind == ReplyKind::Text)
        fNames.emplace_back(piece.text);
    else if (place.depth == 1 && piece.kind == ReplyKind::TooLarge)
        fIsCut = fIsCut || piece.number <= std::int64_t{ReplyLimits::fMaxValue};
    else if (place.depth > 0 || piece.kind != ReplyKind::Array)
        return refuse(misplaced("CLUSTER GETKEYSINSLOT", piece.kind));
    return true;
}

std::string SlotNamesSink::nameOf(const ReplyPlace&) const
{
    return "a name in the key list";
}

} // namespace zo
