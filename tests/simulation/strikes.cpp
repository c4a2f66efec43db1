// SPDX-License-Identifier: MIT
#include "simulation/strikes.h"

#include <algorithm>

using namespace zo;

namespace {

using std::chrono::hours;
using std::chrono::microseconds;
using std::chrono::milliseconds;
using std::chrono::seconds;

using Connects = SimulatedNetwork::Connects;
using NameSearch = SimulatedNetwork::LookUps;

/// Those that are counted when the link meets them, which is later.
bool isCountedLater(Fault fault)
{
    return (fault >= Fault::Garbage && fault <= Fault::DeathInsideReply) ||
           fault == Fault::WokenLate || fault == Fault::MemoryRunsOut;
}

/// A link that waits needs memory only for addresses that come late.
bool needsLookUp(Fault fault, LinkDoing doing)
{
    return fault == Fault::MemoryRunsOut && doing == LinkDoing::Waiting;
}

} // namespace

Strikes::Strikes(const Targets& targets, int count)
    : f(targets), fUsualRules(f.robot.rules), fUsualCondition(f.network.condition)
{
    while (static_cast<int>(fWaiting.size()) < count) {
        const auto fault = static_cast<Fault>(f.random.between(1, faults - 1));
        const auto doing = static_cast<LinkDoing>(f.random.below(linkDoings));
        if (whyImpossible(fault, doing))
            continue;
        fWaiting.push_back({fault, doing});
        prepare(fault, doing);
    }
    lasts([this] { f.network.condition.lookUps = NameSearch::Succeed; });
}

/// Brings about what a fault needs that would seldom meet such a link.
void Strikes::prepare(Fault fault, LinkDoing doing)
{
    if (fault == Fault::LookUpAnswersLate || needsLookUp(fault, doing))
        f.network.condition.lookUps = NameSearch::Hang;
    if (doing == LinkDoing::Refused)
        fWaiting.push_back({Fault::PasswordChanges, LinkDoing::Connecting});
}

void Strikes::step()
{
    const LinkDoing doing = f.link.doing();
    const auto found = std::find_if(fWaiting.begin(), fWaiting.end(),
                                    [&](const Strike& waiting) { return waiting.doing == doing; });
    if (found == fWaiting.end() || !f.random.chance(40))
        return;
    const Fault fault = found->fault;
    fWaiting.erase(found);
    f.trace.line([&] { return std::string("fault: ") + nameOf(fault); });
    if (strike(fault) && !isCountedLater(fault))
        f.tally.meet(fault, doing);
}

bool Strikes::areLeftForStopped() const
{
    return std::any_of(fWaiting.begin(), fWaiting.end(),
                       [](const Strike& waiting) { return waiting.doing == LinkDoing::Stopped; });
}

void Strikes::heal()
{
    ++fHealings;
    fWakeDelay = Agenda::Duration(0);
    Heap::failIn(-1);
    fWaiting.erase(
        std::remove_if(fWaiting.begin(), fWaiting.end(),
                       [](const Strike& waiting) { return waiting.doing != LinkDoing::Stopped; }),
        fWaiting.end());
    f.robot.rules = fUsualRules;
    f.robot.nextReply = Fault::None;
    f.network.condition = fUsualCondition;
    f.network.condition.latency = microseconds(20);
    f.network.condition.writeTime = microseconds(80);
    f.network.resume();
}

template <class End>
void Strikes::lasts(End end)
{
    const auto time = f.random.chance(30) ? f.random.upTo(seconds(12)) : f.random.upTo(seconds(1));
    f.agenda.in(time, [this, end, healings = fHealings] {
        if (healings != fHealings)
            return;
        end();
        f.network.resume();
    });
}

/// Whether it could.
bool Strikes::strike(Fault fault)
{
    if (fault <= Fault::TlsIsClosed)
        return strikeWay(fault);
    if (fault <= Fault::DeathInsideReply)
        return strikeRobot(fault);
    strikeMachine(fault);
    return true;
}

