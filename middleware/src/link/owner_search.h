// SPDX-License-Identifier: MIT
#pragma once

#include "link/cluster_sink.h"
#include "link/deadline.h"
#include "link/link_settings.h"
#include "link/node.h"
#include "link/slot_sink.h"
#include "link/words_sink.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace zo {

/// Finds the node that has the keys of a robot: whom an attempt tries first, what each node is
/// asked behind the greeting, and where its answer leads. A robot on one server of its own is where
/// its address is. A part of LinkMachine.
class OwnerSearch
{
public:
    using Time = SteadyClock::time_point;

    /// So many nodes are asked in one attempt, one after the other, beside those that refuse.
    static constexpr int fMostHops = 5;
    static constexpr int fMostAsked = fMostHops + ZoAddress::fMostAddresses - 1;
    /// While a cluster looks for a new owner it is down for seconds: so often it is asked again
    /// soon.
    static constexpr int fMostBriefWaits = 20;
    /// A link that is sent to another node goes there at once, but not again within such a while.
    static constexpr std::chrono::milliseconds fCalm{1000};
    /// A node that was silent has all its time in one of so many attempts.
    static constexpr int fFullTime = 4;

    /// What a node is asked behind the greeting.
    struct Question
    {
        const char* name; ///< for messages
        std::string bytes;
        int replies;
        std::shared_ptr<ReplySink> sink;
    };
    /// Where an answer leads.
    struct Lead
    {
        NodePtr node = {};        ///< there; null: it is the node that was asked, or none
        std::string problem = {}; ///< why it is none; may be empty
        bool isRefusal = false;   ///< there is no use in trying again
    };
    /// What an error means for a link that is up.
    enum class Turn
    {
        None,   ///< it is its caller's affair
        Anew,   ///< the owner is to be found anew
        Refusal ///< there is no use in trying again
    };

    explicit OwnerSearch(std::shared_ptr<const LinkSettings> settings);
    /// Begins anew with other settings. Needs no memory.
    void use(std::shared_ptr<const LinkSettings> settings);

    /// An attempt begins: the nodes to try, the likeliest first. Needs no memory.
    const Nodes& begin();
    /// `node` has refused: those that are left to try in this attempt. There are none behind one
    /// that was heard: a single way leads on from it. Needs no memory.
    const Nodes& beside(const ZoAddress& node);
    /// Whether a node of the cluster has taken us in this attempt: if the next does not, it is
    /// alone with that.
    bool isWelcome() const { return fSlot && fHops > 0; }
    /// What the next node is asked; null: nothing.
    const Question* ask();
    /// What the answer to it means that came from `node`.
    Lead judge(const NodePtr& node);
    /// `node` has said nothing for too long: the others come before it, until the link is up. Needs
    /// no memory.
    void fellSilent(const NodePtr& node);
    /// Whether it is worth so much time only as a call has: it may hang still. Now and then it gets
    /// all its time.
    bool isHurried(const ZoAddress& node) const
    {
        return fSilent && *fSilent == node && fSinceSilent % fFullTime != 0;
    }
    /// The link is up at `node`.
    void settle(const NodePtr& node);

    /// What `error` means, in reply to a call, from the node of a link that is up.
    Turn turned(Time now, const std::string& error, const ZoAddress& at);
    /// Whether the node that was asked last is one of a cluster.
    bool isInCluster() const { return fCluster && fCluster->hasTable(); }
    /// Why, behind Turn::Anew and Turn::Refusal.
    const std::string& reason() const { return fReason; }
    /// Whether the next attempt may begin at once; only once after an error.
    bool takeHurry() { return std::exchange(fIsInHurry, false); }
    /// Whether a node was heard in this attempt that knew of others: it will not take long.
    bool isHeard() const { return fIsHeard; }
    /// Whether the node that is asked next is a sentinel, which knows no logins.
    bool asksSentinel() const { return !fSettings->options.sentinel.empty() && fHops == 0; }

private:
    const ZoBrokerOptions& options() const { return fSettings->options; }
    void addCandidate(const NodePtr& node);
    void putSilentLast();
    Lead leadOfCluster(const ZoAddress& at);
    Lead leadOfSoleServer();
    Lead leadOfSentinel() const;
    Lead leadOfServer() const;
    Lead goOn(NodePtr node) const;
    NodePtr chosenReplica(const ZoAddress& at) const;
    void learn(const ZoAddress& at);
    Turn refusal(const std::string& error);

    std::shared_ptr<const LinkSettings> fSettings;
    std::optional<int> fSlot;
    Nodes fCandidates;    ///< has room for all
    Nodes fKnown;         ///< of the cluster, beside those that are given
    NodePtr fFirst;       ///< where the next attempt goes first; null: wherever its turn is
    NodePtr fSilent;      ///< it comes last; null: none does
    int fSinceSilent = 0; ///< attempts
    unsigned fTurn = 0;
    int fHops = 0; ///< in this attempt
    bool fIsHeard = false;
    int fTimesDown = 0;        ///< that the cluster was, since the link was up
    bool fIsAtReplica = false; ///< that was chosen, or on the way there
    bool fIsReached = false;   ///< that replica
    bool fIsShunned = false;   ///< replicas are: the last one was not reached
    bool fIsInHurry = false;
    Time fLastHurry = Time::min();
    std::string fReason;

    std::optional<Question> fQuestion;
    std::shared_ptr<ClusterSink> fCluster; ///< of the newest question, as is the next
    std::shared_ptr<WordsSink> fWords;
    std::shared_ptr<SlotSink> fKeySlot;
};

} // namespace zo
