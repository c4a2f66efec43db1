// SPDX-License-Identifier: MIT
#pragma once

#include "link/link_actions.h"
#include "link/outbox.h"
#include "link/redirection_watch.h"
#include "link/round_trip.h"
#include "wire/reply_reader.h"

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace zo {

/// The inquiries on one connection: slices of them out, in turn, the replies in, in the order in
/// which the commands went out, and how long the other side has been silent.
class Conversation
{
public:
    using Time = SteadyClock::time_point;
    using AskingPtr = Outbox::AskingPtr;

    /// `pushes` takes what the other side sends unasked; null: nobody does. `slices` counts all
    /// that the link has sent. Both must outlive this.
    Conversation(ConnectionId connection, ReplySink* pushes, std::uint64_t& slices)
        : fConnection(connection), fReader(pushes), fSlices(slices)
    {
    }

    ConnectionId connection() const { return fConnection; }

    void add(AskingPtr asking) { fOutbox.add(std::move(asking)); }
    /// Nobody wants it any more. What has gone out is still awaited, and dropped.
    void cancel(const AskingPtr& asking) { fOutbox.cancel(asking); }

    /// The next slice to send, unless one is being written. `mayBegin` says whether an inquiry may
    /// be begun.
    template <class MayBegin>
    std::optional<LinkAction::Write> nextSlice(Time now, MayBegin mayBegin)
    {
        if (fIsWriting)
            return {};
        if (const auto slice = fOutbox.next(mayBegin))
            return begin(now, *slice);
        return {};
    }
    void written(Time now);
    /// What is wrong with the bytes: no reply, too large, or not asked for.
    ReplyProblem received(Time now, std::string_view bytes, RoundTrip& roundTrip);

    /// The next inquiry that is sent and answered, if any: it is no longer under way.
    AskingPtr takeWhole();
    /// The same for those that were answered before an error came that tells of another node.
    AskingPtr takeWholeBefore();

    /// Such an error, the first in reply to what was sent since the last call; empty: there was
    /// none.
    std::string takeRedirection() { return fWatch.takeError(); }

    /// Whether anything is being written, or awaited.
    bool isBusy() const { return fIsWriting || !fAwaited.empty(); }
    /// What the other side has to do next, for messages, while busy: "GET awaits its reply".
    std::string pending() const;
    /// Since when the other side has given no sign of life, while busy.
    Time silentSince() const { return fSilentSince; }

private:
    /// Commands that have gone out together, or still go.
    struct Awaited
    {
        AskingPtr asking;
        int replies;
        std::size_t bytes;
        Time askedAt; ///< when their first slice was on its way
        bool isOut;
        bool isAnswered = false; ///< at least one byte
    };

    LinkAction::Write begin(Time now, const Outbox::Slice& slice);
    void await(Time now, const Outbox::Slice& slice);
    void expectFirst();
    void noteAnswer(Time now, RoundTrip& roundTrip);
    void endAnswered();

    const ConnectionId fConnection;
    ReplyReader fReader;
    RedirectionWatch fWatch;
    Outbox fOutbox;
    std::uint64_t& fSlices;
    std::deque<Awaited> fAwaited;
    std::deque<AskingPtr> fWhole;
    std::size_t fWholeBefore =
        0;                      ///< so many of these, when an error came that tells of another node
    bool fIsWriting = false;    ///< a slice of the last awaited commands, if they still are
    bool fIsFirstSlice = false; ///< of these
    Time fSilentSince;
};

} // namespace zo
