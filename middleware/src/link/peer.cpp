// SPDX-License-Identifier: MIT
#include "link/peer.h"

#include "link/host_name.h"
#include "link/secret_text.h"
#include "value/printable.h"

#include <utility>

namespace zo {

Peer::Peer(std::string host, int port, const std::string& secret)
    : fAddress{std::move(host), port}, fSecret(secret)
{
    if (!canBeHost(fAddress.host))
        throw ZoError("robot address \"" + printable(fAddress.host) +
                      "\" is neither an address nor a host name");
    if (port < 1 || port > ZoAddress::fHighestPort)
        throw ZoError("robot at " + fAddress.host + ": port " + std::to_string(port) +
                      " is not between 1 and " + std::to_string(ZoAddress::fHighestPort));
}

Peer::~Peer()
{
    wipe(fSecret);
}

std::string Peer::says(const std::string& problem) const
{
    return "robot at " + fAddress.toText() + ": " + problem;
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

} // namespace zo
