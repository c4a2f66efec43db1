// SPDX-License-Identifier: MIT
#pragma once

#include "recording_view.h"

#include <functional>

/// One line that tells it, with the rows a second, if they are known.
std::string progressText(const RecorderState& state, std::optional<double> rate);

/// That line on a terminal, each time in place of the last one.
class ProgressLine : public RecordingView
{
public:
    /// `print` gets what the terminal does; none: nothing is shown.
    explicit ProgressLine(std::function<void(const std::string&)> print);

    bool isDue(Clock::time_point now, RecorderState::Phase phase) const override;
    /// Leaves it there when the recording has ended.
    void show(Clock::time_point now, const RecorderState& state) override;
    void clear() override;

private:
    std::function<void(const std::string&)> fPrint;
    std::optional<double> rateUntil(Clock::time_point now, std::uint64_t rows) const;

    Clock::time_point fNext;
    std::optional<Clock::time_point> fLast; ///< when it was shown
    std::uint64_t fLastRows = 0;
    bool fIsShown = false;
};
