#include "reply_reader.h"

#include <zo/error.h>

#include <algorithm>
#include <charconv>
#include <new>
#include <string>

namespace {

// The parser copies what it is fed and moves what is left after each reply: with small blocks
// that stays inside the processor's cache.
constexpr std::size_t feedBlock = std::size_t{16} << 10;
constexpr std::size_t longestLengthLine = 24;

int depthOf(const redisReadTask* task)
{
    int depth = 0;
    while ((task = task->parent))
        ++depth;
    return depth;
}

} // namespace

/// What the C parser calls. Nothing may be thrown through it: a problem is kept for `feed`.
struct ReplyReader::Hooks
{
    template <class Take>
    static void* guarded(const redisReadTask* task, Take take)
    {
        auto& reader = *static_cast<ReplyReader*>(task->privdata);
        try {
            take(*reader.fSink, reader.placeOf(task));
            return &reader;
        } catch (...) {
            reader.fProblem = std::current_exception();
            return nullptr;
        }
    }

    static void* text(const redisReadTask* task, char* bytes, std::size_t size)
    {
        return guarded(task, [=](ReplySink& sink, const ReplyPlace& place) {
            if (bytes[size] != '\r' || bytes[size + 1] != '\n')
                throw ZoError("malformed reply: a text is longer than announced");
            if (task->type == REDIS_REPLY_ERROR)
                sink.takeError(place, {bytes, size});
            else
                sink.takeText(place, {bytes, size});
        });
    }

    static void* array(const redisReadTask* task, int size)
    {
        return guarded(
            task, [=](ReplySink& sink, const ReplyPlace& place) { sink.takeArray(place, size); });
    }

    static void* integer(const redisReadTask* task, long long number)
    {
        return guarded(task, [=](ReplySink& sink, const ReplyPlace& place) {
            sink.takeInteger(place, number);
        });
    }

    static void* nil(const redisReadTask* task)
    {
        return guarded(task, [](ReplySink& sink, const ReplyPlace& place) { sink.takeNil(place); });
    }

    static redisReplyObjectFunctions fTable;
};

redisReplyObjectFunctions ReplyReader::Hooks::fTable = {&Hooks::text, &Hooks::array,
                                                        &Hooks::integer, &Hooks::nil, nullptr};

ReplyReader::ReplyReader() : fReader(redisReaderCreateWithFunctions(&Hooks::fTable))
{
    if (!fReader)
        throw std::bad_alloc();
    fReader->privdata = this;
    fReader->maxbuf = 0; // keep the buffer: it is needed again at the next poll
}

ReplyPlace ReplyReader::placeOf(const redisReadTask* task) const
{
    return {fReply, depthOf(task), std::max(task->idx, 0)};
}

void ReplyReader::expect(int replies, ReplySink& sink)
{
    fSink = &sink;
    fBytes = 0;
    fReply = 0;
    fMissing = replies;
}

void ReplyReader::feed(std::string_view bytes)
{
    fBytes += bytes.size();
    if (fBytes > fMaxReply && fMissing > 0)
        throw ZoError("the reply is larger than " + std::to_string(fMaxReply >> 20) + " MiB");
    while (!bytes.empty()) {
        const std::string_view block = bytes.substr(0, feedBlock);
        bytes.remove_prefix(block.size());
        if (redisReaderFeed(fReader.get(), block.data(), block.size()) != REDIS_OK)
            throw std::bad_alloc();
        readReplies();
    }
}

void ReplyReader::readReplies()
{
    while (fMissing > 0) {
        void* reply = nullptr;
        const int result = redisReaderGetReply(fReader.get(), &reply);
        if (fProblem)
            std::rethrow_exception(fProblem);
        if (result != REDIS_OK)
            throw ZoError("malformed reply: " + std::string(fReader->errstr));
        if (!reply) {
            checkUnfinished();
            return;
        }
        ++fReply;
        --fMissing;
    }
    if (fReader->len > fReader->pos)
        throw ZoError("malformed reply: more than was asked for");
}

void ReplyReader::checkUnfinished() const
{
    if (fReader->ridx < 0)
        return;
    const std::string_view rest(fReader->buf + fReader->pos, fReader->len - fReader->pos);
    if (fReader->rstack[fReader->ridx].type == REDIS_REPLY_STRING)
        checkUnfinishedText(rest);
    else if (rest.size() > fMaxLine)
        throw ZoError("malformed reply: a line without end");
}

// `rest` begins with the announced length. The parser would gather so many bytes first.
void ReplyReader::checkUnfinishedText(std::string_view rest) const
{
    std::size_t size = 0;
    const auto parsed = std::from_chars(rest.data(), rest.data() + rest.size(), size);
    if (parsed.ec == std::errc::result_out_of_range || size > fMaxValue)
        refuseSize();
    if (rest.size() > longestLengthLine &&
        rest.substr(0, longestLengthLine).find('\r') == std::string_view::npos)
        throw ZoError("malformed reply: a length without end");
}

void ReplyReader::refuseSize() const
{
    const ReplyPlace place = placeOf(&fReader->rstack[fReader->ridx]);
    throw ZoError(fSink->nameOf(place) + " is larger than " + std::to_string(fMaxValue >> 20) +
                  " MiB");
}
