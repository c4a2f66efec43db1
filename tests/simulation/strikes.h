// SPDX-License-Identifier: MIT
#pragma once

#include "simulation/link_under_test.h"
#include "simulation/settings.h"

#include <vector>

/// The faults of one schedule: each waits until the link is doing what it is meant to meet.
class Strikes
{
public:
    /// What the faults act upon; must outlive this.
    struct World
    {
        Agenda& agenda;
        Random& random;
        Tally& tally;
        const Trace& trace;
        SimulatedRobot& robot;
        SimulatedNetwork& network;
        LinkUnderTest& link;
        const SettingsMaker& settings;
    };

    Strikes(const World& targets, int count);

    /// After each step: strikes if a fault finds what it waits for.
    void step();
    /// Whether some still wait for a link that is stopped, and can strike it.
    bool areLeftForStopped() const;
    /// Ends all that lasts.
    void heal();

    /// How much later than it wants the link is woken the next time.
    Agenda::Duration wakeDelay() const { return fWakeDelay; }
    void wokenLate() { fWakeDelay = Agenda::Duration(0); }

private:
    struct Strike
    {
        Fault fault;
        LinkDoing doing;
    };

    void prepare(Fault fault, LinkDoing doing);
    bool canStrike(Fault fault) const;
    bool wantsOlderLookUp() const;
    bool strike(Fault fault);
    bool strikeWay(Fault fault);
    bool strikeRobot(Fault fault);
    void strikeMachine(Fault fault);
    void forbid();
    void die();
    void jump();
    /// Does `end` after a while, unless all is healed before.
    template <class End>
    void lasts(End end);

    const World fWorld;
    std::vector<Strike> fWaiting;
    Agenda::Duration fWakeDelay{0};
    SimulatedRobot::Rules fUsualRules;
    SimulatedNetwork::Condition fUsualCondition;
    int fHealings = 0;
};
