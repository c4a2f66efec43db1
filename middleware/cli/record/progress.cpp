// SPDX-License-Identifier: MIT
#include "progress.h"

#include <kit/quantity.h>

#include <utility>

namespace {

constexpr const char* clearedLine = "\r\x1b[K";

std::string countText(std::int64_t count, const std::string& one, const std::string& many)
{
    return std::to_string(count) + " " + (count == 1 ? one : many);
}

std::string rateText(double rate)
{
    const std::string thousandths =
        kit::secondsText(std::chrono::milliseconds(static_cast<std::int64_t>(rate * 1000)));
    return thousandths.substr(0, thousandths.size() - 2);
}

} // namespace

std::string progressText(const RecorderState& state, std::optional<double> rate)
{
    const std::string tooLarge =
        state.tooLarge > 0 ? countText(state.tooLarge, "value", "values") + " too large, " : "";
    std::string text = countText(static_cast<std::int64_t>(state.rows), "row", "rows") + ", " +
                       countText(state.missedPolls, "poll missed", "polls missed") + ", " +
                       tooLarge +
                       (state.age ? "age " + std::to_string(state.age->count()) + " ms"
                                  : std::string("no answer yet")) +
                       ", " + (rate ? rateText(*rate) + "/s, " : "") + kit::sizeText(state.bytes);
    if (state.freeBytes)
        text += ", " + kit::sizeText(*state.freeBytes) + " free";
    return text;
}

ProgressLine::ProgressLine(std::function<void(const std::string&)> print) : fPrint(std::move(print))
{
}

bool ProgressLine::isDue(Clock::time_point now, RecorderState::Phase) const
{
    return fPrint && now >= fNext;
}

void ProgressLine::show(Clock::time_point now, const RecorderState& state)
{
    if (!fPrint)
        return;
    const bool hasEnded = state.phase == RecorderState::Phase::Ended;
    fPrint(clearedLine + progressText(state, rateUntil(now, state.rows)) + (hasEnded ? "\n" : ""));
    fNext = now + std::chrono::seconds(1);
    fLast = now;
    fLastRows = state.rows;
    fIsShown = !hasEnded;
}

std::optional<double> ProgressLine::rateUntil(Clock::time_point now, std::uint64_t rows) const
{
    const std::chrono::duration<double> time = now - fLast.value_or(now);
    if (time.count() < 0.1)
        return {};
    return static_cast<double>(rows - fLastRows) / time.count();
}

void ProgressLine::clear()
{
    if (fIsShown)
        fPrint(clearedLine);
    fIsShown = false;
    fNext = {};
}
