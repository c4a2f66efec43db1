// SPDX-License-Identifier: MIT
#include "simulation/simulated_network.h"

#include <algorithm>
#include <utility>

using namespace zo;

namespace {

using std::chrono::microseconds;
using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr char hungUp[] = "the robot closed the connection";

} // namespace

void SimulatedNetwork::lookUp(const LinkAction::LookUp& action)
{
    const int number = action.number;
    fNewestLookUp = number;
    const auto answer = [this, number, node = action.node] {
        if (condition.lookUps == LookUps::Succeed)
            fLink.lookedUp(number, addressesOf(*node), "");
        else
            fLink.lookedUp(number, {}, "unknown host");
    };
    if (condition.lookUps == LookUps::Hang)
        fHung.push_back(number);
    else if (fRandom.chance(20))
        answer(); // one that is no name, or cannot even be asked for
    else
        fAgenda.in(fRandom.upTo(milliseconds(5)), answer);
}

/// An address is its own.
std::vector<LinkAddress> SimulatedNetwork::addressesOf(const ZoAddress& node) const
{
    boost::system::error_code problem;
    const auto address = boost::asio::ip::make_address(node.host, problem);
    if (problem)
        return condition.addresses;
    return {{address, static_cast<unsigned short>(node.port)}};
}

std::vector<int>::const_iterator SimulatedNetwork::hungLookUp(bool isOlder) const
{
    return std::find_if(fHung.begin(), fHung.end(),
                        [&](int number) { return !isOlder || number < fNewestLookUp; });
}

bool SimulatedNetwork::hasHungLookUp(bool isOlder) const
{
    return hungLookUp(isOlder) != fHung.end();
}

void SimulatedNetwork::answerHungLookUp(bool isOlder)
{
    const auto found = hungLookUp(isOlder);
    if (found == fHung.end())
        return;
    const int number = *found;
    fHung.erase(found);
    if (fRandom.chance(75))
        fLink.lookedUp(number, condition.addresses, "");
    else
        fLink.lookedUp(number, {}, "no answer");
}

bool SimulatedNetwork::isDead(const LinkAddress& address) const
{
    const bool isNobody = fRobot.cluster && fRobot.cluster->nodeAt(address) < 0;
    return isNobody ||
           std::find(condition.dead.begin(), condition.dead.end(), address) != condition.dead.end();
}

void SimulatedNetwork::connect(ConnectionId connection, const LinkAddress& address)
{
    fWires.push_back(std::make_unique<Wire>());
    fWires.back()->id = connection;
    fWires.back()->session.address = address;
    const bool hangs = condition.isSilent || condition.connects == Connects::Hang;
    const auto refuse = [this, connection] { endWire(connection, "Connection refused"); };
    if (isDead(address) && fRandom.chance(30))
        fAgenda.in(condition.latency,
                   [this, connection] { endWire(connection, "No route to host"); });
    if (hangs || isDead(address))
        return;
    if (condition.connects == Connects::AreRefused && fRandom.chance(30))
        return refuse(); // it cannot even be tried
    if (condition.connects == Connects::AreRefused)
        return fAgenda.in(2 * condition.latency, refuse);
    auto wait = 2 * condition.latency;
    if (condition.connects == Connects::AreSlow)
        wait += fRandom.upTo(milliseconds(1500));
    fAgenda.in(wait, [this, connection] { open(connection); });
}

void SimulatedNetwork::open(ConnectionId connection)
{
    Wire* const wire = find(connection);
    if (!wire || wire->isOpen)
        return;
    wire->isOpen = true;
    fRobot.welcome(wire->session);
    fLink.connected(connection);
    // The link may have closed it, or wants it secured first.
    Wire* const still = find(connection);
    if (still && still->isOpen && !still->isEnding) {
        still->carries = true;
        deliverSoon(*still, condition.latency);
    }
}

void SimulatedNetwork::startTls(ConnectionId connection)
{
    Wire& wire = *find(connection);
    wire.isOpen = false; // to all but the two that agree
    wire.isSecuring = true;
    if (!condition.isSilent && !condition.robotHangs)
        fAgenda.in(4 * condition.latency + fRandom.upTo(milliseconds(3)),
                   [this, connection] { secure(connection); });
}

void SimulatedNetwork::secure(ConnectionId connection)
{
    Wire* const wire = find(connection);
    if (!wire)
        return;
    if (std::exchange(wire->isSlowToSecure, false))
        return fAgenda.in(fRandom.upTo(milliseconds(1500)),
                          [this, connection] { secure(connection); });
    wire->isSecuring = false;
    wire->isOpen = true;
    wire->carries = true;
    fLink.secured(connection);
    if (Wire* const still = find(connection))
        deliverSoon(*still, condition.latency);
}

bool SimulatedNetwork::disturbTls(Fault fault)
{
    for (const auto& wire : fWires) {
        if (!wire->isSecuring || wire->isEnding)
            continue;
        if (fault == Fault::TlsIsSlow)
            wire->isSlowToSecure = true;
        else if (fault == Fault::TlsIsClosed)
            endWire(wire->id, hungUp);
        else
            refuseTls(wire->id);
        return true;
    }
    return false;
}

