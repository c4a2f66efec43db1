// SPDX-License-Identifier: MIT
#include "link/owner_search.h"

#include "link/hash_slot.h"
#include "link/host_name.h"
#include "link/redirection.h"
#include "wire/request.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace zo {

namespace {

/// `node`, with the host of `at` where it has none of its own.
NodePtr resolved(const NodePtr& node, const ZoAddress& at)
{
    if (!node->host.empty())
        return node;
    return std::make_shared<const ZoAddress>(ZoAddress{at.host, node->port});
}

/// What `prefix` would be with a tag.
std::string tagged(std::string prefix)
{
    if (!prefix.empty() && prefix.back() == '/')
        prefix.pop_back();
    return "'{" + (prefix.empty() ? "robot7" : prefix) + "}/'";
}

} // namespace

OwnerSearch::OwnerSearch(std::shared_ptr<const LinkSettings> settings)
{
    fCandidates.reserve(1 + ZoAddress::fMostAddresses + 2 * ClusterSink::fMostNodes);
    use(std::move(settings));
}

void OwnerSearch::use(std::shared_ptr<const LinkSettings> settings)
{
    fSettings = std::move(settings);
    fSlot = fSettings->slot();
    fKnown.clear();
    fFirst.reset();
    fSilent.reset();
    fTurn = 0;
    fTimesDown = 0;
    fIsHeard = false;
    fIsInHurry = false;
    fLastHurry = Time::min();
    fIsAtReplica = false;
    fQuestion.reset();
    fCluster.reset();
}

// Whom a link was up with is asked first, once; the others have their turns.
const Nodes& OwnerSearch::begin()
{
    fHops = 0;
    fIsHeard = false;
    fIsShunned = fIsAtReplica && !fIsReached;
    fIsAtReplica = false;
    fIsReached = false;
    fCandidates.clear();
    const NodePtr first = std::exchange(fFirst, nullptr);
    if (first)
        addCandidate(first);
    for (const Nodes* const nodes : {&fSettings->nodes, &std::as_const(fKnown)}) {
        for (const NodePtr& node : *nodes)
            addCandidate(node);
    }
    const auto others = fCandidates.begin() + (first ? 1 : 0);
    if (const auto count = fCandidates.end() - others)
        std::rotate(others, others + static_cast<std::ptrdiff_t>(fTurn) % count, fCandidates.end());
    ++fTurn;
    ++fSinceSilent;
    putSilentLast();
    fCandidates.resize(std::min<std::size_t>(fCandidates.size(), ZoAddress::fMostAddresses));
    return fCandidates;
}

void OwnerSearch::putSilentLast()
{
    const auto found =
        std::find_if(fCandidates.begin(), fCandidates.end(),
                     [&](const NodePtr& one) { return fSilent && *one == *fSilent; });
    if (found != fCandidates.end())
        std::rotate(found, found + 1, fCandidates.end());
}

void OwnerSearch::fellSilent(const NodePtr& node)
{
    fFirst.reset();
    if (fSilent && *fSilent == *node)
        return;
    fSilent = node;
    fSinceSilent = 0;
}

const Nodes& OwnerSearch::beside(const ZoAddress& node)
{
    const auto isOut = [&](const NodePtr& one) { return fHops > 0 || *one == node; };
    fCandidates.erase(std::remove_if(fCandidates.begin(), fCandidates.end(), isOut),
                      fCandidates.end());
    fIsHeard = fIsHeard && !fCandidates.empty();
    return fCandidates;
}

void OwnerSearch::addCandidate(const NodePtr& node)
{
    const auto isSame = [&](const NodePtr& known) { return *known == *node; };
    if (std::none_of(fCandidates.begin(), fCandidates.end(), isSame))
        fCandidates.push_back(node);
}

// Which node serves a key, the node itself knows best, and everybody may ask who may read. The
// table tells of those that may be asked when this one is gone.
const OwnerSearch::Question* OwnerSearch::ask()
{
    fCluster.reset();
    fWords.reset();
    fKeySlot.reset();
    fQuestion.reset();
    if (fSettings->wouldScatter()) {
        fKeySlot = std::make_shared<SlotSink>(hashSlotOf(options().prefix));
        fQuestion = Question{"CLUSTER KEYSLOT",
                             encodeCommand({"CLUSTER", "KEYSLOT", options().prefix}), 1, fKeySlot};
    } else if (fSlot) {
        std::string bytes = options().replica ? encodeCommand({"READONLY"}) : std::string();
        appendCommand({"MGET", options().prefix}, bytes);
        appendCommand({"CLUSTER", "SLOTS"}, bytes);
        const int keyReply = options().replica ? 1 : 0;
        fCluster = std::make_shared<ClusterSink>(*fSlot, keyReply);
        fQuestion = Question{"CLUSTER SLOTS", std::move(bytes), keyReply + 2, fCluster};
    } else if (!options().sentinel.empty()) {
        const bool isSentinel = asksSentinel();
        const char* const name = isSentinel ? "SENTINEL" : "ROLE";
        fWords = std::make_shared<WordsSink>(name);
        fQuestion = Question{
            name,
            isSentinel ? encodeCommand({"SENTINEL", "GET-MASTER-ADDR-BY-NAME", options().sentinel})
                       : encodeCommand({"ROLE"}),
            1, fWords};
    }
    return fQuestion ? &*fQuestion : nullptr;
}

