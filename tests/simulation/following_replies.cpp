// SPDX-License-Identifier: MIT
#include "simulation/following_replies.h"

#include "simulation/following_robot.h"
#include "simulation/violation.h"

using namespace zo;

namespace {

void give(Round& round, const ReplyPlace& place, const ReplyPiece& piece)
{
    require(round.take(place, piece), "a good reply is taken", [&] { return round.problem(); });
}

void giveValue(Round& round, const ReplyPlace& place, std::int64_t value)
{
    if (value == FollowingRobot::fNone)
        give(round, place, {ReplyKind::Nil});
    else if (value == FollowingRobot::fTooLarge)
        give(round, place, {ReplyKind::TooLarge, {}, 2000000});
    else
        give(round, place, {ReplyKind::Text, std::to_string(value)});
}

} // namespace

void giveReply(Round& round, int command, const std::vector<std::int64_t>& values)
{
    const int perCommand = round.plan()->repliesPerCommand();
    const int reply = command * perCommand + perCommand - 1;
    if (perCommand > 1)
        give(round, {reply - 1, 0, 0}, {ReplyKind::Status, "OK"});
    if (values.empty()) {
        give(round, {reply, 0, 0}, {ReplyKind::Error, "NOPERM No permissions to access a key"});
        return;
    }
    const auto count = static_cast<std::int64_t>(values.size());
    give(round, {reply, 0, 0}, {ReplyKind::Array, {}, count});
    for (int i = 0; i < count; ++i)
        giveValue(round, {reply, 1, i}, values[i]);
}

std::string textOf(const std::vector<std::int64_t>& values)
{
    std::string text = values.empty() ? "no values" : "";
    for (const std::int64_t value : values)
        text += (text.empty() ? "" : " ") + std::to_string(value);
    return text;
}
