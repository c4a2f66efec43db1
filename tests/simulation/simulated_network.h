// SPDX-License-Identifier: MIT
#pragma once

#include "simulation/agenda.h"
#include "simulation/link_events.h"
#include "simulation/random.h"
#include "simulation/simulated_robot.h"

#include <memory>
#include <string>
#include <vector>

/// The way between a link and its robot: names, connections and bytes, all in virtual time.
class SimulatedNetwork
{
public:
    using Duration = Agenda::Duration;

    enum class Connects
    {
        Succeed,
        Hang,
        AreRefused,
        AreSlow
    };
    enum class LookUps
    {
        Succeed,
        Fail,
        Hang
    };

    /// How the way is at the moment; may change at any time.
    struct Condition
    {
        std::vector<zo::LinkAddress> addresses; ///< of the robot
        std::vector<zo::LinkAddress> dead;      ///< those of them that lead nowhere
        Connects connects = Connects::Succeed;
        LookUps lookUps = LookUps::Succeed;
        Duration latency{0};     ///< one way
        Duration writeTime{0};   ///< most that one write takes
        int splits = 0;          ///< percent of the pieces that do not come in one
        bool drips = false;      ///< few bytes at a time
        bool isSilent = false;   ///< nothing gets through
        bool robotHangs = false; ///< it is there, and does nothing
    };

    SimulatedNetwork(Agenda& agenda, Random& random, SimulatedRobot& robot, LinkEvents& link,
                     Condition usual)
        : condition(std::move(usual)), fAgenda(agenda), fRandom(random), fRobot(robot), fLink(link)
    {
    }

    // What the link asks for:
    void lookUp(const zo::LinkAction::LookUp& action);
    void connect(zo::ConnectionId connection, const zo::LinkAddress& address);
    void startTls(zo::ConnectionId connection);
    void write(zo::ConnectionId connection, std::string_view bytes);
    void close(zo::ConnectionId connection);

    /// Goes on after a change of the condition.
    void resume();
    /// Ends all connections, or those to `only`; politely: after all that was said has arrived.
    void breakAll(bool isPolite, const zo::LinkAddress* only = nullptr);
    /// The robot sends a push on a connection, if there is one.
    void push();
    /// Something happens to an agreement on encryption; whether there was one under way.
    bool disturbTls(Fault fault);
    /// Whether a look-up hangs; one before the newest, if only such are wanted.
    bool hasHungLookUp(bool isOlder) const;
    /// It is answered now, if there is one.
    void answerHungLookUp(bool isOlder);

    /// Whether nothing is left of what went wrong before: slow writes, and ends to come.
    bool isCalm() const;

    Condition condition;

private:
    /// One connection.
    struct Wire
    {
        zo::ConnectionId id;
        bool isOpen = false;
        bool carries = false; ///< data: it is open, and secured if it must be
        bool isDelivering = false;
        bool isSecuring = false;
        bool isSlowToSecure = false;
        bool isWriting = false;
        bool isEnding = false;
        RobotSession session;
        std::string toRobot;
        std::size_t arrived = 0; ///< of these bytes
    };

    std::vector<zo::LinkAddress> addressesOf(const ZoAddress& node) const;
    std::vector<int>::const_iterator hungLookUp(bool isOlder) const;
    Wire* find(zo::ConnectionId connection);
    bool isDead(const zo::LinkAddress& address) const;
    void open(zo::ConnectionId connection);
    void secure(zo::ConnectionId connection);
    void refuseTls(zo::ConnectionId connection);
    void arriveAtRobot(zo::ConnectionId connection, std::size_t size);
    void serve(Wire& wire);
    void deliverSoon(Wire& wire, Duration wait);
    void deliver(zo::ConnectionId connection);
    std::size_t sizeOfPiece(std::size_t waiting);
    void endWire(zo::ConnectionId connection, const std::string& problem);
    Duration pause();

    Agenda& fAgenda;
    Random& fRandom;
    SimulatedRobot& fRobot;
    LinkEvents& fLink;
    std::vector<std::unique_ptr<Wire>> fWires;
    std::vector<int> fHung; ///< look-ups
    int fNewestLookUp = 0;
};
