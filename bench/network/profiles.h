// SPDX-License-Identifier: MIT
#pragma once

#include "support/network_emulator.h"

#include <string>
#include <vector>

/// A network between a panel and its robot, and what is asked of a panel on it.
struct NetworkProfile
{
    std::string name; ///< a word
    std::string text;
    NetworkWay way;   ///< each of the two
    double leastRate; ///< fetches a second

    std::chrono::microseconds roundTrip() const { return 2 * way.delay; }
    /// Whether so many bytes a second are carried, each way.
    bool carries(double bytesUp, double bytesDown) const;
};

const std::vector<NetworkProfile>& networkProfiles();
