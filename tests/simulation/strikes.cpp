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

Strikes::Strikes(const World& world, int count)
    : fWorld(world), fUsualRules(fWorld.robot.rules), fUsualCondition(fWorld.network.condition)
{
    while (static_cast<int>(fWaiting.size()) < count) {
        const auto fault = static_cast<Fault>(fWorld.random.between(1, faults - 1));
        const auto doing = static_cast<LinkDoing>(fWorld.random.below(linkDoings));
        if (whyImpossible(fault, doing))
            continue;
        fWaiting.push_back({fault, doing});
        prepare(fault, doing);
    }
}

/// Brings about what a fault needs that would seldom meet such a link.
void Strikes::prepare(Fault fault, LinkDoing doing)
{
    if (fault == Fault::LookUpAnswersLate || needsLookUp(fault, doing)) {
        fWorld.network.condition.lookUps = NameSearch::Hang;
        // Until another one is made, behind it, if that is wanted.
        const auto time = doing == LinkDoing::LookingUp ? seconds(25) : seconds(1);
        fWorld.agenda.in(time, [this] { fWorld.network.condition.lookUps = NameSearch::Succeed; });
    }
    if (doing == LinkDoing::Refused)
        fWaiting.push_back({Fault::PasswordChanges, LinkDoing::Connecting});
}

void Strikes::step()
{
    const LinkDoing doing = fWorld.link.doing();
    const auto found = std::find_if(fWaiting.begin(), fWaiting.end(), [&](const Strike& waiting) {
        return waiting.doing == doing && canStrike(waiting.fault);
    });
    if (found == fWaiting.end() || !fWorld.random.chance(40))
        return;
    const Fault fault = found->fault;
    fWaiting.erase(found);
    fWorld.trace.line([&] { return std::string("fault: ") + nameOf(fault); });
    if (strike(fault) && !isCountedLater(fault))
        fWorld.tally.meet(fault, doing);
}

bool Strikes::canStrike(Fault fault) const
{
    return fault != Fault::LookUpAnswersLate || fWorld.network.hasHungLookUp(wantsOlderLookUp());
}

/// The answer to the newest look-up would be in time.
bool Strikes::wantsOlderLookUp() const
{
    return fWorld.link.doing() == LinkDoing::LookingUp;
}

bool Strikes::areLeftForStopped() const
{
    return std::any_of(fWaiting.begin(), fWaiting.end(), [this](const Strike& waiting) {
        return waiting.doing == LinkDoing::Stopped && canStrike(waiting.fault);
    });
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
    fWorld.robot.rules = fUsualRules;
    fWorld.robot.nextReply = Fault::None;
    fWorld.network.condition = fUsualCondition;
    fWorld.network.condition.latency = microseconds(20);
    fWorld.network.condition.writeTime = microseconds(80);
    fWorld.network.resume();
}