OwnerSearch::Lead OwnerSearch::judge(const NodePtr& node)
{
    if (!fQuestion)
        return {};
    if (fKeySlot)
        return leadOfSoleServer();
    fIsHeard = true;
    Lead lead = fCluster         ? leadOfCluster(*node)
                : asksSentinel() ? leadOfSentinel()
                                 : leadOfServer();
    ++fHops;
    return lead;
}

OwnerSearch::Lead OwnerSearch::leadOfSoleServer()
{
    if (!fKeySlot->isInCluster())
        return {};
    refusal({});
    return {nullptr, fReason, true};
}

OwnerSearch::Lead OwnerSearch::leadOfCluster(const ZoAddress& at)
{
    learn(at);
    fIsReached = fIsAtReplica;
    const Redirection away = readRedirection(fCluster->error(), at.host);
    if (away.kind == Redirection::Kind::ClusterDown) {
        fIsHeard = ++fTimesDown < fMostBriefWaits;
        return {nullptr, "not ready: " + fSettings->peer.quote(fCluster->error())};
    }
    if (away.kind == Redirection::Kind::Moved && !away.node)
        return {nullptr,
                "it names no node that could be one: " + fSettings->peer.quote(fCluster->error())};
    const bool isServed = away.kind != Redirection::Kind::Moved;
    if (NodePtr replica = chosenReplica(at)) {
        fIsAtReplica = true;
        return goOn(std::move(replica));
    }
    return isServed ? Lead() : goOn(std::make_shared<const ZoAddress>(*away.node));
}

/// Some nodes of the cluster, for the time when this one is gone.
void OwnerSearch::learn(const ZoAddress& at)
{
    if (!fCluster->hasTable())
        return;
    fKnown.clear();
    for (const Nodes* const nodes : {&fCluster->owners(), &fCluster->others()}) {
        for (const NodePtr& node : *nodes)
            fKnown.push_back(resolved(node, at));
    }
}

/// One that is to be read in place of the first owner; null: none.
NodePtr OwnerSearch::chosenReplica(const ZoAddress& at) const
{
    const Nodes& owners = fCluster->owners();
    if (!options().replica || fIsShunned || fIsAtReplica || owners.size() < 2)
        return nullptr;
    return resolved(owners[1 + fTurn % (owners.size() - 1)], at);
}

OwnerSearch::Lead OwnerSearch::leadOfSentinel() const
{
    if (!fWords->error().empty())
        return {nullptr, "is no sentinel: " + fSettings->peer.quote(fWords->error())};
    const auto& words = fWords->words();
    if (words.size() < 2)
        return {nullptr, "this sentinel knows no server called \"" +
                             fSettings->peer.quote(options().sentinel) + '"'};
    const Redirection told = readRedirection("MOVED 0 " + words[0] + ":" + words[1], {});
    if (!told.node)
        return {nullptr, "it names no server that could be one: " +
                             fSettings->peer.quote(words[0] + ":" + words[1])};
    return goOn(std::make_shared<const ZoAddress>(*told.node));
}

// A sentinel may name one that has just lost its place. Who may not ask takes it as it is.
OwnerSearch::Lead OwnerSearch::leadOfServer() const
{
    const auto& words = fWords->words();
    if (!words.empty() && words.front() != "master")
        return {nullptr, "not ready: it is a " + fSettings->peer.quote(words.front()) + " now"};
    return {};
}

OwnerSearch::Lead OwnerSearch::goOn(NodePtr node) const
{
    if (fHops + 1 < fMostHops)
        return {std::move(node), {}};
    return {nullptr, "the nodes send each other around: " + std::to_string(fMostHops) +
                         " were asked for the robot's keys"};
}

void OwnerSearch::settle(const NodePtr& node)
{
    fQuestion.reset();
    fSilent.reset();
    fTimesDown = 0;
    // Sentinels are asked again, and to another replica it is not far.
    if (options().sentinel.empty())
        fFirst = node;
}

OwnerSearch::Turn OwnerSearch::turned(Time now, const std::string& error, const ZoAddress& at)
{
    using Kind = Redirection::Kind;
    const Redirection away = readRedirection(error, at.host);
    if (away.kind == Kind::Moved || away.kind == Kind::CrossSlot) {
        if (!fSlot)
            return refusal(error);
    }
    // Sentinels have made another one the master. A replica that was given by its address is meant.
    const bool isDeposed = away.kind == Kind::ReadOnly && !options().sentinel.empty();
    if (away.kind != Kind::Moved && away.kind != Kind::ClusterDown && !isDeposed)
        return Turn::None;
    fReason = "the robot's keys are elsewhere: " + fSettings->peer.quote(error);
    fFirst = away.node ? std::make_shared<const ZoAddress>(*away.node) : nullptr;
    fIsInHurry = (away.node || isDeposed) && now >= fLastHurry + fCalm;
    if (fIsInHurry)
        fLastHurry = now;
    return Turn::Anew;
}

OwnerSearch::Turn OwnerSearch::refusal(const std::string& error)
{
    const std::string words = error.empty() ? "" : " (" + fSettings->peer.quote(error) + ")";
    if (!options().socketPath.empty())
        fReason =
            "the robot's keys are on a cluster, where a tunnel leads to one node only" + words;
    else if (!options().sentinel.empty())
        fReason = "this is a node of a cluster, which has no sentinels" + words;
    else
        fReason =
            "this is a node of a cluster: a robot's keys stay together there when their prefix "
            "has a tag in braces; write it as --prefix " +
            tagged(options().prefix) + words;
    return Turn::Refusal;
}

} // namespace zo
