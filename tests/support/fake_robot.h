// SPDX-License-Identifier: MIT
#pragma once

#include <kit/loopback_port.h>

#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

/// A connection as the server of a test sees it. When the other side closes it, or the server
/// ends, every operation throws FakeConnection::Closed, which ends the script.
class FakeConnection
{
public:
    struct Closed
    {
    };

    FakeConnection(int socket, int number) : fSocket(socket), fNumber(number) {}

    /// 0 for the first connection that the server accepts, 1 for the second, ...
    int number() const { return fNumber; }

    /// The next command, word by word.
    std::vector<std::string> readCommand();
    void send(std::string_view bytes);
    void sendSlowly(std::string_view bytes); ///< one byte each 10 ms
    void waitForEnd();                       ///< reads until the other side closes

    /// Answers what a link begins with: a PING, and the name that it wants to be listed under.
    void greet();

    std::string readBytes(std::size_t size);

private:
    std::string readLine();

    int fSocket;
    int fNumber;
    std::string fRead;
};

/// A server on a loopback port that follows a script: for hostile replies, and for good ones at
/// the wrong time. One connection at a time; its end is the end of the script.
class FakeRobot
{
public:
    using Script = std::function<void(FakeConnection&)>;

    explicit FakeRobot(Script script);
    ~FakeRobot();
    FakeRobot(const FakeRobot&) = delete;
    FakeRobot& operator=(const FakeRobot&) = delete;

    int port() const { return fPort; }

private:
    void serve();
    void serveOne(int socket, int number);

    const Script fScript;
    const kit::Descriptor fListener;
    const int fPort;
    std::mutex fMutex;
    int fCurrent = -1;
    bool fIsEnding = false;
    std::thread fThread;
};

/// Greets, and answers each further command with `reply`.
FakeRobot::Script answering(const std::string& reply);
/// The same on the first connection; those behind it wait in vain.
FakeRobot::Script answeringOneLink(const std::string& reply);

/// A loopback port on which nobody listens, kept so for as long as this lives.
class DeafPort
{
public:
    int port() const { return kit::portOf(fSocket); }

private:
    const kit::Descriptor fSocket = kit::socketWithLoopbackPort();
};
