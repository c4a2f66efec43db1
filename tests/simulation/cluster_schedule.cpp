// SPDX-License-Identifier: MIT
#include "simulation/cluster_schedule.h"

#include "simulation/cluster_link.h"
#include "simulation/cluster_troubles.h"
#include "simulation/heap.h"
#include "simulation/violation.h"
#include "simulation/warm_up.h"

#include <algorithm>
#include <memory>

using namespace zo;

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr char prefix[] = "{robot7}/";
constexpr int callsOfHealthyLink = 8;
// Five nodes an attempt, each of which may be raced with the others, and four waits in a second.
constexpr int mostConnectsASecond = 120;
constexpr int mostConnectsAtOnce = 200;

SimulatedRobot::Rules rulesOfNodes()
{
    SimulatedRobot::Rules rules;
    rules.prefix = prefix;
    return rules;
}

SimulatedNetwork::Condition conditionOf(Random& random)
{
    static constexpr std::chrono::microseconds latencies[] = {std::chrono::microseconds(20),
                                                              std::chrono::microseconds(500),
                                                              milliseconds(5), milliseconds(60)};
    SimulatedNetwork::Condition condition;
    condition.latency = random.pick(latencies);
    condition.writeTime = 4 * condition.latency;
    condition.splits = random.chance(50) ? random.between(0, 60) : 0;
    return condition;
}

/// Some of the nodes are given, and now and then one that is none.
std::shared_ptr<const LinkSettings> settingsOf(Random& random, const SimulatedCluster& cluster)
{
    ZoBrokerOptions options;
    options.prefix = prefix;
    options.replica = random.chance(20);
    Nodes given;
    for (int node = 0; node < cluster.count(); ++node) {
        if (random.chance(50))
            given.push_back(cluster.nodePtr(node));
    }
    if (given.empty())
        given.push_back(cluster.nodePtr(static_cast<int>(random.below(cluster.nodes.size()))));
    for (std::size_t i = 1; i < given.size(); ++i)
        options.furtherAddresses.push_back(*given[i]);
    if (random.chance(30))
        options.furtherAddresses.push_back({"10.9.9.9", 7000});
    return makeLinkSettings(given[0]->host, given[0]->port, options, "simulated panel");
}

class ClusterSchedule
{
public:
    ClusterSchedule(std::uint64_t seed, Tally& tally, bool isTraced);

    void run();
    int events() const { return fLink.events(); }

private:
    void step();
    void runFor(Agenda::Duration time);
    void recover();
    void callUntilAnswered(int before);
    void serve();
    void callAgain();

    Random fRandom;
    Agenda fAgenda;
    Trace fTrace;
    SimulatedCluster fCluster;
    SimulatedRobot fRobot;
    Callers fCallers;
    ClusterLink::World fWorld;
    ClusterLink fLink;
    SimulatedNetwork fNetwork;
    ClusterTroubles fTroubles;
    const Agenda::Duration fPeriod; ///< of the calls
    bool fMayCall = true;
};

ClusterSchedule::ClusterSchedule(std::uint64_t seed, Tally& tally, bool isTraced)
    : fRandom(seed),
      fTrace(fAgenda, isTraced),
      fCluster(fRandom, fRandom.between(2, 6)),
      fRobot(fAgenda, fRandom, rulesOfNodes(), fRandom.between(1, 12)),
      fCallers(fAgenda, fRandom, fRobot.memory),
      fWorld{fAgenda, fCallers, fTrace, nullptr},
      fLink(fWorld, settingsOf(fRandom, fCluster), static_cast<std::uint32_t>(fRandom.next())),
      fNetwork(fAgenda, fRandom, fRobot, fLink, conditionOf(fRandom)),
      fTroubles({fAgenda, fRandom, tally, fTrace, fCluster, fNetwork}),
      fPeriod(milliseconds(fRandom.between(5, 500)))
{
    fWorld.network = &fNetwork;
    fRobot.cluster = &fCluster;
    fRobot.lives = true;
    for (int key = 0; key < fRobot.memory.keys(); ++key)
        fRobot.memory.put(key, fRobot.memory.fresh(key));
}

void ClusterSchedule::run()
{
    fLink.start();
    callAgain();
    fTroubles.start();
    runFor(seconds(fRandom.between(5, 30)));
    fMayCall = false;
    recover();
    serve();
    fLink.stop();
    for (int i = 0; i < 10 && fAgenda.nextAt() != Agenda::Time::max(); ++i)
        fAgenda.runNext();
    fLink.checkEnd();
}

/// What is due next happens. The link is woken behind all else of the same moment.
void ClusterSchedule::step()
{
    const Agenda::Time wakeAt = fLink.wakeAt();
    if (fAgenda.nextAt() <= wakeAt)
        return fAgenda.runNext();
    fAgenda.passTo(wakeAt);
    fLink.wake();
}

void ClusterSchedule::runFor(Agenda::Duration time)
{
    const Agenda::Time begin = fAgenda.now();
    while (fAgenda.now() < begin + time) {
        step();
        const double elapsed = std::chrono::duration<double>(fAgenda.now() - begin).count();
        require(fLink.connects() <= mostConnectsAtOnce + mostConnectsASecond * elapsed,
                "no node is besieged", [&] { return std::to_string(fLink.connects()); });
    }
}

void ClusterSchedule::callAgain()
{
    if (!fMayCall)
        return;
    fLink.call();
    fAgenda.in(fRandom.upTo(2 * fPeriod), [this] { callAgain(); });
}

/// The cluster becomes good, and so the link must: a silence is noticed, the longest wait ends, and
/// a few attempts more lead to the owner.
void ClusterSchedule::recover()
{
    fTrace.line([] { return "all is well"; });
    fTroubles.heal();
    fCallers.calmDown();
    const Agenda::Time limit = fAgenda.now() + seconds(30);
    const int before = fCallers.answeredForKeys();
    callUntilAnswered(before);
    while (!fLink.condition().isUp || fCallers.underWay() > 0 || !fNetwork.isCalm() ||
           fCallers.answeredForKeys() == before) {
        require(fAgenda.now() <= limit, "a link comes up when all is well", [this] {
            return fLink.condition().isUp ? "it is up, and silent" : *fLink.condition().cause;
        });
        step();
    }
    const int node = fCluster.nodeAt({boost::asio::ip::make_address(fLink.condition().node->host),
                                      static_cast<unsigned short>(fLink.condition().node->port)});
    require(node == fCluster.owner, "the link is where the keys are",
            [&] { return fLink.condition().node->toText(); });
}

void ClusterSchedule::callUntilAnswered(int before)
{
    if (fCallers.answeredForKeys() > before)
        return;
    fLink.call();
    fAgenda.in(milliseconds(50), [this, before] { callUntilAnswered(before); });
}

void ClusterSchedule::serve()
{
    for (int i = 0; i < callsOfHealthyLink; ++i) {
        const int before = fCallers.answered();
        fLink.call();
        while (fCallers.underWay() > 0)
            step();
        require(fCallers.answered() > before, "a healthy link answers", [] { return "a call"; });
    }
}

} // namespace

void runClusterSchedule(std::uint64_t seed, std::uint64_t number, Tally& tally, bool isTraced)
{
    warmUp();
    {
        ClusterSchedule schedule(Random(Random(seed).next() ^ number).next(), tally, isTraced);
        schedule.run();
        tally.count(schedule.events());
    }
    require(Heap::inUseByLink() == 0, "a link that has ended gives everything back",
            [] { return std::to_string(Heap::inUseByLink()) + " bytes are left"; });
}
