// SPDX-License-Identifier: MIT
#include "memory/round.h"

#include "memory/key_text.h"
#include "memory/values_sink.h"
#include "value/json.h"
#include "wire/server_error.h"

#include <algorithm>
#include <utility>

namespace zo {

Round::Round(std::shared_ptr<const RoundPlan> plan, Places& places, Time begin)
    : fPlan(std::move(plan)),
      fPlaces(places),
      fBegin(begin),
      fReplies(fPlan->commands().size()),
      fValues(fPlan->keys().size()),
      fElements(ValuesSink::fMaxElements)
{
}

int Round::key(const ReplyPlace& place) const
{
    return fPlan->commands()[place.reply / fPlan->repliesPerCommand()].first + place.index;
}

bool Round::take(const ReplyPlace& place, const ReplyPiece& piece)
{
    const int perCommand = fPlan->repliesPerCommand();
    if ((place.reply + 1) % perCommand != 0)
        return true; // whatever it says: a notice more does no harm
    if (place.depth == 0)
        return takeReply(place.reply / perCommand, piece);
    switch (piece.kind) {
    case ReplyKind::Text:
        fValues[key(place)] = decodeJson(piece.text, fElements);
        return true;
    case ReplyKind::TooLarge:
        fTooLarge.push_back(key(place));
        return true;
    case ReplyKind::Nil:
        return true;
    default:
        return refuse(misplaced("MGET", piece.kind));
    }
}

bool Round::takeReply(int command, const ReplyPiece& piece)
{
    fReplies[command].place = fPlaces.next();
    if (piece.kind == ReplyKind::Error)
        return takeRefusal(command, piece.text);
    if (piece.kind != ReplyKind::Array)
        return refuse(misplaced("MGET", piece.kind));
    const int asked = fPlan->commands()[command].keys;
    if (piece.number == asked)
        return true;
    return refuse("malformed reply to MGET: " + std::to_string(piece.number) + " values for " +
                  std::to_string(asked) + " keys");
}

bool Round::takeRefusal(int command, std::string_view text)
{
    fReplies[command].refusal = text;
    if (!isKeyForbidden(text))
        fFailure = text;
    return true;
}

std::string Round::nameOf(const ReplyPlace& place) const
{
    if (place.depth != 1)
        return "the reply to MGET";
    return "the value of " + quotedKey(fPlan->keys()[key(place)]->first);
}

Round::Given Round::giveTo(FollowedValues& values, Time now)
{
    Given given;
    if (!fFailure.empty())
        return given;
    for (int command = 0; command < static_cast<int>(fReplies.size()); ++command) {
        const auto [first, count, end] = fPlan->commands()[command];
        const bool isRefused = count > 1 && !fReplies[command].refusal.empty();
        for (int key = first; key < first + count; ++key) {
            if (isRefused)
                given.refused.push_back(fPlan->keys()[key]);
            else if (!give(command, key, values, now))
                given.isOvertaken = true;
        }
    }
    return given;
}

bool Round::give(int command, int key, FollowedValues& values, Time now)
{
    FollowedValues::Entry& entry = *fPlan->keys()[key];
    const auto& [place, refusal] = fReplies[command];
    const bool isArmed = refusal.empty() && fPlan->telling() == Telling::Wanted;
    const FollowedValues::Reading reading{place, isArmed, fBegin, now};
    if (!refusal.empty())
        return values.refused(entry, reading, now);
    if (std::binary_search(fTooLarge.begin(), fTooLarge.end(), key))
        return values.readTooLarge(entry, reading, now);
    return values.read(entry, std::move(fValues[key]), reading);
}

} // namespace zo
