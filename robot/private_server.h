// SPDX-License-Identifier: MIT
#pragma once

#include <kit/child_process.h>
#include <kit/descriptor.h>
#include <kit/loopback_port.h>

#include <zo/address.h>

#include <functional>
#include <memory>
#include <string>

/// A Redis server of the robot's own, on 127.0.0.1 and without persistence. It ends with this
/// object, and also when the process ends in any other way.
///
/// Only who signs in as its owner may write there, but for one key if it was made so, or rule it.
/// Others may read, with the password that was given for them.
///
/// Make it in the main thread, before any other thread: see kit::ChildProcess.
class PrivateServer
{
public:
    static constexpr int fFreePortAttempts = 5;

    /// Starts the server and waits until it listens. With an empty `readersPassword` everybody on
    /// this machine may read. Readers may write the key `readersKey`, too; empty: none. `port` 0
    /// takes one that `findPort` finds, and another one when that is taken by then. Throws
    /// std::runtime_error that says what is missing or in the way.
    PrivateServer(int port, const std::string& readersPassword,
                  const std::function<int()>& findPort = kit::freeLoopbackPort,
                  const std::string& readersKey = {});

    ZoAddress address() const { return {"127.0.0.1", fPort}; }
    static constexpr char fOwner[] = "robot"; ///< its user's name
    const std::string& ownersPassword() const { return fPassword; }
    pid_t pid() const { return fProcess->pid(); }

    /// Whether it has not ended by itself.
    bool isRunning();

private:
    bool start(const std::string& readersPassword, const std::string& readersKey);
    bool waitUntilListening(const std::string& folderPath);
    std::string log() const;

    int fPort;
    const std::string fPassword; ///< the owner's
    kit::Descriptor fLogFile;    ///< in memory, no name: nothing stays behind
    std::unique_ptr<kit::ChildProcess> fProcess;
};
