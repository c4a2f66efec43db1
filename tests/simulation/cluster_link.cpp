// SPDX-License-Identifier: MIT
#include "simulation/cluster_link.h"

#include "simulation/action_text.h"
#include "simulation/heap.h"
#include "simulation/violation.h"

#include <string>
#include <utility>

using namespace zo;

namespace {

constexpr int mostEvents = 100000;
constexpr std::int64_t mostBytes = 1 << 20; // and what the calls allow

std::string text(ConnectionId connection)
{
    return std::to_string(connection);
}

} // namespace

ClusterLink::ClusterLink(World& world, Settings settings, std::uint32_t seed)
    : fWorld(world), fSettings(std::move(settings)), fMachine(fSettings, seed)
{
}

/// Tells the machine an event.
template <class Event>
void ClusterLink::report(Event event)
{
    require(++fEvents < mostEvents, "a schedule has an end", [] { return "too many events"; });
    {
        const Heap::OfLink scope;
        event(fWorld.agenda.now());
    }
    if (!fIsActing)
        act();
}

void ClusterLink::act()
{
    fIsActing = true;
    while (const auto action = fMachine.nextAction()) {
        fWorld.trace.line([&] { return "    link: " + actionText(*action); });
        fConnections.take(*action, false);
        std::visit([this](const auto& what) { execute(what); }, *action);
    }
    fIsActing = false;
    fWorld.callers.checkDeadlines(fAwake);
    require(fIsUp == fMachine.condition().isUp, "each change of the state is told",
            [this] { return fIsUp ? "it is down" : "it is up"; });
    require(Heap::inUseByLink() <= mostBytes + fWorld.callers.allowance(), "memory is bounded",
            [] { return std::to_string(Heap::inUseByLink()) + " bytes"; });
}

void ClusterLink::start()
{
    report([&](Time now) { fMachine.start(now); });
}

void ClusterLink::lookedUp(int number, const std::vector<LinkAddress>& addresses,
                           const std::string& problem)
{
    report([&](Time now) { fMachine.lookedUp(now, number, addresses, problem); });
}

void ClusterLink::connected(ConnectionId connection)
{
    fWorld.trace.line([&] { return "connected " + text(connection); });
    fConnections.connected(connection);
    report([&](Time now) { fMachine.connected(now, connection); });
}

void ClusterLink::secured(ConnectionId connection)
{
    report([&](Time now) { fMachine.secured(now, connection); });
}

void ClusterLink::received(ConnectionId connection, const Arrival& arrival)
{
    fWorld.trace.line([&] {
        return "received on " + text(connection) + ": " +
               std::string(arrival.bytes.substr(0, arrival.bytes.find('\r')));
    });
    fConnections.received(connection, arrival);
    report([&](Time now) { fMachine.received(now, connection, arrival.bytes); });
}

void ClusterLink::written(ConnectionId connection)
{
    fConnections.written(connection);
    report([&](Time now) { fMachine.written(now, connection); });
}

void ClusterLink::closed(ConnectionId connection, const std::string& problem)
{
    fWorld.trace.line([&] { return "closed " + text(connection) + ": " + problem; });
    report([&](Time now) { fMachine.closed(now, connection, problem); });
}

void ClusterLink::refused(ConnectionId connection, const std::string& problem)
{
    report([&](Time now) { fMachine.refused(now, connection, problem); });
}

void ClusterLink::call()
{
    const auto exchange = fWorld.callers.make(*fSettings, false);
    fWorld.trace.line([&] { return "call " + exchange->name(); });
    report([&](Time now) { fMachine.call(now, exchange); });
}

void ClusterLink::wake()
{
    fAwake = fWorld.agenda.now();
    report([&](Time now) { fMachine.woken(now); });
}

void ClusterLink::stop()
{
    report([&](Time now) { fMachine.stop(now); });
}

void ClusterLink::checkEnd()
{
    fConnections.end();
    fWorld.callers.checkEnd();
}

void ClusterLink::execute(const LinkAction::LookUp& action)
{
    fWorld.network->lookUp(action);
}

void ClusterLink::execute(const LinkAction::Connect& action)
{
    ++fConnects;
    fWorld.network->connect(action.connection, action.address);
}

void ClusterLink::execute(const LinkAction::StartTls&)
{
    throw Violation("nobody wants TLS", "it is begun");
}

void ClusterLink::execute(const LinkAction::Write& action)
{
    fWorld.network->write(action.connection, action.slice());
}

void ClusterLink::execute(const LinkAction::Close& action)
{
    fWorld.network->close(action.connection);
}

void ClusterLink::execute(const LinkAction::End& action)
{
    action.exchange->end(action.problem, action.sent);
    fWorld.callers.end(action);
}

void ClusterLink::execute(const LinkAction::Tell& action)
{
    fIsUp = action.condition.isUp;
    require(!action.condition.isRefused, "a robot with a tag is never refused",
            [&] { return *action.condition.cause; });
}
