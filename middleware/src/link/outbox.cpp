// SPDX-License-Identifier: MIT
#include "link/outbox.h"

#include <algorithm>
#include <utility>

namespace zo {

void Outbox::cancel(const AskingPtr& asking)
{
    fTurn.erase(std::remove(fTurn.begin(), fTurn.end(), asking), fTurn.end());
}

bool Outbox::hasWindow(const Asking& asking)
{
    return asking.unanswered == 0 || asking.unanswered + asking.sizeOfNextPart() <= fWindow;
}

// One that has begun stands wherever the turn has left it; the others stand in their order.
bool Outbox::isFirstOfFlow(const Turn::const_iterator& asking) const
{
    const void* const flow = (*asking)->flow;
    if (!flow || (*asking)->hasBegun())
        return true;
    const auto isOfFlow = [&](const AskingPtr& other) { return other->flow == flow; };
    const auto isBegun = [&](const AskingPtr& other) {
        return isOfFlow(other) && other->hasBegun();
    };
    return std::find_if(fTurn.begin(), fTurn.end(), isOfFlow) == asking &&
           std::none_of(fTurn.begin(), fTurn.end(), isBegun);
}

Outbox::Slice Outbox::take(const Turn::iterator& found)
{
    const AskingPtr asking = *found;
    Slice slice{asking, asking->beginOf(asking->nextPart), 0, 0, 0, true};
    while (!asking->isSent()) {
        const std::size_t size = asking->sizeOfNextPart();
        const bool isFirst = slice.newBytes == 0;
        if (!isFirst && (slice.newBytes + size > fSlice || !hasWindow(*asking)))
            break;
        slice.newReplies += asking->inquiry->part(asking->nextPart).replies;
        slice.newBytes += size;
        asking->unanswered += size;
        ++asking->nextPart;
    }
    fTurn.erase(found);
    if (!asking->isSent())
        fTurn.push_back(asking);
    slice.size = std::min(slice.newBytes, fSlice);
    slice.isEnd = slice.size == slice.newBytes;
    if (!slice.isEnd) {
        fCut = asking;
        fOffset = slice.offset + slice.size;
        fEnd = slice.offset + slice.newBytes;
    }
    return slice;
}

Outbox::Slice Outbox::goOn()
{
    Slice slice{fCut, fOffset, std::min(fSlice, fEnd - fOffset), 0, 0, false};
    fOffset += slice.size;
    slice.isEnd = fOffset == fEnd;
    if (slice.isEnd)
        fCut.reset();
    return slice;
}

} // namespace zo
