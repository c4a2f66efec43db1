// SPDX-License-Identifier: MIT
#pragma once

#include "link/link.h"
#include "memory/detour.h"
#include "memory/following.h"
#include "memory/forbidden_keys.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>

namespace zo {

/// A link to a robot, with what its brokers and proxies know of that robot. It is opened once for
/// all of a process that want the same one, and ends with the last of them.
struct RobotLink
{
    /// Begins to connect. Throws ZoError when `settings` cannot be used.
    explicit RobotLink(const std::shared_ptr<const LinkSettings>& settings);

    /// Whether a broker with these `settings` can share it. May be called from any thread.
    bool isFor(const LinkSettings& settings) const;

    const std::string prefix; ///< of its keys on the server
    const bool wantsNotices;  ///< of what was written, from a server that can
    ForbiddenKeys forbidden;
    std::atomic<std::uint64_t> writes{0};       ///< of its own, that have begun
    const std::shared_ptr<Following> following; ///< null: lists are not followed
    Link link;
    Detour detour;
};

/// The link of this process to that robot with these options; a new one when there is none. Opens
/// it when it is down, and does not wait for that. Throws ZoError when `settings` cannot be used.
/// May be called from any thread.
std::shared_ptr<RobotLink> beginRobotLink(const std::shared_ptr<const LinkSettings>& settings);

} // namespace zo
