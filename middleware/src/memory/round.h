// SPDX-License-Identifier: MIT
#pragma once

#include "link/deadline.h"
#include "memory/round_plan.h"
#include "wire/reply_sink.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace zo {

/// Counts the places of a stream: of replies and notices as they come, and of what other threads
/// know to be behind all that has come.
class Places
{
public:
    Place next() { return ++fNewest; }
    Place newest() const { return fNewest; }

private:
    std::atomic<Place> fNewest{0};
};

/// The robot's reason not to answer a round.
struct ServerRefusal
{
    std::string text;
};

/// A round on its way: what it asks for, and what has come of it so far. It is filled on the I/O
/// thread, which also reads it; the values become those of the link when it is whole.
class Round : public ReplySink
{
public:
    using Time = SteadyClock::time_point;

    /// The reply to one command.
    struct Reply
    {
        Place place = 0; ///< 0: not here yet
        std::string refusal;
    };

    /// `places` must outlive this.
    Round(std::shared_ptr<const RoundPlan> plan, Places& places, Time begin);

    const std::shared_ptr<const RoundPlan>& plan() const { return fPlan; }
    Time begin() const { return fBegin; }
    const Reply& reply(int command) const { return fReplies[command]; }
    /// Why the round is of no use: an error of the server that is no refusal of keys.
    const std::string& failure() const { return fFailure; }
    struct Given
    {
        /// Keys of which the robot has refused a whole command: each is to be asked for by itself.
        RoundPlan::Keys refused;
        /// Of a key there is a newer value already.
        bool isOvertaken = false;
    };
    /// Gives what it has brought to `values`.
    Given giveTo(FollowedValues& values, Time now);

    [[nodiscard]] bool take(const ReplyPlace& place, const ReplyPiece& piece) override;
    std::string nameOf(const ReplyPlace& place) const override;

private:
    bool takeReply(int command, const ReplyPiece& piece);
    bool takeRefusal(int command, std::string_view text);
    int key(const ReplyPlace& place) const;
    bool give(int command, int key, FollowedValues& values, Time now);

    const std::shared_ptr<const RoundPlan> fPlan;
    Places& fPlaces;
    const Time fBegin;
    std::vector<Reply> fReplies;
    std::vector<ZoValue> fValues;
    std::vector<int> fTooLarge; ///< keys, ascending
    std::int64_t fElements;     ///< that the arrays among the values may still have
    std::string fFailure;
};

} // namespace zo
