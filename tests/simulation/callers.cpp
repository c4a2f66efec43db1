// SPDX-License-Identifier: MIT
#include "simulation/callers.h"

#include "simulation/violation.h"

#include <memory/key_prefix.h>
#include <memory/store_request.h>
#include <zo/error.h>

#include <algorithm>
#include <set>
#include <utility>

using namespace zo;

namespace {

using std::chrono::milliseconds;

constexpr std::int64_t bytesPerCall = 4096;
constexpr std::int64_t bytesPerKey = 256;

/// Of a key that the robot has, or, below 0, of one so long that it has not.
std::string nameOf(int key)
{
    return key < 0 ? std::string(static_cast<std::size_t>(-key), 'n') : keyName(key);
}

ZoValue requestOf(const std::vector<int>& keys)
{
    ZoValue::Elements request;
    request.reserve(keys.size());
    for (const int key : keys)
        request.push_back(ZoValue::fromElements({ZoValue(nameOf(key)), ZoValue(0)}));
    return ZoValue::fromElements(std::move(request));
}

std::shared_ptr<const ForbiddenKeys::Set> noneForbidden()
{
    static const auto none = std::make_shared<const ForbiddenKeys::Set>();
    return none;
}

/// What the caller hears who waits for the end of `exchange`, which has come: the problem, if any.
std::string told(zo::Call& exchange)
{
    try {
        return exchange.waitUntilDone({}) ? "" : "nothing";
    } catch (const ZoError& error) {
        return error.toString();
    }
}

} // namespace

std::shared_ptr<zo::Call> Callers::make(const LinkSettings& settings, bool isLate)
{
    fSettings = &settings;
    fPrefix = settings.options.prefix;
    fIsLate = isLate;
    Call call;
    call.begin = fAgenda.now();
    const int kind = fRandom.between(1, 100);
    const int lastOfValues = fWantsMuch ? 50 : 72;
    if (kind <= lastOfValues)
        askForValues(call);
    else if (kind <= 80 && !fWantsMuch)
        askForNames(call);
    else
        storeValues(call);
    fWantsMuch = false;
    require(told(*call.exchange) == "nothing", "a caller is told nothing before the end",
            [&] { return call.exchange->name(); });
    fCalls.push_back(call);
    fAll.push_back(call.exchange);
    return call.exchange;
}

void Callers::make(Call& call, const char* name, SharedText bytes, Inquiry::Parts parts,
                   std::shared_ptr<ReplySink> sink, int keys)
{
    const ZoBrokerOptions& options = fSettings->options;
    auto allowed =
        std::chrono::microseconds(std::max(options.callTimeout, options.exchangeTimeout)) +
        options.timeoutPerKey * keys;
    if (fIsInHurry && fRandom.chance(3))
        allowed = milliseconds(fRandom.between(1, 20));
    const Time start = fIsLate ? fAgenda.now() - 2 * allowed : fAgenda.now();
    call.exchange = std::make_shared<zo::Call>(name, std::move(bytes), std::move(parts),
                                               std::move(sink), Deadline::after(start, allowed));
}

void Callers::askForValues(Call& call)
{
    if (!fLast || fWantsMuch || fRandom.chance(20)) {
        const auto keys = someKeys(fWantsMuch || fRandom.chance(2));
        fLast = std::make_shared<const ListRequest>(requestOf(keys), noneForbidden(), fPrefix);
    }
    call.list = fLast;
    if (fLast->count() > 100) {
        fLast.reset(); // once is enough
    } else if (fRandom.chance(5)) {
        call.list = std::make_shared<const ListRequest>(*fLast, std::vector<int>{0}); // key by key
    }
    call.values = std::make_shared<ValuesSink>(call.list, ZoValue::Elements(call.list->count()));
    make(call, "MGET", call.list->bytes(), call.list->parts(), call.values, call.list->count());
}

/// Many of them may take more than a slice, and more than may go out unanswered.
std::vector<int> Callers::someKeys(bool areMany)
{
    const int count = areMany ? fRandom.between(990, 2100) : fRandom.between(1, 6);
    const bool areLong = fWantsMuch || (areMany && fRandom.chance(30));
    std::vector<int> keys;
    keys.reserve(count);
    for (int i = 0; i < count; ++i) {
        const bool isLong = areLong && fRandom.chance(30);
        keys.push_back(isLong ? -fRandom.between(100, 1000)
                              : static_cast<int>(fRandom.below(fMemory.keys())));
    }
    return keys;
}

void Callers::askForNames(Call& call)
{
    if (const auto slot = fSettings->slot())
        return askForNamesInSlot(call, *slot);
    const SharedText bytes = sharedText(encodeScan("0", 1000, "string", patternOf(fPrefix, "")));
    const auto parts = std::make_shared<const std::vector<RequestPart>>(
        std::vector<RequestPart>{{bytes->size(), 1}});
    call.names = std::make_shared<NamesSink>();
    make(call, "SCAN", bytes, parts, call.names, fMemory.keys());
}

void Callers::askForNamesInSlot(Call& call, int slot)
{
    const SharedText bytes = sharedText(encodeKeysInSlot(slot, fPrefix));
    const auto parts = std::make_shared<const std::vector<RequestPart>>(
        std::vector<RequestPart>{{bytes->size(), 2}});
    call.namesInSlot = std::make_shared<SlotNamesSink>();
    make(call, "CLUSTER GETKEYSINSLOT", bytes, parts, call.namesInSlot, fMemory.keys());
}

