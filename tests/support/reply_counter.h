// SPDX-License-Identifier: MIT
#pragma once

#include <wire/reply_reader.h>
#include <wire/reply_sink.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

/// Counts what it is given, and keeps nothing.
class ReplyCounter : public zo::ReplySink
{
public:
    int texts = 0;
    int others = 0;
    std::int64_t skipped = 0;

    bool take(const zo::ReplyPlace&, const zo::ReplyPiece& piece) override
    {
        ++(piece.kind == zo::ReplyKind::Text ? texts : others);
        if (piece.kind == zo::ReplyKind::TooLarge)
            skipped += piece.number;
        return true;
    }
    std::string nameOf(const zo::ReplyPlace& place) const override
    {
        return "piece " + std::to_string(place.index);
    }
};

/// The problem with `bytes`, which arrive in blocks of `blockSize`.
inline zo::ReplyProblem problemWith(std::string_view bytes, std::size_t blockSize = 1 << 16)
{
    ReplyCounter counter;
    zo::ReplyReader reader;
    reader.expect(1, counter);
    while (!bytes.empty() && !reader.hasProblem()) {
        reader.read(bytes.substr(0, blockSize));
        bytes.remove_prefix(std::min(blockSize, bytes.size()));
    }
    return reader.problem();
}

/// A reply of this many letters.
inline std::string textOf(std::size_t size)
{
    return "$" + std::to_string(size) + "\r\n" + std::string(size, 'x') + "\r\n";
}
