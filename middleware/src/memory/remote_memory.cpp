// SPDX-License-Identifier: MIT
#include "memory/remote_memory.h"

#include "memory/key_text.h"
#include "memory/memory_methods.h"
#include "memory/names_walk.h"
#include "memory/store_request.h"
#include "wire/request.h"
#include "wire/server_error.h"
#include "wire/status_sink.h"

#include <utility>

namespace zo {

RemoteMemory::RemoteMemory(std::shared_ptr<Link> link, std::shared_ptr<ForbiddenKeys> forbidden)
    : fLink(std::move(link)), fForbidden(std::move(forbidden))
{
}

ZoValue RemoteMemory::values(const ZoValue& request)
{
    const int connection = fLink->connections();
    const auto list = encoded(request, connection);
    const Deadline deadline = fLink->deadlineFor(list->count());
    const auto sink = fetch(list, ZoValue::Elements(list->count()), deadline);
    if (sink->refusals().empty())
        return ZoValue::fromElements(sink->takeValues());
    return ZoValue::fromElements(askKeyByKey(*list, *sink, connection, deadline));
}

// Polls ask for the same keys again and again: one comparing pass spares the encoding.
std::shared_ptr<const ListRequest> RemoteMemory::encoded(const ZoValue& request, int connection)
{
    const auto forbidden = fForbidden->known(connection, SteadyClock::now());
    std::shared_ptr<const ListRequest> last;
    {
        const std::lock_guard<std::mutex> lock(fMutex);
        last = fLast;
    }
    if (last && last->isFor(request, forbidden.get()))
        return last;
    auto fresh = std::make_shared<const ListRequest>(request, forbidden);
    const std::lock_guard<std::mutex> lock(fMutex);
    fLast = fresh;
    return fresh;
}

std::shared_ptr<ValuesSink> RemoteMemory::fetch(const std::shared_ptr<const ListRequest>& request,
                                                ZoValue::Elements values, const Deadline& deadline)
{
    auto sink = std::make_shared<ValuesSink>(request, std::move(values));
    if (request->replies() > 0)
        fLink->run(std::make_shared<Exchange>("MGET", request->bytes(), request->replies(), sink,
                                              deadline));
    for (const ValuesSink::Refusal& refusal : sink->refusals()) {
        if (!isKeyForbidden(refusal.text))
            throw fLink->refusal("MGET", refusal.text);
    }
    return sink;
}

// One forbidden key refuses its whole chunk: each of that chunk's keys is asked alone, once.
ZoValue::Elements RemoteMemory::askKeyByKey(const ListRequest& request, ValuesSink& refused,
                                            int connection, const Deadline& deadline)
{
    std::vector<int> chunks;
    for (const ValuesSink::Refusal& refusal : refused.refusals())
        chunks.push_back(refusal.reply);
    const auto single = std::make_shared<const ListRequest>(request, chunks);
    const auto sink = fetch(single, refused.takeValues(), deadline);
    std::vector<std::string> forbidden;
    for (const ValuesSink::Refusal& refusal : sink->refusals())
        forbidden.push_back(single->key(single->position(refusal.reply, 0)));
    fForbidden->add(forbidden, connection, SteadyClock::now());
    return sink->takeValues();
}

ZoValue RemoteMemory::names()
{
    return namesOf(*fLink);
}

void RemoteMemory::store(const std::string& key, const std::string& text)
{
    checkStorable(key, text);
    send("SET " + quotedKey(key), sharedText(encodeCommand({"SET", key, text})), 1, 1);
}

void RemoteMemory::storeAll(const ZoValue& pairs)
{
    const StoreRequest request = encodeStoreRequest(pairs);
    if (request.commands > 0)
        send("MSET", request.bytes, request.commands, request.pairs);
}

ZoError RemoteMemory::error(const std::string& problem) const
{
    return fLink->error(std::string(memoryModuleName) + " " + problem);
}

void RemoteMemory::send(const std::string& what, SharedText commands, int replies, int keys)
{
    const auto sink = std::make_shared<StatusSink>(what);
    fLink->run(std::make_shared<Exchange>(what, std::move(commands), replies, sink,
                                          fLink->deadlineFor(keys)));
    for (const StatusSink::Answer& answer : sink->answers()) {
        if (answer.isError)
            throw fLink->refusal(what, answer.text);
    }
}

} // namespace zo
