// SPDX-License-Identifier: MIT
#include "memory/robot_link.h"

#include <algorithm>
#include <mutex>
#include <vector>

namespace zo {

namespace {

/// The links of this process.
class RobotLinks
{
public:
    /// The one with `settings`, or a new one. Does not wait for it.
    std::shared_ptr<RobotLink> with(const std::shared_ptr<const LinkSettings>& settings)
    {
        // They outlive the lock: the last reference to one may be here, and its end takes time.
        std::vector<std::shared_ptr<RobotLink>> present;
        const std::lock_guard<std::mutex> lock(fMutex);
        fLinks.erase(std::remove_if(fLinks.begin(), fLinks.end(),
                                    [](const auto& link) { return link.expired(); }),
                     fLinks.end());
        for (const auto& known : fLinks) {
            present.push_back(known.lock());
            if (present.back() && present.back()->isFor(*settings))
                return present.back();
        }
        auto made = std::make_shared<RobotLink>(settings);
        fLinks.push_back(made);
        return made;
    }

private:
    std::mutex fMutex;
    std::vector<std::weak_ptr<RobotLink>> fLinks;
};

RobotLinks& robotLinks()
{
    // Never destroyed: brokers at namespace scope may be made and end at any time.
    static auto* const links = new RobotLinks;
    return *links;
}

std::shared_ptr<Following> followingFor(const ZoBrokerOptions& options)
{
    return options.follow ? std::make_shared<Following>(options.notices, options.prefix) : nullptr;
}

} // namespace

RobotLink::RobotLink(const std::shared_ptr<const LinkSettings>& settings)
    : prefix(settings->options.prefix),
      wantsNotices(settings->options.notices),
      following(followingFor(settings->options)),
      link(settings, following)
{
}

bool RobotLink::isFor(const LinkSettings& settings) const
{
    const ZoBrokerOptions& options = settings.options;
    // The settings as they are now: it may have been reconnected with others.
    return isSameWay(*link.settings(), settings) && wantsNotices == options.notices &&
           (following != nullptr) == options.follow;
}

std::shared_ptr<RobotLink> beginRobotLink(const std::shared_ptr<const LinkSettings>& settings)
{
    auto robot = robotLinks().with(settings);
    robot->link.beginAnewIfDown();
    return robot;
}

} // namespace zo
