// SPDX-License-Identifier: MIT
#pragma once

#include "support/reply_recorder.h"

#include <wire/reply_reader.h>

#include <string>
#include <string_view>

using namespace zo;

/// What becomes of bytes that a server sends.
struct ReplyReading
{
    enum End
    {
        Whole,      ///< every awaited reply is there
        Unfinished, ///< more bytes may make it whole
        Refused
    };

    End end;
    std::string log;  ///< of a ReplyRecorder for the replies, and of one with "push " for pushes
    std::size_t left; ///< bytes behind the last awaited reply and the pushes after it
};

/// Reads `bytes`, all at once, by the letter of the protocol and of the reader's limits: a slow
/// and simple judge of the reader.
ReplyReading readByTheLetter(std::string_view bytes, int replies);

/// What the reader makes of `bytes` when they arrive in blocks as large as `nextSize` says.
template <class NextSize>
ReplyReading readInBlocks(std::string_view bytes, int replies, NextSize nextSize)
{
    ReplyReading reading{ReplyReading::Unfinished, {}, bytes.size()};
    ReplyRecorder answers(reading.log);
    ReplyRecorder pushes(reading.log, "push ");
    ReplyReader reader(&pushes);
    reader.expect(replies, answers);
    bool goesOn = true;
    while (goesOn && reading.left > 0) {
        const std::string_view block = bytes.substr(bytes.size() - reading.left, nextSize());
        const std::string_view rest = reader.read(block);
        reading.left -= block.size() - rest.size();
        goesOn = rest.empty();
    }
    if (reader.hasProblem())
        reading.end = ReplyReading::Refused;
    else if (reader.isComplete())
        reading.end = ReplyReading::Whole;
    return reading;
}
