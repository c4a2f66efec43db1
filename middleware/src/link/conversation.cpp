// SPDX-License-Identifier: MIT
#include "link/conversation.h"

#include <algorithm>
#include <utility>

namespace zo {

LinkAction::Write Conversation::begin(Time now, std::shared_ptr<const Inquiry> inquiry)
{
    fReader.expect(inquiry->replies(), inquiry->sink());
    fTurn = Turn{std::move(inquiry), now, now};
    return nextSlice();
}

LinkAction::Write Conversation::nextSlice()
{
    const SharedText& bytes = fTurn->inquiry->bytes();
    const std::size_t size = std::min(fSlice, bytes->size() - fTurn->offset);
    LinkAction::Write slice{fConnection, bytes, fTurn->offset, size};
    fTurn->offset += size;
    return slice;
}

std::optional<LinkAction::Write> Conversation::written(Time now)
{
    if (!fTurn)
        return {};
    fTurn->silentSince = now;
    if (fTurn->offset <= fSlice && !fTurn->isAnswered)
        fTurn->askedAt = now;
    fTurn->isWritten = fTurn->offset == fTurn->inquiry->bytes()->size();
    if (fTurn->isWritten)
        return {};
    return nextSlice();
}

ReplyProblem Conversation::received(Time now, std::string_view bytes, RoundTrip& roundTrip)
{
    if (fTurn) {
        if (!std::exchange(fTurn->isAnswered, true))
            roundTrip.add(now - fTurn->askedAt);
        fTurn->silentSince = now;
    }
    const std::string_view rest = fReader.read(bytes);
    if (fReader.hasProblem() || rest.empty())
        return fReader.problem();
    return {"malformed reply: more than was asked for", std::string(rest)};
}

// A server may answer before it has read the whole request; the next one waits for both.
bool Conversation::finish()
{
    if (!fTurn || !fTurn->isWritten || !fReader.isComplete())
        return false;
    fTurn.reset();
    return true;
}

} // namespace zo
