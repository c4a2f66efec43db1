// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <optional>
#include <string>

namespace kit {

// The keys by which a robot that plays a recording is told of and ruled:
constexpr char replayStateKey[] = "Replay/State"; ///< playing, paused, searching or ended
constexpr char replayTimeKey[] = "Replay/Time";   ///< of the step that is shown, s since the epoch
constexpr char replaySpeedKey[] = "Replay/Speed";
/// Whoever may write sets it to a command; invalid when the robot has taken it.
constexpr char replayControlKey[] = "Replay/Control";

/// The commands, for messages.
constexpr char replayCommands[] = "play, pause, step [N], jump TIME, speed X";

/// What a user wants of a running replay.
struct ReplayCommand
{
    enum class Kind
    {
        Play,
        Pause,
        Step,     ///< pause, and show the next `steps`
        JumpTo,   ///< a time since the epoch
        JumpBy,   ///< from where it is, back if it is negative
        JumpFrom, ///< from the start of the recording
        Speed
    };

    Kind kind;
    int steps = 1;
    std::chrono::milliseconds time{0};
    double speed = 1;
};

constexpr double lowestReplaySpeed = 0.001;
constexpr double highestReplaySpeed = 1000;

/// The command that `text` spells: play, pause, step [N], jump TIME, speed X. Nothing when it
/// spells none.
std::optional<ReplayCommand> replayCommandFrom(const std::string& text);

/// A time: 1700000000.5 is since the epoch, 90s from the start of the recording, +90s and -90s from
/// where it is. Nothing when it is none.
std::optional<ReplayCommand> jumpFrom(const std::string& text);

} // namespace kit
