// SPDX-License-Identifier: MIT
#include "memory/remote_memory.h"

#include "link/redirection.h"
#include "memory/behind_asking.h"
#include "memory/exchange_sink.h"
#include "memory/key_text.h"
#include "memory/memory_methods.h"
#include "memory/names_walk.h"
#include "memory/store_request.h"
#include "wire/request.h"
#include "wire/server_error.h"
#include "wire/status_sink.h"

#include <algorithm>
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

/// `request`, to be sent to the node that its key is moving to.
StoreRequest atImporter(const StoreRequest& request)
{
    std::string bytes;
    appendAsking(bytes);
    bytes += *request.bytes;
    const std::vector<RequestPart> whole = {{bytes.size(), BehindAsking::fRepliesPerCommand}};
    return {sharedText(std::move(bytes)), std::make_shared<const std::vector<RequestPart>>(whole),
            request.keys};
}

/// An error that says where keys have moved which `asked` has not got; empty: there is none.
std::string whereKeysMove(const ValuesSink& asked)
{
    const auto& all = asked.refusals();
    const auto found = std::find_if(all.begin(), all.end(), [](const ValuesSink::Refusal& refusal) {
        return isMoving(refusal.text);
    });
    return found == all.end() ? std::string() : found->text;
}

} // namespace

RemoteMemory::RemoteMemory(std::shared_ptr<RobotLink> robot)
    : fRobot(std::move(robot)), fLink(fRobot->link), fFollowing(fRobot->following.get())
{
}

ZoListAnswer RemoteMemory::answerOf(const Fetched& fetched)
{
    return {
        ZoValue::fromElements(fetched.sink->takeValues()), fetched.arrived, {}, fetched.tooLarge};
}

ZoListAnswer RemoteMemory::values(const ZoValue& request)
{
    fRobot->detour.tidy(SteadyClock::now());
    if (!fFollowing)
        return answerOf(read(request));
    try {
        return fFollowing->values(fLink, this, request);
    } catch (const ServerRefusal&) {
        return readBesideFollowing(request);
    }
}

// What is followed was read before: from now on it has to be newer than this.
ZoListAnswer RemoteMemory::readBesideFollowing(const ZoValue& request)
{
    const std::uint64_t number = fFollowing->writes({});
    const Fetched fetched = read(request);
    fFollowing->wrote({}, {number, fetched.sent});
    return answerOf(fetched);
}

RemoteMemory::Fetched RemoteMemory::read(const ZoValue& request)
{
    const int connection = fLink.connections();
    const auto list = encoded(request, connection);
    const Deadline deadline = fLink.deadlineFor(list->count());
    Fetched fetched = fetchOrLate(list, deadline);
    if (fetched.sink->refusals().empty())
        return fetched;
    return askKeyByKey(*list, fetched, connection, deadline);
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
    return Fetched{last.sink, arrived, 0, last.sink->tooLarge()};
}

RemoteMemory::Fetched RemoteMemory::fetch(const std::shared_ptr<ValuesSink>& sink,
                                          const Deadline& deadline)
{
    const ListRequest& request = *sink->request();
    if (request.replies() == 0)
        return {sink, SteadyClock::now(), 0, 0};
    const auto call =
        std::make_shared<Call>("MGET", request.bytes(), request.parts(), sink, deadline);
    fLink.run(call);
    for (const ValuesSink::Refusal& refusal : sink->refusals()) {
        if (!isKeyForbidden(refusal.text) && !isMoving(refusal.text))
            throw fLink.refusal("MGET", refusal.text);
    }
    return {sink, call->endedAt(), call->sent().last, sink->tooLarge()};
}

