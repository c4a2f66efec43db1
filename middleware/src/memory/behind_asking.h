// SPDX-License-Identifier: MIT
#pragma once

#include "wire/reply_sink.h"

#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace zo {

/// What each command needs before it that asks a node for keys which are just moving there:
/// everybody else is sent back to where they come from.
void appendAsking(std::string& bytes);

/// Takes the replies to commands that have that before them, and hands on those to the commands.
class BehindAsking : public ReplySink
{
public:
    static constexpr int fRepliesPerCommand = 2;

    explicit BehindAsking(std::shared_ptr<ReplySink> sink) : fSink(std::move(sink)) {}

    /// Why the node does not let us ask; empty: it does.
    const std::string& refusal() const { return fRefusal; }

    [[nodiscard]] bool take(const ReplyPlace& place, const ReplyPiece& piece) override;
    std::string nameOf(const ReplyPlace& place) const override;

private:
    static bool isOfAsking(const ReplyPlace& place)
    {
        return place.reply % fRepliesPerCommand == 0;
    }

    const std::shared_ptr<ReplySink> fSink;
    std::string fRefusal;
};

/// Takes the reply to a command about one key, unless that is just moving to another node.
class AskWatch : public ReplySink
{
public:
    explicit AskWatch(std::shared_ptr<ReplySink> sink) : fSink(std::move(sink)) {}

    /// Where the key is asked for, as the node says: then the sink has got nothing. Empty: it has.
    const std::string& error() const { return fError; }

    [[nodiscard]] bool take(const ReplyPlace& place, const ReplyPiece& piece) override;
    std::string nameOf(const ReplyPlace& place) const override { return fSink->nameOf(place); }

private:
    const std::shared_ptr<ReplySink> fSink;
    std::string fError;
};

} // namespace zo
