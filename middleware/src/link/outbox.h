// SPDX-License-Identifier: MIT
#pragma once

#include "link/asking.h"

#include <cstddef>
#include <deque>
#include <memory>
#include <optional>

namespace zo {

/// What is to be sent over a connection: a slice of one inquiry, then of the next, so that a long
/// one keeps nobody waiting. Commands are never cut by others.
class Outbox
{
public:
    using AskingPtr = std::shared_ptr<Asking>;

    /// What one write carries at most, so that its end is a sign of progress.
    static constexpr std::size_t fSlice = std::size_t{64} << 10;
    /// How much of one inquiry goes out before it is answered, unless a single part is larger.
    static constexpr std::size_t fWindow = 4 * fSlice;

    struct Slice
    {
        AskingPtr asking;
        std::size_t offset;
        std::size_t size;
        int newReplies;       ///< that answer the commands which begin with it
        std::size_t newBytes; ///< of these commands
        bool isEnd;           ///< of the last of these commands
    };

    void add(AskingPtr asking) { fTurn.push_back(std::move(asking)); }
    /// Nobody wants `asking` any more: of what has not begun nothing goes out.
    void cancel(const AskingPtr& asking);

    /// The next slice, if there is one. `mayBegin` says whether an inquiry may be begun.
    template <class MayBegin>
    std::optional<Slice> next(MayBegin mayBegin)
    {
        if (fCut)
            return goOn();
        for (auto asking = fTurn.begin(); asking != fTurn.end(); ++asking) {
            if (hasWindow(**asking) && isFirstOfFlow(asking) &&
                ((*asking)->hasBegun() || mayBegin(**asking)))
                return take(asking);
        }
        return {};
    }

private:
    using Turn = std::deque<AskingPtr>;

    static bool hasWindow(const Asking& asking);
    bool isFirstOfFlow(const Turn::const_iterator& asking) const;
    Slice take(const Turn::iterator& found);
    Slice goOn();

    Turn fTurn;              ///< whose turn it is comes first
    AskingPtr fCut;          ///< a part of it is too large for one slice
    std::size_t fOffset = 0; ///< of the rest of that part
    std::size_t fEnd = 0;
};

} // namespace zo
