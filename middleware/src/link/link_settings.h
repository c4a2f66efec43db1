// SPDX-License-Identifier: MIT
#pragma once

#include "link/peer.h"

#include <zo/broker_options.h>

#include <memory>
#include <string>

namespace zo {

/// Whom a link reaches, and how. Never changes: other options are other settings.
struct LinkSettings
{
    LinkSettings(const std::string& host, int port, const ZoBrokerOptions& wanted,
                 const std::string& name);
    ~LinkSettings(); ///< wipes the password
    LinkSettings(const LinkSettings&) = delete;
    LinkSettings& operator=(const LinkSettings&) = delete;

    Peer peer;
    ZoBrokerOptions options; ///< each duration within bounds that no sum can overflow
    std::string clientName;  ///< as the server's list of clients shows this one
};

/// Settings for the robot at `host` and `port`, for the broker called `name`. Throws ZoError when
/// there is no such address.
std::shared_ptr<const LinkSettings> makeLinkSettings(const std::string& host, int port,
                                                     const ZoBrokerOptions& options,
                                                     const std::string& name);

/// Whether they lead to the same robot in the same way, whatever is done there and under which
/// name.
bool isSameWay(const LinkSettings& one, const LinkSettings& other);

} // namespace zo
