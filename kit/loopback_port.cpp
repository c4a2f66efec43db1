// SPDX-License-Identifier: MIT
#include <kit/descriptor.h>
#include <kit/loopback_port.h>

#include <arpa/inet.h>
#include <cerrno>
#include <cstdint>
#include <netinet/in.h>
#include <sys/socket.h>
#include <system_error>

namespace kit {

namespace {

/// A socket bound to the port, 0 for any that is free; none when that fails.
Descriptor boundTo(int port)
{
    Descriptor socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const int on = 1;
    ::setsockopt(socket.get(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    if (::bind(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        return Descriptor();
    return socket;
}

} // namespace

int freeLoopbackPort()
{
    const Descriptor socket = boundTo(0);
    sockaddr_in address{};
    socklen_t size = sizeof address;
    if (::getsockname(socket.get(), reinterpret_cast<sockaddr*>(&address), &size) != 0)
        throw std::system_error(errno, std::generic_category(), "no free port on 127.0.0.1");
    return ntohs(address.sin_port);
}

bool isLoopbackPortFree(int port)
{
    return boundTo(port).isOpen();
}

} // namespace kit
