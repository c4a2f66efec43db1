// SPDX-License-Identifier: MIT
#pragma once

#include <zo/address.h>
#include <zo/error.h>

#include <string>
#include <string_view>

namespace zo {

/// The robot at the other end of a link, as addresses and messages name it.
class Peer
{
public:
    /// Throws ZoError when `host` or `port` cannot be an address.
    Peer(std::string host, int port, const std::string& secret);
    ~Peer();
    Peer(const Peer&) = default;
    Peer& operator=(const Peer&) = delete;

    const std::string& host() const { return fAddress.host; }
    int port() const { return fAddress.port; }

    /// "robot at HOST:PORT: PROBLEM", the form of every message about this robot.
    std::string says(const std::string& problem) const;
    ZoError error(const std::string& problem) const;

    /// A text that came from the other side, made fit for a message: short, printable, and
    /// without the password, whatever the server put in.
    std::string quote(std::string_view text) const;

private:
    ZoAddress fAddress;
    std::string fSecret; ///< wiped in the end
};

} // namespace zo
