// SPDX-License-Identifier: MIT
#pragma once

#include <zo/address.h>

#include <functional>
#include <string>
#include <sys/types.h>

/// A Redis server of the robot's own, on 127.0.0.1 and without persistence. It ends with this
/// object, and also when the process ends in any other way.
///
/// The kernel ties the server's life to the thread that starts it: make it in the main thread,
/// before any other thread.
class PrivateServer
{
public:
    static constexpr int fFreePortAttempts = 5;

    /// A port of 127.0.0.1 that is free now; somebody else may take it before the server does.
    static int freePort();

    /// Starts the server and waits until it listens. `port` 0 takes one that `findPort` finds, and
    /// another one when that is taken by then. Throws std::runtime_error that says what is missing
    /// or in the way.
    explicit PrivateServer(int port, const std::function<int()>& findPort = freePort);
    ~PrivateServer();
    PrivateServer(const PrivateServer&) = delete;
    PrivateServer& operator=(const PrivateServer&) = delete;

    ZoAddress address() const { return {"127.0.0.1", fPort}; }
    pid_t pid() const { return fPid; }

    /// Whether it has not ended by itself.
    bool isRunning();

private:
    bool start();
    bool waitUntilListening();
    bool isListening() const;
    std::string log() const;

    int fPort;
    int fLogFile = -1; ///< in memory, no name: nothing stays behind
    pid_t fPid = -1;
};
