// SPDX-License-Identifier: MIT
#include "link/conversation.h"

#include <utility>

namespace zo {

LinkAction::Write Conversation::begin(Time now, const Outbox::Slice& slice)
{
    if (!isBusy())
        fSilentSince = now;
    fIsFirstSlice = slice.newBytes > 0;
    if (fIsFirstSlice)
        await(now, slice);
    fAwaited.back().isOut = slice.isEnd;
    endAnswered();
    fIsWriting = true;
    return {fConnection, slice.asking->inquiry->bytes(), slice.offset, slice.size};
}

void Conversation::await(Time now, const Outbox::Slice& slice)
{
    fAwaited.push_back({slice.asking, slice.newReplies, slice.newBytes, now, slice.isEnd});
    SentSpan& sent = slice.asking->sent;
    sent.last = ++fSlices;
    if (sent.first == 0)
        sent.first = fSlices;
    if (fAwaited.size() == 1)
        expectFirst();
}

void Conversation::expectFirst()
{
    const Awaited& first = fAwaited.front();
    fWatch.handOnTo(first.asking->inquiry->sink());
    fReader.expect(first.replies, fWatch, first.asking->progress);
}

// That the network takes more is a sign of life only while nothing else could come.
void Conversation::written(Time now)
{
    if (!std::exchange(fIsWriting, false) || fAwaited.empty())
        return;
    if (fAwaited.size() == 1)
        fSilentSince = now;
    if (fIsFirstSlice && !fAwaited.back().isAnswered)
        fAwaited.back().askedAt = now;
}

ReplyProblem Conversation::received(Time now, std::string_view bytes, RoundTrip& roundTrip)
{
    fSilentSince = now;
    for (;;) {
        const bool isNew = !fWatch.hasError();
        const std::string_view rest = fReader.read(bytes);
        if (isNew)
            fWholeBefore = fWhole.size();
        noteAnswer(now, roundTrip);
        if (fReader.hasProblem())
            return fReader.problem();
        endAnswered();
        if (rest.empty())
            return {};
        if (rest.size() == bytes.size())
            return {"malformed reply: more than was asked for", std::string(rest)};
        bytes = rest;
    }
}

void Conversation::noteAnswer(Time now, RoundTrip& roundTrip)
{
    if (fAwaited.empty() || fAwaited.front().isAnswered || !fReader.hasBegun())
        return;
    fAwaited.front().isAnswered = true;
    fAwaited.front().asking->isAnswered = true;
    roundTrip.add(now - fAwaited.front().askedAt);
}

// A server may answer before it has read the whole command: the next one waits for both.
void Conversation::endAnswered()
{
    if (fAwaited.empty() || !fReader.isComplete() || !fAwaited.front().isOut)
        return;
    const Awaited commands = std::move(fAwaited.front());
    fAwaited.pop_front();
    Asking& asking = *commands.asking;
    asking.progress = fReader.progress();
    asking.unanswered -= commands.bytes;
    if (asking.isSent() && asking.unanswered == 0)
        fWhole.push_back(commands.asking);
    if (!fAwaited.empty())
        expectFirst();
}

Conversation::AskingPtr Conversation::takeWhole()
{
    if (fWhole.empty())
        return nullptr;
    AskingPtr whole = std::move(fWhole.front());
    fWhole.pop_front();
    return whole;
}

Conversation::AskingPtr Conversation::takeWholeBefore()
{
    if (fWholeBefore == 0)
        return nullptr;
    --fWholeBefore;
    return takeWhole();
}

std::string Conversation::pending() const
{
    if (fAwaited.empty())
        return "what it has answered is not yet taken by the network";
    return fAwaited.front().asking->inquiry->name() + " awaits its reply";
}

} // namespace zo
