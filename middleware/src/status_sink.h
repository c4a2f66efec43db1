#pragma once

#include "reply_sink.h"

#include <string>
#include <vector>

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

    void takeArray(const ReplyPlace& place, int size) override;
    void takeText(const ReplyPlace& place, std::string_view text) override;
    void takeInteger(const ReplyPlace& place, long long number) override;
    void takeNil(const ReplyPlace& place) override;
    void takeError(const ReplyPlace& place, std::string_view text) override;
    std::string nameOf(const ReplyPlace& place) const override;

private:
    [[noreturn]] void refuse() const;

    const std::string fCommand;
    std::vector<Answer> fAnswers;
};