void SimulatedNetwork::refuseTls(ConnectionId connection)
{
    find(connection)->isEnding = true;
    fLink.refused(connection, "the server's certificate is not trusted");
}

void SimulatedNetwork::write(ConnectionId connection, std::string_view bytes)
{
    Wire& wire = *find(connection);
    wire.toRobot.append(bytes);
    wire.isWriting = true;
    const auto first =
        fRandom.chance(condition.splits) ? fRandom.below(bytes.size()) : bytes.size();
    for (const std::size_t size : {first, bytes.size() - first}) {
        if (size > 0)
            fAgenda.in(condition.latency,
                       [this, connection, size] { arriveAtRobot(connection, size); });
    }
    if (condition.isSilent && fRandom.chance(50))
        return; // the system's buffers are full
    fAgenda.in(fRandom.upTo(condition.writeTime), [this, connection] {
        if (Wire* const written = find(connection)) {
            written->isWriting = false;
            fLink.written(connection);
        }
    });
}

void SimulatedNetwork::arriveAtRobot(ConnectionId connection, std::size_t size)
{
    Wire* const wire = find(connection);
    if (!wire)
        return;
    wire->arrived += size;
    serve(*wire);
}

void SimulatedNetwork::serve(Wire& wire)
{
    if (condition.isSilent || condition.robotHangs || wire.arrived == 0)
        return;
    fRobot.receive(wire.session, std::string_view(wire.toRobot).substr(0, wire.arrived));
    wire.toRobot.erase(0, wire.arrived);
    wire.arrived = 0;
    deliverSoon(wire, condition.latency);
}

void SimulatedNetwork::deliverSoon(Wire& wire, Duration wait)
{
    const bool hasSomething = wire.session.answers.waiting() > 0 || wire.session.hangsUp;
    if (!hasSomething || wire.isDelivering || !wire.carries)
        return;
    wire.isDelivering = true;
    fAgenda.in(wait, [this, connection = wire.id] { deliver(connection); });
}

void SimulatedNetwork::deliver(ConnectionId connection)
{
    Wire* const wire = find(connection);
    if (!wire)
        return;
    wire->isDelivering = false;
    if (condition.isSilent)
        return;
    const std::size_t waiting = wire->session.answers.waiting();
    if (waiting == 0) // then it was the end that was to come
        return endWire(connection, hungUp);
    fLink.received(connection, wire->session.answers.arrive(sizeOfPiece(waiting)));
    if (Wire* const still = find(connection))
        deliverSoon(*still, pause());
}

std::size_t SimulatedNetwork::sizeOfPiece(std::size_t waiting)
{
    if (condition.drips)
        return 1 + fRandom.below(std::max(std::min<std::size_t>(waiting, 3), waiting / 6));
    return fRandom.chance(condition.splits) ? 1 + fRandom.below(waiting) : waiting;
}

SimulatedNetwork::Duration SimulatedNetwork::pause()
{
    return fRandom.upTo(condition.drips ? milliseconds(200) : microseconds(50));
}

void SimulatedNetwork::close(ConnectionId connection)
{
    fWires.erase(std::remove_if(fWires.begin(), fWires.end(),
                                [&](const auto& wire) { return wire->id == connection; }),
                 fWires.end());
}

void SimulatedNetwork::endWire(ConnectionId connection, const std::string& problem)
{
    if (!find(connection))
        return;
    // A connection that has ended stays known, in the link's eyes, until it is closed.
    find(connection)->isEnding = true;
    fLink.closed(connection, problem);
}

void SimulatedNetwork::resume()
{
    for (std::size_t i = 0; i < fWires.size(); ++i) {
        serve(*fWires[i]);
        deliverSoon(*fWires[i], condition.latency);
    }
}

void SimulatedNetwork::breakAll(bool isPolite, const LinkAddress* only)
{
    std::vector<ConnectionId> all;
    all.reserve(fWires.size());
    for (const auto& wire : fWires) {
        if (!only || wire->session.address == *only)
            all.push_back(wire->id);
    }
    for (const ConnectionId connection : all) {
        Wire* const wire = find(connection);
        if (!wire || wire->isEnding)
            continue;
        if (isPolite && wire->carries) {
            wire->session.hangsUp = true;
            wire->session.isMute = true;
            deliverSoon(*wire, condition.latency);
        } else {
            endWire(connection, isPolite ? hungUp : "Connection reset by peer");
        }
    }
}

void SimulatedNetwork::push()
{
    for (const auto& wire : fWires) {
        if (!wire->carries)
            continue;
        fRobot.push(wire->session);
        return deliverSoon(*wire, condition.latency);
    }
}

bool SimulatedNetwork::isCalm() const
{
    return std::none_of(fWires.begin(), fWires.end(), [](const auto& wire) {
        return !wire->isEnding && (wire->isWriting || wire->session.isMute ||
                                   !wire->toRobot.empty() || wire->session.answers.waiting() > 0);
    });
}

SimulatedNetwork::Wire* SimulatedNetwork::find(ConnectionId connection)
{
    const auto found = std::find_if(fWires.begin(), fWires.end(), [&](const auto& wire) {
        return wire->id == connection && !wire->isEnding;
    });
    return found == fWires.end() ? nullptr : found->get();
}
