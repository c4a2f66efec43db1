#pragma once

#include "reply_sink.h"

#include <cstddef>
#include <exception>
#include <hiredis/read.h>
#include <memory>
#include <string_view>

/// Cuts the bytes of a connection into replies and hands their pieces to a sink, without
/// keeping any. Refuses what is malformed or too large as soon as it is announced; a reader that
/// has thrown is of no further use, nor is its connection.
class ReplyReader
{
public:
    static constexpr std::size_t fMaxValue = std::size_t{1} << 20;
    static constexpr std::size_t fMaxReply = std::size_t{64} << 20;
    static constexpr std::size_t fMaxLine = std::size_t{1} << 12;

    ReplyReader();

    /// From now on `replies` replies are awaited, for `sink`, which must outlive the last of them.
    void expect(int replies, ReplySink& sink);

    /// Reads on. Throws ZoError for bytes that are no reply, too large, or not asked for, and
    /// what the sink throws.
    void feed(std::string_view bytes);

    /// Whether all awaited replies are there.
    bool isComplete() const { return fMissing == 0; }

private:
    struct Free
    {
        void operator()(redisReader* reader) const { redisReaderFree(reader); }
    };
    struct Hooks;

    ReplyPlace placeOf(const redisReadTask* task) const;
    void readReplies();
    void checkUnfinished() const;
    void checkUnfinishedText(std::string_view rest) const;
    [[noreturn]] void refuseSize() const;

    std::unique_ptr<redisReader, Free> fReader;
    ReplySink* fSink = nullptr;
    std::exception_ptr fProblem;
    std::size_t fBytes = 0;
    int fReply = 0;
    int fMissing = 0;
};
