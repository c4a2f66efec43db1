// SPDX-License-Identifier: MIT
#pragma once

#include "link/link.h"

#include <memory>
#include <mutex>

namespace zo {

/// The way to the node that a robot's keys are just moving to: a second link, which is there while
/// it is used and a little longer. May be used from any thread.
class Detour
{
public:
    using Time = SteadyClock::time_point;

    /// A link that nobody has used for so long is ended.
    static constexpr std::chrono::seconds fMemory{10};

    /// The link to `node` of the robot that `settings` lead to. Opens it when it is not there, and
    /// waits for that until `deadline`. Throws ZoError when it does not open.
    std::shared_ptr<Link> to(const ZoAddress& node, const LinkSettings& settings, Time deadline);
    /// Ends it, if it is out of use at `now`.
    void tidy(Time now);

private:
    std::mutex fMutex;
    std::shared_ptr<Link> fLink; ///< null: none is needed
    Time fLastUse;
};

} // namespace zo
