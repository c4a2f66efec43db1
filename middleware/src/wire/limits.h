// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>

namespace zo {

/// What is accepted from the other side, and sent to it. The unit is bytes where none is told.
struct ReplyLimits
{
    /// A text of more is skipped ...
    static constexpr std::size_t fMaxValue = std::size_t{1} << 20;
    /// ... up to this size, the largest that a server holds.
    static constexpr std::size_t fMaxText = std::size_t{512} << 20;
    /// A text that makes all awaited replies together, or a push, larger than this is skipped, too.
    static constexpr std::size_t fMaxKept = std::size_t{64} << 20;
    /// What else they may have, beside what is skipped, brings them up to this size.
    static constexpr std::size_t fMaxReply = fMaxKept + fMaxKept / 4;
    /// Of what is skipped of them: more than comes in the time that a call has.
    static constexpr std::size_t fMaxSkipped = std::size_t{1} << 30;
    /// Without its type and its end.
    static constexpr std::size_t fMaxLine = std::size_t{1} << 12;
    /// How many elements one reply or push has, at all depths; a pair counts as two.
    static constexpr int fMaxElements = 1 << 20;
    /// How many arrays are inside one another.
    static constexpr int fMaxDepth = 8;
};

/// "64 MiB", for messages.
inline std::string inMebibytes(std::size_t bytes)
{
    return std::to_string(bytes >> 20) + " MiB";
}

} // namespace zo
