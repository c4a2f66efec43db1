// SPDX-License-Identifier: MIT
#include "memory/remote_memory.h"

#include "memory/exchange_sink.h"
#include "memory/key_text.h"
#include "memory/memory_methods.h"
#include "memory/names_walk.h"
#include "memory/store_request.h"
#include "wire/request.h"
#include "wire/server_error.h"
#include "wire/status_sink.h"

#include <utility>

namespace zo {

namespace {

/// A command that stores `text` under `key` behind `prefix`.
StoreRequest storing(const std::string& command, const std::string& prefix, const std::string& key,
                     const std::string& text)
{
    checkStorable(prefix, key, text);
    const auto bytes = sharedText(encodeCommand({command, prefix + key, text}));
    const std::vector<RequestPart> whole = {{bytes->size(), 1}};
    return {bytes, std::make_shared<const std::vector<RequestPart>>(whole), {key}};
}

} // namespace

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
    Fetched fetched = fetchOrLate(list, deadline);
    int tooLarge = fetched.sink->tooLarge();
    if (!fetched.sink->refusals().empty()) {
        fetched = askKeyByKey(*list, *fetched.sink, connection, deadline);
        tooLarge += fetched.sink->tooLarge();
    }
    return {ZoValue::fromElements(fetched.sink->takeValues()), fetched.arrived, {}, tooLarge};
}

// Polls ask for the same keys again and again: one comparing pass spares the encoding.
RemoteMemory::ListRequestPtr RemoteMemory::encoded(const ZoValue& request, int connection)
{
    const auto forbidden = fRobot->forbidden.known(connection, SteadyClock::now());
    std::shared_ptr<const ListRequest> last;
    {
        const std::lock_guard<std::mutex> lock(fMutex);
        last = fLast;
    }
    if (last && last->isFor(request, forbidden.get()))
        return last;
    auto fresh = std::make_shared<const ListRequest>(request, forbidden, fRobot->prefix);
    const std::lock_guard<std::mutex> lock(fMutex);
    fLast = fresh;
    return fresh;
}

// What takes longer than a call may wait comes to the next one: or else there were never any
// values.
RemoteMemory::Fetched RemoteMemory::fetchOrLate(const ListRequestPtr& request,
                                                const Deadline& deadline)
{
    fLink.throwIfDown();
    if (auto fetched = late(request, deadline, {}))
        return *fetched;
    const auto sink = std::make_shared<ValuesSink>(request, ZoValue::Elements(request->count()));
    const std::uint64_t writes = fRobot->writes;
    try {
        return fetch(sink, deadline);
    } catch (const ZoError&) {
        const auto fetched = late(request, deadline, {sink, writes});
        if (fetched && fLink.isUp())
            return *fetched;
        throw;
    }
}

/// The answer to an earlier call for the same, if it has come since, not long before this call
/// began, and nothing was written behind it. `next` takes its place.
std::optional<RemoteMemory::Fetched> RemoteMemory::late(const ListRequestPtr& request,
                                                        const Deadline& deadline, Late next)
{
    const std::lock_guard<std::mutex> lock(fMutex);
    if (!next.sink && fLate.sink && fLate.sink->wholeAt() == SteadyClock::time_point::max())
        return {}; // it may still come
    const Late last = std::exchange(fLate, std::move(next));
    if (!last.sink || last.sink->request() != request || last.writes != fRobot->writes)
        return {};
    const auto arrived = last.sink->wholeAt();
    const bool isWhole = arrived != SteadyClock::time_point::max();
    if (!isWhole || arrived < deadline.at - 2 * deadline.allowed || !last.sink->refusals().empty())
        return {};
    return Fetched{last.sink, arrived};
}

RemoteMemory::Fetched RemoteMemory::fetch(const std::shared_ptr<ValuesSink>& sink,
                                          const Deadline& deadline)
{
    const ListRequest& request = *sink->request();
    if (request.replies() == 0)
        return {sink, SteadyClock::now()};
    const auto call =
        std::make_shared<Call>("MGET", request.bytes(), request.parts(), sink, deadline);
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
    Fetched fetched = fetch(std::make_shared<ValuesSink>(single, refused.takeValues()), deadline);
    std::vector<std::string> forbidden;
    for (const ValuesSink::Refusal& refusal : fetched.sink->refusals())
        forbidden.push_back(single->key(single->position(refusal.reply, 0)));
    fRobot->forbidden.add(forbidden, connection, SteadyClock::now());
    return fetched;
}

ZoValue RemoteMemory::names(const std::string& ending)
{
    return namesOf(fLink, ending);
}

void RemoteMemory::store(const std::string& key, const std::string& text)
{
    send("SET " + quotedKey(key), storing("SET", fRobot->prefix, key, text));
}

// GETSET is older than every other command that does this.
ZoValue RemoteMemory::exchange(const std::string& key, const std::string& text)
{
    const std::string what = "GETSET " + quotedKey(key);
    const auto sink = std::make_shared<ExchangeSink>(what);
    write(what, storing("GETSET", fRobot->prefix, key, text), sink);
    if (sink->refusal())
        throw fLink.refusal(what, *sink->refusal());
    return sink->value();
}

void RemoteMemory::storeAll(const ZoValue& pairs)
{
    const StoreRequest request = encodeStoreRequest(pairs, fRobot->prefix);
    if (!request.keys.empty())
        send("MSET", request);
}

ZoError RemoteMemory::error(const std::string& problem) const
{
    return fLink.error(std::string(memoryModuleName) + " " + problem);
}

void RemoteMemory::send(const std::string& what, const StoreRequest& request)
{
    const auto sink = std::make_shared<StatusSink>(what);
    write(what, request, sink);
    for (const StatusSink::Answer& answer : sink->answers()) {
        if (answer.isError)
            throw fLink.refusal(what, answer.text);
    }
}

// One whose end nobody knows is never over for those that follow its keys: they ask for them.
void RemoteMemory::write(const std::string& what, const StoreRequest& request,
                         const std::shared_ptr<ReplySink>& sink)
{
    if (fLink.settings()->options.replica)
        throw fLink.error("nothing can be written over a link that reads from replicas");
    fLink.throwIfDown(); // before those who follow the keys are told of a write
    const auto call =
        std::make_shared<SideCall>(what, request.bytes, request.parts, sink,
                                   fLink.deadlineFor(static_cast<int>(request.keys.size())));
    ++fRobot->writes;
    const std::uint64_t number = fFollowing ? fFollowing->writes(request.keys) : 0;
    fLink.run(call);
    if (fFollowing)
        fFollowing->wrote(request.keys, {number, call->sent().last});
}

} // namespace zo
