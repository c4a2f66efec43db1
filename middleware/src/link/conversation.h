// SPDX-License-Identifier: MIT
#pragma once

#include "link/exchange.h"
#include "link/link_actions.h"
#include "link/round_trip.h"
#include "wire/reply_reader.h"

#include <memory>
#include <optional>
#include <string_view>

namespace zo {

/// The exchanges on one connection, one after the other: slices of the request out, the replies
/// in, and how long the other side has been silent.
class Conversation
{
public:
    using Time = SteadyClock::time_point;

    /// What one write carries at most, so that its end is a sign of progress.
    static constexpr std::size_t fSlice = std::size_t{64} << 10;

    explicit Conversation(ConnectionId connection) : fConnection(connection) {}

    ConnectionId connection() const { return fConnection; }

    /// Begins `exchange`. None may be under way.
    void begin(Time now, std::shared_ptr<Exchange> exchange);
    /// The next slice to send, once for each: when the exchange has begun, and when the slice
    /// before is written.
    std::optional<LinkAction::Write> nextSlice();
    void written(Time now);
    /// What is wrong with the bytes: no reply, too large, or not asked for.
    ReplyProblem received(Time now, std::string_view bytes, RoundTrip& roundTrip);

    /// The exchange under way; null when none is.
    const std::shared_ptr<Exchange>& exchange() const { return fExchange; }
    /// The exchange that is written and answered, if so: it is no longer under way.
    std::shared_ptr<Exchange> takeWhole();

    /// Whether some of its reply is there.
    bool isAnswered() const { return fIsAnswered; }
    /// Since when the other side has given no sign of life, while an exchange is under way.
    Time silentSince() const { return fSilentSince; }

private:
    bool isWritten() const { return fIsWritten && fOffset == fExchange->bytes()->size(); }

    const ConnectionId fConnection;
    ReplyReader fReader;
    std::shared_ptr<Exchange> fExchange;
    std::size_t fOffset = 0;  ///< behind the last slice
    bool fIsWritten = true;   ///< that slice
    bool fIsAnswered = false; ///< at least one byte
    Time fAskedAt;            ///< when the first slice was on its way
    Time fSilentSince;
};

} // namespace zo
