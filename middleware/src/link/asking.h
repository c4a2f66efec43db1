// SPDX-License-Identifier: MIT
#pragma once

#include "link/inquiry.h"
#include "wire/reply_reader.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>

namespace zo {

/// The numbers of the first and of the last slice of an inquiry among all that a link has sent.
struct SentSpan
{
    std::uint64_t first = 0; ///< 0: nothing was sent
    std::uint64_t last = 0;
};

/// An inquiry on its way over a connection, or waiting for its turn.
struct Asking
{
    Asking(std::shared_ptr<const Inquiry> what, const void* way)
        : inquiry(std::move(what)), flow(way)
    {
    }

    const std::shared_ptr<const Inquiry> inquiry;
    const void* const flow;     ///< those of one flow go one after the other; null: it is alone
    std::size_t nextPart = 0;   ///< to go out
    std::size_t unanswered = 0; ///< bytes that have gone out
    ReplyProgress progress;
    bool isAnswered = false; ///< at least one byte
    SentSpan sent;

    bool hasBegun() const { return nextPart > 0; }
    bool isSent() const { return nextPart == inquiry->parts(); }
    /// Where the bytes of a part begin.
    std::size_t beginOf(std::size_t part) const
    {
        return part == 0 ? 0 : inquiry->part(part - 1).end;
    }
    std::size_t sizeOfNextPart() const { return inquiry->part(nextPart).end - beginOf(nextPart); }
};

} // namespace zo
