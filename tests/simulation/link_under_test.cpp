// SPDX-License-Identifier: MIT
#include "simulation/link_under_test.h"

#include "simulation/action_text.h"
#include "simulation/violation.h"

#include <string>
#include <utility>

using namespace zo;

namespace {

constexpr std::int64_t mostBytesIdle = 96 << 10;
constexpr std::int64_t mostBytesBusy = 1 << 20; // and what the calls allow

std::string text(ConnectionId connection)
{
    return std::to_string(connection);
}

/// A machine that needs memory here ends the program.
template <class Event>
void withoutMemory(Event event)
{
    Heap::failIn(0);
    event();
    Heap::failIn(-1);
}

} // namespace

LinkUnderTest::LinkUnderTest(World& world, const Settings& settings, std::uint32_t seed)
    : fWorld(world), fMachine(settings, seed), fExpected(fMachine, settings, seed)
{
}

/// Tells the machine an event, and the expected link the same.
template <class Event, class Expect>
void LinkUnderTest::report(Event event, Expect expect)
{
    const Time now = fWorld.agenda.now();
    require(++fEvents < Tally::fMostEvents, "a schedule has an end",
            [] { return "too many events"; });
    const LinkDoing doing = fExpected.doing();
    const SharedText cause = fMachine.condition().cause;
    const long holders = cause.use_count();
    {
        const Heap::OfLink scope;
        event(now);
    }
    const bool hasFailed = Heap::takeFailure();
    if (hasFailed) {
        fWorld.tally.meet(Fault::MemoryRunsOut, doing);
        fWorld.trace.line([] { return "memory ran out"; });
    }
    // A cause is new, or an old one is told again: the action that does so holds it, too.
    const SharedText& causeNow = fMachine.condition().cause;
    const bool hasGoneDown = causeNow && (causeNow != cause || causeNow.use_count() > holders);
    fExpected.begin(now, hasGoneDown, hasFailed);
    expect();
    if (!fIsActing)
        act();
}

void LinkUnderTest::act()
{
    fIsActing = true;
    while (const auto action = fMachine.nextAction()) {
        fWorld.trace.line([&] { return "    link: " + actionText(*action); });
        fConnections.take(*action, fExpected.settings().options.tls);
        fExpected.take(*action);
        std::visit([this](const auto& what) { execute(what); }, *action);
    }
    fIsActing = false;
    check();
}

void LinkUnderTest::check()
{
    fExpected.settle();
    fWorld.callers.checkDeadlines(fAwake);
    require(doing() == LinkDoing::Greeting || fGreeting.expired(),
            "nothing keeps a greeting that is over", [] { return "its bytes"; });
    if (const auto wait = fExpected.takeWait())
        ++fWorld.tally.waits[std::min(static_cast<std::size_t>(*wait * Tally::fTenths),
                                      fWorld.tally.waits.size() - 1)];
    const std::int64_t most = doing() == LinkDoing::Busy ? mostBytesBusy : mostBytesIdle;
    require(Heap::inUseByLink() <= most + fWorld.callers.allowance(), "memory is bounded",
            [] { return std::to_string(Heap::inUseByLink()) + " bytes"; });
}

void LinkUnderTest::start()
{
    report([&](Time now) { fMachine.start(now); }, [&] { fExpected.start(); });
}

void LinkUnderTest::lookedUp(int number, const std::vector<LinkAddress>& addresses,
                             const std::string& problem)
{
    fWorld.trace.line([&] {
        return "look-up " + std::to_string(number) + ": " + std::to_string(addresses.size()) +
               " addresses " + problem;
    });
    report([&](Time now) { fMachine.lookedUp(now, number, addresses, problem); },
           [&] { fExpected.lookedUp(number, addresses, problem); });
}

void LinkUnderTest::connected(ConnectionId connection)
{
    fWorld.trace.line([&] { return "connected " + text(connection); });
    fConnections.connected(connection);
    report([&](Time now) { fMachine.connected(now, connection); },
           [&] { fExpected.connected(connection); });
}

void LinkUnderTest::secured(ConnectionId connection)
{
    fWorld.trace.line([&] { return "secured " + text(connection); });
    fConnections.secured(connection);
    report([&](Time now) { fMachine.secured(now, connection); },
           [&] { fExpected.secured(connection); });
}

void LinkUnderTest::received(ConnectionId connection, const Arrival& arrival)
{
    fWorld.trace.line([&] {
        return "received on " + text(connection) + ": " + std::to_string(arrival.bytes.size()) +
               " bytes, " + std::to_string(arrival.last - arrival.first) + " sayings" +
               (arrival.mayNotice ? ", spoilt" : "");
    });
    count(arrival);
    fConnections.received(connection, arrival);
    report([&](Time now) { fMachine.received(now, connection, arrival.bytes); },
           [&] { fExpected.received(connection, arrival); });
}

