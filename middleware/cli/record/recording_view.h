// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

/// How a recording is getting on.
struct RecorderState
{
    enum class Phase
    {
        Recording,
        Waiting, ///< for a robot that is lost
        Ended
    };

    Phase phase = Phase::Recording;
    std::string cause;            ///< why it waits, or ended; empty when it was told to
    std::uint64_t rows = 0;       ///< without those that mark gaps
    std::int64_t missedPolls = 0; ///< that had no new answer
    std::int64_t tooLarge = 0;    ///< values that rows have not, for their size
    std::int64_t emptyKeys = 0;   ///< that have had no value so far
    std::optional<std::chrono::milliseconds> age; ///< of the newest answer
    std::uint64_t bytes = 0;
    std::optional<std::uint64_t> freeBytes; ///< of the disk
    std::string path;                       ///< of the file; empty: there is none
};

/// What shows it to somebody. Never throws, and holds nobody up.
class RecordingView
{
public:
    using Clock = std::chrono::steady_clock;

    virtual ~RecordingView() = default;

    /// Whether it is time to show how a recording in this phase is getting on.
    virtual bool isDue(Clock::time_point now, RecorderState::Phase phase) const = 0;
    virtual void show(Clock::time_point now, const RecorderState& state) = 0;
    /// Makes room for a message.
    virtual void clear() {}
};
