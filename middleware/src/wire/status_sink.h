// SPDX-License-Identifier: MIT
#pragma once

#include "wire/reply_sink.h"

#include <string>
#include <vector>

namespace zo {

/// Takes replies that are one line each: "OK", "PONG", or an error of the server.
class StatusSink : public ReplySink
{
public:
    struct Answer
    {
        bool isError = false;
        std::string text;
    };

    explicit StatusSink(std::string command);

    /// One for each reply, in order.
    const std::vector<Answer>& answers() const { return fAnswers; }

    [[nodiscard]] bool take(const ReplyPlace& place, const ReplyPiece& piece) override;
    std::string nameOf(const ReplyPlace& place) const override;

private:
    const std::string fCommand;
    std::vector<Answer> fAnswers;
};

} // namespace zo
