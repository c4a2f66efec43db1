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

RemoteMemory::RemoteMemory(std::shared_ptr<RobotLink> robot)
    : fRobot(std::move(robot)), fLink(fRobot->link), fFollowing(fRobot->following.get())
{
}

ZoListAnswer RemoteMemory::values(const ZoValue& request)
{
    if (fFollowing)
        return fFollowing->values(fLink, this, request);
    const int connection = fLink.connections();
    const auto list = encoded(request, connection);
    const Deadline deadline = fLink.deadlineFor(list->count());
    Fetched fetched = fetch(list, ZoValue::Elements(list->count()), deadline);
    if (!fetched.sink->refusals().empty())
        fetched = askKeyByKey(*list, *fetched.sink, connection, deadline);
    return {ZoValue::fromElements(fetched.sink->takeValues()), fetched.arrived, {}};
}

// Polls ask for the same keys again and again: one comparing pass spares the encoding.
std::shared_ptr<const ListRequest> RemoteMemory::encoded(const ZoValue& request, int connection)
{
    const auto forbidden = fRobot->forbidden.known(connection, SteadyClock::now());
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

RemoteMemory::Fetched RemoteMemory::fetch(const std::shared_ptr<const ListRequest>& request,
                                          ZoValue::Elements values, const Deadline& deadline)
{
    auto sink = std::make_shared<ValuesSink>(request, std::move(values));
    if (request->replies() == 0)
        return {sink, SteadyClock::now()};
    const auto call =
        std::make_shared<Call>("MGET", request->bytes(), request->parts(), sink, deadline);
    fLink.run(call);
    for (const ValuesSink::Refusal& refusal : sink->refusals()) {
        if (!isKeyForbidden(refusal.text))
            throw fLink.refusal("MGET", refusal.text);
    }
    return {sink, call->endedAt()};
}

// One forbidden key refuses its whole chunk: each of that chunk's keys is asked alone, once.
RemoteMemory::Fetched RemoteMemory::askKeyByKey(const ListRequest& request, ValuesSink& refused,
                                                int connection, const Deadline& deadline)
{
    std::vector<int> chunks;
    for (const ValuesSink::Refusal& refusal : refused.refusals())
        chunks.push_back(refusal.reply);
    const auto single = std::make_shared<const ListRequest>(request, chunks);
    Fetched fetched = fetch(single, refused.takeValues(), deadline);
    std::vector<std::string> forbidden;
    for (const ValuesSink::Refusal& refusal : fetched.sink->refusals())
        forbidden.push_back(single->key(single->position(refusal.reply, 0)));
    fRobot->forbidden.add(forbidden, connection, SteadyClock::now());
    return fetched;
}

ZoValue RemoteMemory::names()
{
    return namesOf(fLink);
}

void RemoteMemory::store(const std::string& key, const std::string& text)
{
    checkStorable(key, text);
    const auto bytes = sharedText(encodeCommand({"SET", key, text}));
    const std::vector<RequestPart> whole = {{bytes->size(), 1}};
    send("SET " + quotedKey(key),
         {bytes, std::make_shared<const std::vector<RequestPart>>(whole), {key}});
}

void RemoteMemory::storeAll(const ZoValue& pairs)
{
    const StoreRequest request = encodeStoreRequest(pairs);
    if (!request.keys.empty())
        send("MSET", request);
}

ZoError RemoteMemory::error(const std::string& problem) const
{
    return fLink.error(std::string(memoryModuleName) + " " + problem);
}

// One whose end nobody knows is never over for those that follow its keys: they ask for them.
void RemoteMemory::send(const std::string& what, const StoreRequest& request)
{
    fLink.throwIfDown(); // before those who follow the keys are told of a write
    const auto sink = std::make_shared<StatusSink>(what);
    const auto call =
        std::make_shared<Call>(what, request.bytes, request.parts, sink,
                               fLink.deadlineFor(static_cast<int>(request.keys.size())));
    const std::uint64_t number = fFollowing ? fFollowing->writes(request.keys) : 0;
    fLink.run(call);
    if (fFollowing)
        fFollowing->wrote(request.keys, {number, call->sent().last});
    for (const StatusSink::Answer& answer : sink->answers()) {
        if (answer.isError)
            throw fLink.refusal(what, answer.text);
    }
}

} // namespace zo
