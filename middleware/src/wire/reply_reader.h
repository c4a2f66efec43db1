// SPDX-License-Identifier: MIT
#pragma once

#include "wire/gatherer.h"
#include "wire/limits.h"
#include "wire/reply_sink.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace zo {

/// What is wrong with the other side.
struct ReplyProblem
{
    std::string text; ///< for people; empty: nothing is wrong
    std::string sent; ///< what the other side sent, as it came; may be empty
};

/// How much of an answer, or of a push, has been read.
struct ReplyProgress
{
    int replies = 0;
    std::size_t taken = 0; ///< bytes
    std::size_t skipped = 0;
};

/// Cuts the bytes of a connection into replies and hands their pieces to a sink, without a socket,
/// a thread or a clock. It keeps no more than the one piece that is still arriving. It reads both
/// versions of the protocol, but no texts or arrays whose size is not announced: the server never
/// sends them.
///
/// The other side may be hostile: nothing is allocated because it was announced, and each measure
/// has its limit. A text over the limit is skipped, up to another one; what else is over it, or
/// malformed, is a problem. A reader with a problem is of no further use, nor is its connection.
class ReplyReader
{
public:
    /// `pushes` takes what the server sends unasked, and must outlive this. Null: nobody does.
    explicit ReplyReader(ReplySink* pushes = nullptr) : fPushes(pushes) {}

    /// From now on `replies` replies are awaited, for `sink`, which must outlive the last of them.
    /// They go on an answer of which `before` is here already; the limits are those of all of it.
    /// Only when the replies awaited before are complete.
    void expect(int replies, ReplySink& sink, const ReplyProgress& before = {});

    /// Reads on. Returns what it did not read: what was not asked for, from the first byte behind
    /// the awaited replies that begins no push; and something after a problem.
    std::string_view read(std::string_view bytes);

    /// Of the answer that is, or was, awaited.
    const ReplyProgress& progress() const { return fAnswer; }
    /// Whether any byte of the awaited replies is there.
    bool hasBegun() const { return fAnswer.replies > fBefore || fMessage == Message::Reply; }
    /// Whether all awaited replies are there. Unspecified after a problem.
    bool isComplete() const { return fMissing == 0; }

    bool hasProblem() const { return !fProblem.text.empty(); }
    const ReplyProblem& problem() const { return fProblem; }

private:
    enum class Message
    {
        None,
        Reply,
        Push
    };

    enum class Awaited
    {
        Type,
        Line,
        Text,
        SkippedText
    };

    /// What has elements, while they arrive.
    struct Level
    {
        std::int64_t missing;
        int index;
        bool isAttribute;
        bool isSilent; ///< nobody is told
    };

    bool mayBegin(char type) const;
    void readOn(std::string_view& bytes);
    bool readWholeElement(std::string_view& bytes);
    void readType(std::string_view& bytes);
    void readLine(std::string_view& bytes);
    void readText(std::string_view& bytes);
    void skipText(std::string_view& bytes);

    void takeLine(std::string_view line);
    void takeBoolean(std::string_view line);
    void takeNumber(std::string_view line);
    void takeLength(std::string_view line);
    void takeText(std::string_view text);
    void beginText(std::size_t size);
    void beginElements(std::int64_t count);
    void beginLevel(std::int64_t elements);

    void hand(const ReplyPiece& piece);
    void handWhole(const ReplyPiece& piece);
    void endPiece();
    void endMessage();
    bool isKept(std::size_t size) const;
    void spend(std::size_t bytes);
    void spendSkipped(std::size_t bytes);

    bool isPush() const { return fMessage == Message::Push; }
    const ReplyProgress& progressOfMessage() const { return isPush() ? fPush : fAnswer; }
    ReplyProgress& progressOfMessage() { return isPush() ? fPush : fAnswer; }
    std::string nameOfMessage() const { return isPush() ? "a push" : "the reply"; }
    bool isSilent() const { return fDepth > 0 && fLevels[fDepth - 1].isSilent; }
    ReplySink* listener() const;
    ReplyPlace place() const;
    std::string nameOfPiece() const;
    void refuse(std::string text, std::string_view sent = {});
    void refuseLine(const char* what, std::string_view line);

    ReplySink* const fPushes;
    ReplySink* fSink = nullptr;
    int fBefore = 0; ///< replies of the answer that were here already
    int fMissing = 0;
    ReplyProgress fAnswer;
    ReplyProgress fPush;

    Gatherer fGatherer;
    Message fMessage = Message::None;
    Awaited fAwaited = Awaited::Type;
    char fType = 0;
    std::size_t fSize = 0;    ///< of the text that is awaited
    std::size_t fSkipped = 0; ///< of the text that is skipped; 0: none is
    std::size_t fToSkip = 0;
    std::int64_t fElements = 0;
    std::array<Level, ReplyLimits::fMaxDepth> fLevels{};
    int fDepth = 0;

    ReplyProblem fProblem;
};

} // namespace zo
