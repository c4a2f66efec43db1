// SPDX-License-Identifier: MIT
#pragma once

#include "simulation/random.h"
#include "simulation/simulated_network.h"

#include <link/link_settings.h>

#include <string>

/// How the links of one schedule are set up.
class SettingsMaker
{
public:
    /// The robot's keys are behind `prefix`.
    SettingsMaker(Random& random, const std::string& prefix);

    /// What its robot expects.
    const SimulatedRobot::Rules& rules() const { return fRules; }
    std::shared_ptr<const zo::LinkSettings> right() const;
    /// Others, now and then with the wrong password.
    std::shared_ptr<const zo::LinkSettings> other(Random& random) const;

private:
    static void setTimes(Random& random, ZoBrokerOptions& options);

    SimulatedRobot::Rules fRules;
    ZoBrokerOptions fOptions;
};

/// How the network of one schedule is when nothing is wrong with it.
SimulatedNetwork::Condition makeCondition(Random& random);
/// Some addresses of a robot, of both families; the last one leads there.
void chooseAddresses(Random& random, SimulatedNetwork::Condition& condition);
