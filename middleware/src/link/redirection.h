// SPDX-License-Identifier: MIT
#pragma once

#include <zo/address.h>

#include <optional>
#include <string>
#include <string_view>

namespace zo {

/// What an error of a node tells about where keys are in its cluster.
struct Redirection
{
    enum class Kind
    {
        None,     ///< it is about something else
        Moved,    ///< another node has the slot
        Ask,      ///< the slot is moving, and this key is at the other node, or nowhere
        TryAgain, ///< the slot is moving, and not all of these keys are here
        ClusterDown,
        CrossSlot, ///< these keys are in several slots
        ReadOnly   ///< it is a replica, which takes no writes
    };

    Kind kind = Kind::None;
    std::optional<ZoAddress> node = {}; ///< the other one, if it is told
};

/// What `error` tells that came from a node at `host`: that stands where the node tells none.
Redirection readRedirection(std::string_view error, const std::string& host);

/// Whether `error` says of keys that they are just moving to another node.
bool isMoving(std::string_view error);

} // namespace zo
