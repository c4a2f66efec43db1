// SPDX-License-Identifier: MIT
#pragma once

#include "recording_view.h"

#include <functional>

/// The state of a recording as JSON, in one line, for the program that started it.
std::string statusLine(const RecorderState& state);

/// Such a line each second, when the phase changes, and once at the end.
class StatusLines : public RecordingView
{
public:
    explicit StatusLines(std::function<void(const std::string&)> print);

    bool isDue(Clock::time_point now, RecorderState::Phase phase) const override;
    void show(Clock::time_point now, const RecorderState& state) override;

private:
    const std::function<void(const std::string&)> fPrint;
    Clock::time_point fNext;
    std::optional<RecorderState::Phase> fPhase; ///< that was shown last
};
