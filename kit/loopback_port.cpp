// SPDX-License-Identifier: MIT
#include <kit/loopback_port.h>

#include <arpa/inet.h>
#include <cerrno>
#include <cstdint>
#include <netinet/in.h>
#include <sys/socket.h>
#include <system_error>

namespace kit {

namespace {

Descriptor newSocket()
{
    return Descriptor(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
}

/// Whether `socket` could have the port; 0: any that is free.
bool bindTo(int port, const Descriptor& socket)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    return socket.get() >= 0 &&
           ::bind(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
}

[[noreturn]] void throwNoPort()
{
    throw std::system_error(errno, std::generic_category(), "no free port on 127.0.0.1");
}

} // namespace

// Not to be shared: with SO_REUSEADDR, who has it too could take a port on which nobody listens.
Descriptor socketWithLoopbackPort()
{
    Descriptor socket = newSocket();
    if (!bindTo(0, socket))
        throwNoPort();
    return socket;
}

int portOf(const Descriptor& socket)
{
    sockaddr_in address{};
    socklen_t size = sizeof address;
    if (::getsockname(socket.get(), reinterpret_cast<sockaddr*>(&address), &size) != 0)
        throwNoPort();
    return ntohs(address.sin_port);
}

int freeLoopbackPort()
{
    return portOf(socketWithLoopbackPort());
}

bool isLoopbackPortFree(int port)
{
    const Descriptor socket = newSocket();
    const int on = 1; // as a server does: the last one's old connections are in nobody's way
    ::setsockopt(socket.get(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    return bindTo(port, socket);
}

} // namespace kit
