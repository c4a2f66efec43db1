// SPDX-License-Identifier: MIT
#pragma once

#include "link/shared_text.h"
#include "wire/reply_sink.h"
#include "wire/status_sink.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace zo {

/// Whether a server of this version, such as "7.0.15", may be asked for notices: from 7.0.5 on.
/// Before, they may come in the midst of a reply.
bool canSendNotices(std::string_view version);

/// Takes what a server says of itself in reply to HELLO.
class HelloSink : public ReplySink
{
public:
    /// Of the server; both are empty when it has refused.
    const std::string& server() const { return fServer; }
    const std::string& version() const { return fVersion; }
    /// The server's error; empty when it has answered.
    const std::string& refusal() const { return fRefusal; }

    [[nodiscard]] bool take(const ReplyPlace& place, const ReplyPiece& piece) override;
    std::string nameOf(const ReplyPlace& place) const override;

private:
    std::string* fNext = nullptr; ///< what comes next; null: nothing of interest
    std::string fServer;
    std::string fVersion;
    std::string fRefusal;
};

/// Asks the server of a new connection for notices: first whether it knows the protocol that has
/// them, and its version, then for the notices, and whether a read can do without. It may refuse
/// any of it: then there are none, and nothing else changes.
class NoticesSetUp
{
public:
    struct Question
    {
        const char* name;
        SharedText bytes;
        int replies;
        std::shared_ptr<ReplySink> sink;
    };

    /// The link has come up.
    void begin() { fStage = Stage::Hello; }
    /// It is down.
    void end() { fStage = Stage::Over; }

    bool isDue() const { return isToBeAsked(fStage); }
    /// What is to be asked next, if anything is.
    std::optional<Question> next();
    /// The last question is answered.
    void answered();
    /// Whether the server sends notices of what is read from now on.
    bool isDone() const { return fStage == Stage::Done; }
    /// Why it does not, when nothing more is to be asked: "CLIENT TRACKING is refused: ...".
    const std::string& problem() const { return fProblem; }
    /// What the server has said of itself; null: it was not asked yet.
    const HelloSink* hello() const { return fHello.get(); }

private:
    /// Behind each that is to be asked stands the one in which it was.
    enum class Stage
    {
        Hello, ///< to be said
        HelloSaid,
        Tracking, ///< to be asked for
        TrackingAsked,
        Caching, ///< whether it can be left out is to be tried
        CachingTried,
        TrackingOff, ///< to be ended
        TrackingEnded,
        Done,
        Over
    };

    static bool isToBeAsked(Stage stage)
    {
        return stage == Stage::Hello || stage == Stage::Tracking || stage == Stage::Caching ||
               stage == Stage::TrackingOff;
    }
    Question ask(const char* name, std::string bytes, int replies = 1);
    void hearVersion();
    void goOn(const char* name, Stage next, Stage otherwise);

    Stage fStage = Stage::Over;
    std::shared_ptr<HelloSink> fHello;
    std::shared_ptr<StatusSink> fStatus; ///< of the last question behind it
    std::string fProblem;
};

} // namespace zo
