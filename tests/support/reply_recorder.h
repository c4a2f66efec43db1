// SPDX-License-Identifier: MIT
#pragma once

#include <wire/reply_sink.h>

#include <string>
#include <utility>

using namespace zo;

/// Writes down what it is given, one line a piece.
class ReplyRecorder : public ReplySink
{
public:
    /// `log` must outlive this; `prefix` begins each line.
    explicit ReplyRecorder(std::string& log, std::string prefix = {})
        : fLog(log), fPrefix(std::move(prefix))
    {
    }

    bool take(const ReplyPlace& place, const ReplyPiece& piece) override
    {
        fLog += fPrefix + std::to_string(place.reply) + "/" + std::to_string(place.depth) + "/" +
                std::to_string(place.index) + " " + zo::nameOf(piece.kind);
        if (piece.kind == ReplyKind::Double)
            fLog += " " + std::to_string(piece.real);
        else if (piece.number != 0)
            fLog += " " + std::to_string(piece.number);
        fLog.append(piece.text.empty() ? "" : " ").append(piece.text).append("\n");
        return true;
    }

    std::string nameOf(const ReplyPlace& place) const override
    {
        return "piece " + std::to_string(place.index);
    }

private:
    std::string& fLog;
    const std::string fPrefix;
};