bool Strikes::strikeWay(Fault fault)
{
    auto& condition = f.network.condition;
    switch (fault) {
    case Fault::ConnectsHang:
    case Fault::ConnectsAreRefused:
    case Fault::ConnectsAreSlow:
        condition.connects = fault == Fault::ConnectsHang         ? Connects::Hang
                             : fault == Fault::ConnectsAreRefused ? Connects::AreRefused
                                                                  : Connects::AreSlow;
        lasts([this] { f.network.condition.connects = Connects::Succeed; });
        return true;
    case Fault::LookUpsFail:
    case Fault::LookUpsHang:
        condition.lookUps = fault == Fault::LookUpsFail ? NameSearch::Fail : NameSearch::Hang;
        lasts([this] { f.network.condition.lookUps = NameSearch::Succeed; });
        return true;
    case Fault::AddressesChange:
        chooseAddresses(f.random, condition);
        return true;
    case Fault::LookUpAnswersLate:
        return f.network.answerHungLookUp();
    case Fault::NetworkGoesSilent:
        condition.isSilent = true;
        lasts([this] { f.network.condition.isSilent = false; });
        return true;
    case Fault::ConnectionBreaks:
    case Fault::ConnectionIsClosed:
        f.network.breakAll(fault == Fault::ConnectionIsClosed);
        return true;
    case Fault::BytesDrip:
        condition.drips = true;
        lasts([this] { f.network.condition.drips = false; });
        return true;
    case Fault::WritesAreSlow:
        condition.writeTime = seconds(3);
        lasts([this] { f.network.condition.writeTime = fUsualCondition.writeTime; });
        return true;
    default:
        return f.network.disturbTls(fault);
    }
}

bool Strikes::strikeRobot(Fault fault)
{
    switch (fault) {
    case Fault::RobotHangs:
        f.network.condition.robotHangs = true;
        lasts([this] { f.network.condition.robotHangs = false; });
        break;
    case Fault::RobotDies:
        die();
        f.network.condition.connects = Connects::AreRefused;
        lasts([this] { f.network.condition.connects = Connects::Succeed; });
        break;
    case Fault::RobotRestartsEmpty:
        die();
        break;
    case Fault::PasswordChanges:
        f.robot.rules.password = "another";
        if (f.random.chance(50))
            f.network.breakAll(false);
        lasts([this] { f.robot.rules.password = fUsualRules.password; });
        break;
    case Fault::RobotIsLoading:
        f.robot.rules.isLoading = true;
        lasts([this] { f.robot.rules.isLoading = false; });
        break;
    case Fault::RobotForbids:
        forbid();
        break;
    case Fault::RobotIsFull:
        f.robot.rules.isFull = true;
        if (f.random.chance(50))
            f.network.breakAll(false);
        lasts([this] { f.robot.rules.isFull = false; });
        break;
    default:
        if (fault == Fault::Push && f.random.chance(50))
            f.network.push();
        else
            f.robot.nextReply = fault;
    }
    return true;
}

void Strikes::forbid()
{
    static constexpr const char* commands[] = {"ping", "client|setname", "mget", "mset", "scan"};
    if (f.random.chance(50))
        f.robot.rules.forbiddenKey = static_cast<int>(f.random.below(f.robot.memory.keys()));
    else
        f.robot.rules.forbiddenCommand = f.random.pick(commands);
    lasts([this] {
        f.robot.rules.forbiddenKey = -1;
        f.robot.rules.forbiddenCommand.clear();
    });
}

void Strikes::die()
{
    f.robot.memory.clear();
    f.network.breakAll(f.random.chance(50));
}

void Strikes::strikeMachine(Fault fault)
{
    switch (fault) {
    case Fault::ClockJumps:
        return jump();
    case Fault::WokenLate:
        f.network.disturbTls(Fault::TlsIsSlow); // so that something is due
        fWakeDelay =
            f.random.chance(50) ? f.random.upTo(milliseconds(30)) : f.random.upTo(seconds(4));
        return;
    case Fault::WokenForNothing:
        return f.link.wake();
    case Fault::EventOfOtherConnection:
        return f.link.eventOfOtherConnection();
    case Fault::ManyCalls:
        for (int i = f.random.between(5, 30); i > 0; --i)
            f.link.call(false);
        return;
    case Fault::CallComesTooLate:
        return f.link.call(true);
    case Fault::CallIsGivenUp:
        return f.link.giveUpCall();
    case Fault::DriverFails:
        return f.link.failed();
    case Fault::MemoryRunsOut:
        Heap::failIn(f.random.between(0, f.link.doing() == LinkDoing::Waiting ? 0 : 5));
        if (f.link.doing() == LinkDoing::Waiting)
            f.network.answerHungLookUp();
        return;
    case Fault::OtherSettings:
        return f.link.reconnect(f.settings.other(f.random));
    default:
        return f.link.stop();
    }
}

void Strikes::jump()
{
    const auto most = f.random.chance(5)    ? Agenda::Duration(hours(2))
                      : f.random.chance(50) ? Agenda::Duration(seconds(8))
                                            : Agenda::Duration(milliseconds(300));
    f.agenda.passTo(f.agenda.now() + f.random.upTo(most));
}