template <class End>
void Strikes::lasts(End end)
{
    const auto time =
        fWorld.random.chance(30) ? fWorld.random.upTo(seconds(12)) : fWorld.random.upTo(seconds(1));
    fWorld.agenda.in(time, [this, end, healings = fHealings] {
        if (healings != fHealings)
            return;
        end();
        fWorld.network.resume();
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
    auto& condition = fWorld.network.condition;
    switch (fault) {
    case Fault::ConnectsHang:
    case Fault::ConnectsAreRefused:
    case Fault::ConnectsAreSlow:
        condition.connects = fault == Fault::ConnectsHang         ? Connects::Hang
                             : fault == Fault::ConnectsAreRefused ? Connects::AreRefused
                                                                  : Connects::AreSlow;
        lasts([this] { fWorld.network.condition.connects = Connects::Succeed; });
        return true;
    case Fault::LookUpsFail:
    case Fault::LookUpsHang:
        condition.lookUps = fault == Fault::LookUpsFail ? NameSearch::Fail : NameSearch::Hang;
        lasts([this] { fWorld.network.condition.lookUps = NameSearch::Succeed; });
        return true;
    case Fault::AddressesChange:
        chooseAddresses(fWorld.random, condition);
        return true;
    case Fault::LookUpAnswersLate:
        fWorld.network.answerHungLookUp(wantsOlderLookUp());
        return true;
    case Fault::NetworkGoesSilent:
        condition.isSilent = true;
        lasts([this] { fWorld.network.condition.isSilent = false; });
        return true;
    case Fault::ConnectionBreaks:
    case Fault::ConnectionIsClosed:
        fWorld.network.breakAll(fault == Fault::ConnectionIsClosed);
        return true;
    case Fault::BytesDrip:
        condition.drips = true;
        lasts([this] { fWorld.network.condition.drips = false; });
        return true;
    case Fault::WritesAreSlow:
        condition.writeTime = seconds(3);
        lasts([this] { fWorld.network.condition.writeTime = fUsualCondition.writeTime; });
        return true;
    default:
        return fWorld.network.disturbTls(fault);
    }
}

bool Strikes::strikeRobot(Fault fault)
{
    switch (fault) {
    case Fault::RobotHangs:
        fWorld.network.condition.robotHangs = true;
        lasts([this] { fWorld.network.condition.robotHangs = false; });
        break;
    case Fault::RobotDies:
        die();
        fWorld.network.condition.connects = Connects::AreRefused;
        lasts([this] { fWorld.network.condition.connects = Connects::Succeed; });
        break;
    case Fault::RobotRestartsEmpty:
        die();
        break;
    case Fault::PasswordChanges:
        fWorld.robot.rules.password = "another";
        if (fWorld.random.chance(50))
            fWorld.network.breakAll(false);
        lasts([this] { fWorld.robot.rules.password = fUsualRules.password; });
        break;
    case Fault::RobotIsLoading:
        fWorld.robot.rules.isLoading = true;
        lasts([this] { fWorld.robot.rules.isLoading = false; });
        break;
    case Fault::RobotForbids:
        forbid();
        break;
    case Fault::RobotIsFull:
        fWorld.robot.rules.isFull = true;
        if (fWorld.random.chance(50))
            fWorld.network.breakAll(false);
        lasts([this] { fWorld.robot.rules.isFull = false; });
        break;
    default:
        if (fault == Fault::Push && fWorld.random.chance(50))
            fWorld.network.push();
        else
            fWorld.robot.nextReply = fault;
        if (fault == Fault::ReplyComesEarly)
            fWorld.link.callForMuch();
    }
    return true;
}

void Strikes::forbid()
{
    static constexpr const char* commands[] = {"ping", "client|setname", "mget", "mset", "scan"};
    if (fWorld.random.chance(50))
        fWorld.robot.rules.forbiddenKey =
            static_cast<int>(fWorld.random.below(fWorld.robot.memory.keys()));
    else
        fWorld.robot.rules.forbiddenCommand = fWorld.random.pick(commands);
    lasts([this] {
        fWorld.robot.rules.forbiddenKey = -1;
        fWorld.robot.rules.forbiddenCommand.clear();
    });
}

void Strikes::die()
{
    fWorld.robot.memory.clear();
    fWorld.network.breakAll(fWorld.random.chance(50));
}

void Strikes::strikeMachine(Fault fault)
{
    switch (fault) {
    case Fault::ClockJumps:
        return jump();
    case Fault::WokenLate:
        if (fWorld.link.doing() <= LinkDoing::Greeting)
            strikeWay(Fault::NetworkGoesSilent); // so that something is due
        fWakeDelay = fWorld.random.chance(50) ? fWorld.random.upTo(milliseconds(30))
                                              : fWorld.random.upTo(seconds(4));
        return;
    case Fault::WokenForNothing:
        return fWorld.link.wake();
    case Fault::EventOfOtherConnection:
        return fWorld.link.eventOfOtherConnection();
    case Fault::ManyCalls:
        for (int i = fWorld.random.between(5, 30); i > 0; --i)
            fWorld.link.call(false);
        return;
    case Fault::CallComesTooLate:
        return fWorld.link.call(true);
    case Fault::CallIsGivenUp:
        return fWorld.link.giveUpCall();
    case Fault::DriverFails:
        return fWorld.link.failed();
    case Fault::MemoryRunsOut:
        Heap::failIn(fWorld.random.between(0, fWorld.link.doing() == LinkDoing::Waiting ? 0 : 5));
        if (fWorld.link.doing() == LinkDoing::Waiting)
            fWorld.network.answerHungLookUp(wantsOlderLookUp());
        return;
    case Fault::OtherSettings:
        return fWorld.link.reconnect(fWorld.settings.other(fWorld.random));
    default:
        return fWorld.link.stop();
    }
}

void Strikes::jump()
{
    const auto most = fWorld.random.chance(5)    ? Agenda::Duration(hours(2))
                      : fWorld.random.chance(50) ? Agenda::Duration(seconds(8))
                                                 : Agenda::Duration(milliseconds(300));
    fWorld.agenda.passTo(fWorld.agenda.now() + fWorld.random.upTo(most));
}
