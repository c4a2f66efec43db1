// SPDX-License-Identifier: MIT
#include "support/fake_robot.h"

#include <kit/loopback_port.h>

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

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

FakeRobot::FakeRobot(Script script)
    : fScript(std::move(script)),
      fListener(kit::socketWithLoopbackPort()),
      fPort(kit::portOf(fListener))
{
    ::listen(fListener.get(), 5);
    fThread = std::thread([this] { serve(); });
}

FakeRobot::~FakeRobot()
{
    {
        const std::lock_guard<std::mutex> lock(fMutex);
        fIsEnding = true;
        ::shutdown(fListener.get(), SHUT_RDWR);
        if (fCurrent >= 0)
            ::shutdown(fCurrent, SHUT_RDWR);
    }
    fThread.join();
}

void FakeRobot::serve()
{
    for (int number = 0;; ++number) {
        const int socket = ::accept4(fListener.get(), nullptr, nullptr, SOCK_CLOEXEC);
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

FakeRobot::Script answering(const std::string& reply)
{
    return [reply](FakeConnection& connection) {
        connection.greet();
        while (true) {
            connection.readCommand();
            connection.send(reply);
        }
    };
}

FakeRobot::Script answeringOneLink(const std::string& reply)
{
    return [reply](FakeConnection& connection) {
        if (connection.number() > 0)
            connection.waitForEnd();
        answering(reply)(connection);
    };
}
