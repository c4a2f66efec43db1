// SPDX-License-Identifier: MIT
#include "memory/notices_set_up.h"

#include "wire/request.h"

#include <array>
#include <charconv>
#include <utility>

namespace zo {

bool canSendNotices(std::string_view version)
{
    constexpr std::array<int, 3> first{7, 0, 5};
    std::array<int, 3> parts{};
    const char* at = version.data();
    const char* const end = at + version.size();
    for (int& part : parts) {
        const auto [rest, error] = std::from_chars(at, end, part);
        if (error != std::errc() || rest == end || *rest != '.')
            break;
        at = rest + 1;
    }
    return parts >= first;
}

bool HelloSink::take(const ReplyPlace& place, const ReplyPiece& piece)
{
    if (place.depth == 0 && piece.kind == ReplyKind::Error)
        fRefusal = piece.text;
    if (place.depth != 1)
        return true;
    std::string* const wanted = std::exchange(fNext, nullptr);
    if (piece.kind != ReplyKind::Text)
        return true;
    if (place.index % 2 == 1) {
        if (wanted)
            *wanted = piece.text;
    } else if (piece.text == "server") {
        fNext = &fServer;
    } else if (piece.text == "version") {
        fNext = &fVersion;
    }
    return true;
}

std::string HelloSink::nameOf(const ReplyPlace&) const
{
    return "the reply to HELLO";
}

std::optional<NoticesSetUp::Question> NoticesSetUp::next()
{
    if (fStage == Stage::Hello) {
        fHello = std::make_shared<HelloSink>();
        fStage = Stage::HelloSaid;
        return Question{"HELLO", sharedText(encodeCommand({"HELLO", "3"})), fHello};
    }
    if (fStage == Stage::Tracking) {
        fTracking = std::make_shared<StatusSink>("CLIENT TRACKING");
        fStage = Stage::TrackingAsked;
        return Question{"CLIENT TRACKING",
                        sharedText(encodeCommand({"CLIENT", "TRACKING", "ON", "OPTOUT"})),
                        fTracking};
    }
    return {};
}

void NoticesSetUp::answered()
{
    if (fStage == Stage::HelloSaid)
        fStage = canSendNotices(fHello->version()) ? Stage::Tracking : Stage::Over;
    else if (fStage == Stage::TrackingAsked)
        fStage = fTracking->answers().back().isError ? Stage::Over : Stage::Done;
}

} // namespace zo
