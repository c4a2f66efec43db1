// SPDX-License-Identifier: MIT
#pragma once

#include "link/node.h"
#include "link/peer.h"

#include <zo/broker_options.h>

#include <memory>
#include <optional>
#include <string>

namespace zo {

/// Whom a link reaches, and how. Never changes: other options are other settings.
struct LinkSettings
{
    LinkSettings(const std::string& host, int port, const ZoBrokerOptions& wanted,
                 const std::string& name);
    /// Those of the same robot and broker as `last`, with other options.
    LinkSettings(const LinkSettings& last, const ZoBrokerOptions& wanted);
    ~LinkSettings(); ///< wipes the password
    LinkSettings(const LinkSettings&) = delete;
    LinkSettings& operator=(const LinkSettings&) = delete;

    /// Behind a socket the robot has no address: this machine's own stands for it.
    const std::string& hostToLookUp(const ZoAddress& node) const;
    /// The slot of the robot's keys, if one it is, wherever that counts: with a tag in the prefix.
    std::optional<int> slot() const;
    /// Whether it has to be found out that the server is none of a cluster, where a prefix like
    /// this one would spread the robot's keys over all nodes.
    bool wouldScatter() const;

    /// What is thrown when the server answers `command` with the error `text`.
    ZoError refusal(const std::string& command, const std::string& text) const;

    Peer peer;
    ZoBrokerOptions options; ///< each duration within bounds that no sum can overflow
    std::string clientName;  ///< as the server's list of clients shows this one
    Nodes nodes;             ///< the addresses that are given: one at least
};

/// Settings for the robot at `host` and `port`, for the broker called `name`. Throws ZoError when
/// there is no such address, or no such prefix.
std::shared_ptr<const LinkSettings> makeLinkSettings(const std::string& host, int port,
                                                     const ZoBrokerOptions& options,
                                                     const std::string& name);

/// Whether they lead to the same robot in the same way, whatever is done there and under which
/// name.
bool isSameWay(const LinkSettings& one, const LinkSettings& other);

} // namespace zo