void LinkUnderTest::count(const Arrival& arrival)
{
    for (const Saying* saying = arrival.first; saying != arrival.last; ++saying) {
        if (saying->fault != Fault::None)
            fWorld.tally.meet(saying->fault, doing());
    }
}

void LinkUnderTest::written(ConnectionId connection)
{
    fWorld.trace.line([&] { return "written on " + text(connection); });
    fConnections.written(connection);
    report([&](Time now) { fMachine.written(now, connection); },
           [&] { fExpected.written(connection); });
}

void LinkUnderTest::closed(ConnectionId connection, const std::string& problem)
{
    fWorld.trace.line([&] { return "closed " + text(connection) + ": " + problem; });
    report([&](Time now) { fMachine.closed(now, connection, problem); },
           [&] { fExpected.closed(connection, problem); });
}

void LinkUnderTest::refused(ConnectionId connection, const std::string& problem)
{
    fWorld.trace.line([&] { return "refused " + text(connection) + ": " + problem; });
    report([&](Time now) { fMachine.refused(now, connection, problem); },
           [&] { fExpected.refused(connection, problem); });
}

void LinkUnderTest::call(bool isLate)
{
    const auto exchange = fWorld.callers.make(fExpected.settings(), isLate);
    fWorld.trace.line([&] { return "call " + exchange->name(); });
    report([&](Time now) { fMachine.call(now, exchange); }, [&] { fExpected.call(exchange); });
}

void LinkUnderTest::callForMuch()
{
    fWorld.callers.wantMuch();
    call(false);
}

void LinkUnderTest::giveUpCall()
{
    auto exchange = fWorld.callers.giveUp();
    if (!exchange) {
        static const auto stranger = std::make_shared<zo::Call>(
            "GET", sharedText("GET"), 1, std::make_shared<StatusSink>("GET"), Deadline{});
        exchange = stranger; // it had ended before
    }
    fWorld.trace.line([&] { return "given up: " + exchange->name(); });
    report([&](Time now) { withoutMemory([&] { fMachine.givenUp(now, exchange); }); },
           [&] { fExpected.givenUp(exchange); });
}

void LinkUnderTest::wake()
{
    fWorld.trace.line([] { return "woken"; });
    fAwake = fWorld.agenda.now();
    report([&](Time now) { fMachine.woken(now); }, [&] { fExpected.woken(); });
}

void LinkUnderTest::failed()
{
    fWorld.trace.line([] { return "the driver fails"; });
    report([&](Time now) { withoutMemory([&] { fMachine.failed(now); }); },
           [&] { fExpected.failed(); });
}

void LinkUnderTest::reconnect(const Settings& settings)
{
    fWorld.trace.line([] { return "other settings"; });
    fConnections.reconnect();
    report([&](Time now) { fMachine.reconnect(now, settings); },
           [&] { fExpected.reconnect(settings); });
}

void LinkUnderTest::stop()
{
    fWorld.trace.line([] { return "stop"; });
    report([&](Time now) { withoutMemory([&] { fMachine.stop(now); }); },
           [&] { fExpected.stop(); });
}

void LinkUnderTest::eventOfOtherConnection()
{
    const ConnectionId others[] = {fNewest + 1, fClosed, 0};
    const ConnectionId other = fWorld.random.pick(others);
    static const std::string bytes = "+OK\r\n";
    const Arrival arrival{bytes, nullptr, nullptr, 0, false, false};
    switch (fWorld.random.below(6)) {
    case 0:
        return connected(other);
    case 1:
        return secured(other);
    case 2:
        return received(other, arrival);
    case 3:
        return written(other);
    case 4:
        return closed(other, "no such connection");
    default:
        return refused(other, "no such connection");
    }
}

void LinkUnderTest::checkEnd()
{
    fConnections.end();
    fWorld.callers.checkEnd();
}

void LinkUnderTest::execute(const LinkAction::LookUp& action)
{
    fWorld.network->lookUp(action);
}

void LinkUnderTest::execute(const LinkAction::Connect& action)
{
    fNewest = action.connection;
    fWorld.network->connect(action.connection, action.address);
}

void LinkUnderTest::execute(const LinkAction::StartTls& action)
{
    fWorld.network->startTls(action.connection);
}

void LinkUnderTest::execute(const LinkAction::Write& action)
{
    if (doing() == LinkDoing::Greeting)
        fGreeting = action.bytes;
    fWorld.network->write(action.connection, action.slice());
}

void LinkUnderTest::execute(const LinkAction::Close& action)
{
    fClosed = action.connection;
    fWorld.network->close(action.connection);
}

void LinkUnderTest::execute(const LinkAction::End& action)
{
    action.exchange->end(action.problem, action.sent);
    fWorld.callers.end(action);
}
