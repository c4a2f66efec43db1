// SPDX-License-Identifier: MIT
#pragma once

#include "link/inquiry.h"
#include "link/link_actions.h"
#include "link/round_trip.h"
#include "wire/reply_reader.h"

#include <memory>
#include <optional>
#include <string_view>

namespace zo {

/// The inquiries on one connection, one after the other: slices of the request out, the replies
/// in, and how long the other side has been silent.
class Conversation
{
public:
    using Time = SteadyClock::time_point;

    /// What one write carries at most, so that its end is a sign of progress.
    static constexpr std::size_t fSlice = std::size_t{64} << 10;

    explicit Conversation(ConnectionId connection) : fConnection(connection) {}

    ConnectionId connection() const { return fConnection; }

    /// Begins `inquiry`, and returns the first slice to send. None may be under way.
    LinkAction::Write begin(Time now, std::shared_ptr<const Inquiry> inquiry);
    /// The slice is written, if one was: returns the next one to send, if any is left.
    std::optional<LinkAction::Write> written(Time now);
    /// What is wrong with the bytes: no reply, too large, or not asked for.
    ReplyProblem received(Time now, std::string_view bytes, RoundTrip& roundTrip);

    /// Whether an inquiry is under way.
    bool isBusy() const { return fTurn.has_value(); }
    /// Whether the inquiry is written and answered: it is no longer under way then.
    bool finish();

    // While an inquiry is under way:
    const Inquiry& inquiry() const { return *fTurn->inquiry; }
    /// Whether some of its reply is there.
    bool isAnswered() const { return fTurn->isAnswered; }
    /// Since when the other side has given no sign of life.
    Time silentSince() const { return fTurn->silentSince; }

private:
    /// An inquiry while it is under way.
    struct Turn
    {
        std::shared_ptr<const Inquiry> inquiry;
        Time askedAt; ///< when the first slice was on its way
        Time silentSince;
        std::size_t offset = 0; ///< behind the last slice
        bool isWritten = false;
        bool isAnswered = false; ///< at least one byte
    };

    LinkAction::Write nextSlice();

    const ConnectionId fConnection;
    ReplyReader fReader;
    std::optional<Turn> fTurn;
};

} // namespace zo
