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
    const Stage stage = fStage;
    if (!isToBeAsked(stage))
        return {};
    fStage = static_cast<Stage>(static_cast<int>(stage) + 1);
    switch (stage) {
    case Stage::Hello:
        fHello = std::make_shared<HelloSink>();
        return Question{"HELLO", sharedText(encodeCommand({"HELLO", "3"})), 1, fHello};
    case Stage::Tracking:
        return ask("CLIENT TRACKING", encodeCommand({"CLIENT", "TRACKING", "ON", "OPTOUT"}));
    case Stage::Caching:
        // It is about the command behind it, whichever that is.
        return ask("CLIENT CACHING",
                   encodeCommand({"CLIENT", "CACHING", "NO"}) + encodeCommand({"PING"}), 2);
    default:
        return ask("CLIENT TRACKING", encodeCommand({"CLIENT", "TRACKING", "OFF"}));
    }
}

NoticesSetUp::Question NoticesSetUp::ask(const char* name, std::string bytes, int replies)
{
    fStatus = std::make_shared<StatusSink>(name);
    return {name, sharedText(std::move(bytes)), replies, fStatus};
}

// Where every read is told of, also those that are not to be, a robot would remember too much for
// nothing: better to be told of none.
void NoticesSetUp::answered()
{
    switch (fStage) {
    case Stage::HelloSaid:
        return hearVersion();
    case Stage::TrackingAsked:
        return goOn("CLIENT TRACKING", Stage::Caching, Stage::Over);
    case Stage::CachingTried:
        return goOn("CLIENT CACHING", Stage::Done, Stage::TrackingOff);
    default:
        fStage = Stage::Over;
    }
}

void NoticesSetUp::hearVersion()
{
    const bool canSend = canSendNotices(fHello->version());
    fStage = canSend ? Stage::Tracking : Stage::Over;
    if (!canSend)
        fProblem =
            fHello->refusal().empty() ? "the server is too old for that" : "HELLO is refused";
}

void NoticesSetUp::goOn(const char* name, Stage next, Stage otherwise)
{
    const StatusSink::Answer& answer = fStatus->answers().front();
    fStage = answer.isError ? otherwise : next;
    if (answer.isError)
        fProblem = std::string(name) + " is refused: " + answer.text;
}

} // namespace zo
