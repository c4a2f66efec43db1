// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// How a recording is getting on.
struct RecordingState
{
    enum class Phase
    {
        Starting, ///< nothing is known yet
        Recording,
        Waiting, ///< the robot is away; it goes on by itself
        Ended
    };

    Phase phase = Phase::Starting;
    qint64 rows = 0;
    qint64 missed = 0;          ///< polls that the robot did not answer
    qint64 tooLarge = 0;        ///< values that were left out
    qint64 empty = 0;           ///< keys that have had no value so far
    qint64 bytes = 0;           ///< of all its files
    std::optional<qint64> free; ///< bytes on the disk; nothing: not known
    QString file;               ///< that is written now; empty: none yet
    QString cause;              ///< why it waits or has failed
};

/// What a line of the recorder's --status says. Nothing when it is no such line.
std::optional<RecordingState> recordingStateFrom(const QByteArray& line);

/// For people, in one line: rows, size, gaps, and the room that is left.
QString recordingText(const RecordingState& state);
