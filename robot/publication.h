// SPDX-License-Identifier: MIT
#pragma once

#include "arguments.h"
#include "sign_of_life.h"

#include <zo/broker.h>
#include <zo/memory_proxy.h>

#include <memory>
#include <string>
#include <vector>

class OwnServer;

/// Where robots publish: a server of their own, or one that is given. Each has a link to it.
class Publication
{
public:
    /// Starts or reaches it; wipes the password in `arguments`. Readers of a server of its own may
    /// write the key `readersKey`; empty: none. Throws what PrivateServer and ZoBroker do. Call it
    /// from the main thread before there is any other.
    explicit Publication(RobotArguments& arguments, const std::string& readersKey = {});
    ~Publication();
    Publication(const Publication&) = delete;
    Publication& operator=(const Publication&) = delete;

    std::size_t robots() const { return fPrefixes.size(); }
    // Of one of them.
    ZoMemoryProxy memory(std::size_t robot = 0) const;
    const ZoBroker& broker(std::size_t robot = 0) const { return *fBrokers[robot]; }
    SignOfLife signOfLife(std::size_t robot = 0) const
    {
        return {memory(robot), !fPrefixes[robot].empty()};
    }

    /// What readers have to know.
    std::string news() const;

    /// Whether the robot ends on this signal; on SIGCHLD it does not. Throws std::runtime_error
    /// when that tells of its own server's end.
    bool endsOn(int signal);

private:
    std::unique_ptr<OwnServer> fServer; ///< none: it is given
    const ZoAddress fAddress;
    const std::vector<std::string> fPrefixes; ///< by robot
    const std::vector<boost::shared_ptr<ZoBroker>> fBrokers;
};
