// SPDX-License-Identifier: MIT
#pragma once

#include <kit/program.h>

#include <cstddef>
#include <mutex>
#include <set>
#include <string>

/// Tells once for each outage that and why nothing is published; of many robots, when the first is
/// in trouble, and when none is any more. They may call from any thread.
class Trouble
{
public:
    /// Nothing: it is over for that robot.
    void report(const std::string& trouble, std::size_t robot = 0)
    {
        const std::lock_guard<std::mutex> lock(fMutex);
        const bool wasThere = !fRobots.empty();
        if (trouble.empty())
            fRobots.erase(robot);
        else
            fRobots.insert(robot);
        if (fRobots.empty() == wasThere)
            kit::tell("tarvek-robot", wasThere ? "publishing again." : trouble + ". Trying again.");
    }

private:
    std::mutex fMutex;
    std::set<std::size_t> fRobots; ///< that are in trouble
};
