// SPDX-License-Identifier: MIT
#include "status_lines.h"

#include <zo/json.h>

#include <utility>

namespace {

using Phase = RecorderState::Phase;

const char* nameOf(Phase phase)
{
    switch (phase) {
    case Phase::Recording:
        return "recording";
    case Phase::Waiting:
        return "waiting";
    case Phase::Ended:
        break;
    }
    return "ended";
}

template <typename Number>
std::string numberOrNull(bool isKnown, Number number)
{
    return isKnown ? std::to_string(number) : "null";
}

} // namespace

std::string statusLine(const RecorderState& state)
{
    const auto age = state.age.value_or(std::chrono::milliseconds()).count();
    return R"({"state":)" + ZoJson::textOf(nameOf(state.phase)) + //
           R"(,"rows":)" + std::to_string(state.rows) +           //
           R"(,"missed":)" + std::to_string(state.missedPolls) +  //
           R"(,"tooLarge":)" + std::to_string(state.tooLarge) +   //
           R"(,"empty":)" + std::to_string(state.emptyKeys) +     //
           R"(,"bytes":)" + std::to_string(state.bytes) +         //
           R"(,"free":)" + numberOrNull(state.freeBytes.has_value(), state.freeBytes.value_or(0)) +
           R"(,"age":)" + numberOrNull(state.age.has_value(), age) + //
           R"(,"file":)" + ZoJson::textOf(state.path) +              //
           R"(,"cause":)" + ZoJson::textOf(state.cause) + "}\n";
}

StatusLines::StatusLines(std::function<void(const std::string&)> print) : fPrint(std::move(print))
{
}

bool StatusLines::isDue(Clock::time_point now, Phase phase) const
{
    return fPhase != phase || now >= fNext;
}

void StatusLines::show(Clock::time_point now, const RecorderState& state)
{
    if (fPhase == Phase::Ended)
        return;
    fPrint(statusLine(state));
    fPhase = state.phase;
    fNext = now + std::chrono::seconds(1);
}
