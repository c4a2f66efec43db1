// SPDX-License-Identifier: MIT
#include "link/peer.h"

#include "value/printable.h"

#include <zo/address.h>

#include <algorithm>
#include <utility>

namespace {

bool canBeHost(const std::string& host)
{
    return !host.empty() && std::all_of(host.begin(), host.end(), [](char c) {
        return static_cast<unsigned char>(c) > 0x20 && c != 0x7f;
    });
}

} // namespace

Peer::Peer(std::string host, int port, std::string secret)
    : fHost(std::move(host)), fPort(port), fSecret(std::move(secret))
{
    if (!canBeHost(fHost))
        throw ZoError("robot address \"" + printable(fHost) +
                      "\" is neither an address nor a host name");
    if (port < 1 || port > 65535)
        throw ZoError("robot at " + fHost + ": port " + std::to_string(port) +
                      " is not between 1 and 65535");
}

std::string Peer::says(const std::string& problem) const
{
    const bool isIpv6 = fHost.find(':') != std::string::npos;
    return "robot at " + (isIpv6 ? "[" + fHost + "]" : fHost) + ":" + std::to_string(fPort) + ": " +
           problem;
}

ZoError Peer::error(const std::string& problem) const
{
    return ZoError(says(problem));
}

std::string Peer::quote(std::string_view text) const
{
    std::string result(text);
    if (!fSecret.empty()) {
        for (auto at = result.find(fSecret); at != std::string::npos;
             at = result.find(fSecret, at + 3))
            result.replace(at, fSecret.size(), "***");
    }
    return printable(result);
}
