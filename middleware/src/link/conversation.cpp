// SPDX-License-Identifier: MIT
#include "link/conversation.h"

#include <algorithm>
#include <utility>

namespace zo {

void Conversation::begin(Time now, std::shared_ptr<Exchange> exchange)
{
    fExchange = std::move(exchange);
    fReader.expect(fExchange->replies(), fExchange->sink());
    fOffset = 0;
    fIsWritten = true;
    fIsAnswered = false;
    fAskedAt = now;
    fSilentSince = now;
}

std::optional<LinkAction::Write> Conversation::nextSlice()
{
    if (!fExchange || isWritten())
        return {};
    const std::size_t size = std::min(fSlice, fExchange->bytes()->size() - fOffset);
    const LinkAction::Write slice{fConnection, fExchange->bytes(), fOffset, size};
    fOffset += size;
    fIsWritten = false;
    return slice;
}

void Conversation::written(Time now)
{
    fIsWritten = true;
    fSilentSince = now;
    if (fOffset <= fSlice && !fIsAnswered)
        fAskedAt = now;
}

ReplyProblem Conversation::received(Time now, std::string_view bytes, RoundTrip& roundTrip)
{
    if (fExchange && !std::exchange(fIsAnswered, true))
        roundTrip.add(now - fAskedAt);
    fSilentSince = now;
    const std::string_view rest = fReader.read(bytes);
    if (fReader.hasProblem() || rest.empty())
        return fReader.problem();
    return {"malformed reply: more than was asked for", std::string(rest)};
}

// A server may answer before it has read the whole request; the next one waits for both.
std::shared_ptr<Exchange> Conversation::takeWhole()
{
    if (!fExchange || !isWritten() || !fReader.isComplete())
        return nullptr;
    return std::exchange(fExchange, nullptr);
}

} // namespace zo