// One key that is forbidden, or has moved, refuses its whole chunk: each of that chunk's keys is
// asked alone, once.
RemoteMemory::Fetched RemoteMemory::askKeyByKey(const ListRequest& request, const Fetched& refused,
                                                int connection, const Deadline& deadline)
{
    std::vector<int> chunks;
    for (const ValuesSink::Refusal& refusal : refused.sink->refusals())
        chunks.push_back(refusal.reply);
    const auto single = std::make_shared<const ListRequest>(request, chunks);
    Fetched fetched =
        fetch(std::make_shared<ValuesSink>(single, refused.sink->takeValues()), deadline);
    fetched.tooLarge += refused.tooLarge;
    std::vector<std::string> forbidden;
    std::vector<int> moved;
    for (const ValuesSink::Refusal& refusal : fetched.sink->refusals()) {
        if (isMoving(refusal.text))
            moved.push_back(refusal.reply);
        else
            forbidden.push_back(single->key(single->position(refusal.reply, 0)));
    }
    fRobot->forbidden.add(forbidden, connection, SteadyClock::now());
    return moved.empty() ? fetched : askImporter(*single, fetched, moved, deadline);
}

/// The same for the keys of `replies`, which are where they move to, or nowhere.
RemoteMemory::Fetched RemoteMemory::askImporter(const ListRequest& request, const Fetched& asked,
                                                const std::vector<int>& replies,
                                                const Deadline& deadline)
{
    const auto moved =
        std::make_shared<const ListRequest>(request, replies, ListRequest::At::Importer);
    const auto values = std::make_shared<ValuesSink>(moved, asked.sink->takeValues());
    const auto call = runAtImporter("MGET", whereKeysMove(*asked.sink), moved->bytes(),
                                    moved->parts(), values, deadline);
    for (const ValuesSink::Refusal& refusal : values->refusals()) {
        if (!isKeyForbidden(refusal.text))
            throw fLink.refusal("MGET", refusal.text);
    }
    return {values, call->endedAt(), asked.sent, asked.tooLarge + values->tooLarge()};
}

/// Runs commands that have ASKING before them at the node that `error` names. To connect and log in
/// there it has no more time than any call to its first byte.
std::shared_ptr<Call> RemoteMemory::runAtImporter(const std::string& name, const std::string& error,
                                                  const SharedText& bytes,
                                                  const Inquiry::Parts& parts,
                                                  const std::shared_ptr<ReplySink>& sink,
                                                  const Deadline& deadline)
{
    const auto settings = fLink.settings();
    const NodePtr here = fLink.node();
    const auto there = readRedirection(error, here ? here->host : settings->peer.host()).node;
    if (!there || !settings->options.socketPath.empty()) // a tunnel leads to one node only
        throw fLink.refusal(name, error);
    const auto patience = settings->options.exchangeTimeout + 4 * fLink.pulse().roundTrip();
    const auto link =
        fRobot->detour.to(*there, *settings, std::min(deadline.at, SteadyClock::now() + patience));
    const auto behind = std::make_shared<BehindAsking>(sink);
    const auto call = std::make_shared<SideCall>(name, bytes, parts, behind, deadline);
    link->run(call);
    if (!behind->refusal().empty())
        throw link->refusal("ASKING", behind->refusal());
    return call;
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
    const Deadline deadline = fLink.deadlineFor(static_cast<int>(request.keys.size()));
    const auto watch = std::make_shared<AskWatch>(sink);
    const auto call =
        std::make_shared<SideCall>(what, request.bytes, request.parts, watch, deadline);
    ++fRobot->writes;
    const std::uint64_t number = fFollowing ? fFollowing->writes(request.keys) : 0;
    fLink.run(call);
    if (!watch->error().empty())
        writeAtImporter(what, request, watch->error(), sink, deadline);
    if (fFollowing)
        fFollowing->wrote(request.keys, {number, call->sent().last});
}

// Several keys are not written one by one: those who read them together would see a part.
void RemoteMemory::writeAtImporter(const std::string& what, const StoreRequest& request,
                                   const std::string& error, const std::shared_ptr<ReplySink>& sink,
                                   const Deadline& deadline)
{
    if (request.keys.size() > 1)
        throw fLink.refusal(what, error);
    const StoreRequest moved = atImporter(request);
    runAtImporter(what, error, moved.bytes, moved.parts, sink, deadline);
}

} // namespace zo