void Callers::storeValues(Call& call)
{
    ZoValue::Elements pairs;
    for (int i = fRandom.between(1, 3); i > 0; --i) {
        const int key = static_cast<int>(fRandom.below(fMemory.keys()));
        call.store.push_back(makeValueId(key, ++fVersions));
        pairs.push_back(
            ZoValue::fromElements({ZoValue(keyName(key)), robotValue(call.store.back())}));
    }
    // A large text, which takes several slices, beside them.
    if (fWantsMuch || fRandom.chance(4))
        pairs.push_back(ZoValue::fromElements(
            {ZoValue("Camera/Picture"),
             ZoValue(std::string(static_cast<std::size_t>(fRandom.between(64000, 200000)), 'p'))}));
    const StoreRequest request =
        encodeStoreRequest(ZoValue::fromElements(std::move(pairs)), fPrefix);
    call.stored = std::make_shared<StatusSink>("MSET");
    make(call, "MSET", request.bytes, request.parts, call.stored,
         static_cast<int>(request.keys.size()));
}

std::shared_ptr<zo::Call> Callers::giveUp()
{
    if (fCalls.empty())
        return nullptr;
    const std::size_t which = fRandom.below(fCalls.size());
    auto exchange = fCalls[which].exchange;
    fCalls.erase(fCalls.begin() + static_cast<std::ptrdiff_t>(which));
    return exchange;
}

void Callers::end(const LinkAction::End& end)
{
    const auto found = std::find_if(fCalls.begin(), fCalls.end(), [&](const Call& call) {
        return call.exchange == end.exchange;
    });
    require(found != fCalls.end(), "a call ends once", [&] { return end.exchange->name(); });
    const Call call = std::move(*found);
    fCalls.erase(found);
    require(told(*call.exchange) == (end.problem ? *end.problem : ""),
            "a caller is told how its call ended", [&] { return told(*call.exchange); });
    if (!end.problem) {
        ++fAnswered;
        fAnsweredForKeys += call.names ? 0 : 1;
        checkAnswer(call);
    }
    checkStore(call, !end.problem, end.problem);
}

void Callers::checkAnswer(const Call& call) const
{
    if (call.values)
        checkValues(call);
    else if (call.namesInSlot)
        checkNamesInSlot(call);
    else if (call.names && call.names->refusal().empty()) {
        require(call.names->cursor() == "0", "a list of names has its end", [] { return "SCAN"; });
        checkNames(call.names->names());
    }
}

void Callers::checkValues(const Call& call) const
{
    if (!call.values->refusals().empty())
        return;
    const auto values = call.values->takeValues();
    for (int i = 0; i < call.list->count(); ++i) {
        const int key = keyNumber(call.list->key(i));
        const ValueId id = valueIdOf(values[static_cast<std::size_t>(i)]);
        require(key < 0 ? id == noValue : fMemory.hasHeld(key, id, call.begin),
                "a value was the robot's during the call", [&] {
                    return call.list->key(i) + " is said to be " +
                           values[static_cast<std::size_t>(i)].toString(ZoBrief);
                });
    }
}

void Callers::checkNames(const std::vector<std::string>& names) const
{
    const std::set<std::string> unique(names.begin(), names.end());
    require(unique.size() == names.size(), "names come once", [] { return "SCAN"; });
    for (const std::string& name : names) {
        const bool isOwn = name.substr(0, fPrefix.size()) == fPrefix;
        const int key = isOwn ? keyNumber(name.substr(fPrefix.size())) : -1;
        require(key >= 0 && key < fMemory.keys(), "names are the robot's", [&] { return name; });
    }
}

/// One that is not refused has all of them: it comes from the node that does.
void Callers::checkNamesInSlot(const Call& call) const
{
    if (!call.namesInSlot->refusals().empty())
        return;
    const auto& names = call.namesInSlot->names();
    checkNames(names);
    const std::set<std::string> listed(names.begin(), names.end());
    for (int key = 0; key < fMemory.keys(); ++key) {
        std::string name = fPrefix + keyName(key);
        require(listed.count(name) == 1 || fMemory.hasHeld(key, noValue, call.begin),
                "a name that is not listed is not there", [&] { return name; });
    }
}

/// What was not sent is never stored, what was answered is, and nothing twice.
void Callers::checkStore(const Call& call, bool isAnswered, const SharedText& problem) const
{
    if (!call.stored)
        return;
    const bool isSent = !problem || problem->find("was not sent") == std::string::npos;
    const bool isOk = isAnswered && !call.stored->answers().front().isError;
    require(!isAnswered || call.stored->answers().size() == 1, "each command has its reply",
            [&] { return std::to_string(call.stored->answers().size()); });
    for (const ValueId id : call.store) {
        const int writes = fMemory.writes(static_cast<int>(id / 1000000) - 1, id, call.begin);
        require(writes <= (isSent ? 1 : 0) && (!isOk || writes == 1), "a value is stored once",
                [&] { return std::to_string(writes) + " times " + robotText(id); });
    }
}

void Callers::checkDeadlines(Time awake) const
{
    for (const Call& call : fCalls)
        require(call.begin >= awake || call.exchange->deadline().at > awake,
                "a call ends by its deadline", [&] { return call.exchange->name(); });
}

void Callers::checkEnd()
{
    require(fCalls.empty(), "every call ends", [&] { return fCalls.front().exchange->name(); });
    for (const auto& call : fAll)
        require(call.expired(), "nothing keeps a call that has ended",
                [&] { return call.lock()->name(); });
}

std::int64_t Callers::allowance() const
{
    std::int64_t bytes = 0;
    for (const Call& call : fCalls)
        bytes += bytesPerCall + (call.list ? bytesPerKey * call.list->count() : 0);
    return bytes;
}
