// SPDX-License-Identifier: MIT
#include "support/fake_robot.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace {

int boundSocket(int& port)
{
    const int bound = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* generic = reinterpret_cast<sockaddr*>(&address);
    if (bound < 0 || ::bind(bound, generic, size) != 0 || ::getsockname(bound, generic, &size) != 0)
        throw std::runtime_error("no free loopback port");
    port = ntohs(address.sin_port);
    return bound;
}

} // namespace

std::vector<std::string> FakeConnection::readCommand()
{
    std::vector<std::string> words;
    const std::string count = readLine();
    for (int left = std::stoi(count.substr(1)); left > 0; --left) {
        const std::string size = readLine();
        words.push_back(readBytes(std::stoul(size.substr(1))));
        readBytes(2);
    }
    return words;
}

std::string FakeConnection::readLine()
{
    std::string line;
    while (line.empty() || line.back() != '\n')
        line += readBytes(1);
    return line.substr(0, line.size() - 2);
}

std::string FakeConnection::readBytes(std::size_t size)
{
    while (fRead.size() < size) {
        char block[65536];
        const ssize_t got = ::recv(fSocket, block, sizeof block, 0);
        if (got <= 0)
            throw Closed();
        fRead.append(block, static_cast<std::size_t>(got));
    }
    std::string bytes = fRead.substr(0, size);
    fRead.erase(0, size);
    return bytes;
}

void FakeConnection::send(std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t sent = ::send(fSocket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent <= 0)
            throw Closed();
        bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
}

void FakeConnection::sendSlowly(std::string_view bytes)
{
    for (const char byte : bytes) {
        send({&byte, 1});
        ::poll(nullptr, 0, 10);
    }
}

void FakeConnection::waitForEnd()
{
    while (true)
        readBytes(1);
}

void FakeConnection::greet()
{
    readCommand();
    send("+PONG\r\n");
    readCommand();
    send("+OK\r\n");
}

FakeRobot::FakeRobot(Script script) : fScript(std::move(script)), fListener(boundSocket(fPort))
{
    ::listen(fListener, 5);
    fThread = std::thread([this] { serve(); });
}

FakeRobot::~FakeRobot()
{
    {
        const std::lock_guard<std::mutex> lock(fMutex);
        fIsEnding = true;
        ::shutdown(fListener, SHUT_RDWR);
        if (fCurrent >= 0)
            ::shutdown(fCurrent, SHUT_RDWR);
    }
    fThread.join();
    ::close(fListener);
}

void FakeRobot::serve()
{
    for (int number = 0;; ++number) {
        const int socket = ::accept4(fListener, nullptr, nullptr, SOCK_CLOEXEC);
        {
            const std::lock_guard<std::mutex> lock(fMutex);
            fCurrent = fIsEnding ? -1 : socket;
        }
        if (fCurrent >= 0)
            serveOne(socket, number);
        if (socket >= 0)
            ::close(socket);
        const std::lock_guard<std::mutex> lock(fMutex);
        fCurrent = -1;
        if (fIsEnding)
            return;
    }
}

void FakeRobot::serveOne(int socket, int number)
{
    FakeConnection connection(socket, number);
    try {
        fScript(connection);
    } catch (const FakeConnection::Closed&) {
        // The other side has had enough.
    }
    const std::lock_guard<std::mutex> lock(fMutex);
    fCurrent = -1;
}

DeafPort::DeafPort() : fSocket(boundSocket(fPort)) {}

DeafPort::~DeafPort()
{
    ::close(fSocket);
}
