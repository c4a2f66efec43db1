// SPDX-License-Identifier: MIT
#pragma once

#include "arguments.h"
#include "sign_of_life.h"

#include <zo/broker.h>
#include <zo/memory_proxy.h>

#include <memory>
#include <string>

class OwnServer;

/// Where a robot publishes: a server of its own, or one that is given.
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

    ZoMemoryProxy memory() const;
    const ZoBroker& broker() const { return *fBroker; }
    /// Of the robot there.
    SignOfLife signOfLife() const { return {memory(), !fPrefix.empty()}; }

    /// What readers have to know.
    std::string news() const;

    /// Whether the robot ends on this signal; on SIGCHLD it does not. Throws std::runtime_error
    /// when that tells of its own server's end.
    bool endsOn(int signal);

private:
    std::unique_ptr<OwnServer> fServer; ///< none: it is given
    const ZoAddress fAddress;
    const std::string fPrefix;
    const boost::shared_ptr<ZoBroker> fBroker;
};
