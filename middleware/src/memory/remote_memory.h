// SPDX-License-Identifier: MIT
#pragma once

#include "memory/list_request.h"
#include "memory/memory_module.h"
#include "memory/robot_link.h"
#include "memory/store_request.h"
#include "memory/values_sink.h"

#include <memory>
#include <mutex>
#include <string>

namespace zo {

/// The robot's module "ZoMemory", behind a link. May be called from any thread.
class RemoteMemory : public MemoryModule
{
public:
    explicit RemoteMemory(std::shared_ptr<RobotLink> robot);

private:
    ZoListAnswer values(const ZoValue& request) override;
    ZoValue names() override;
    void store(const std::string& key, const std::string& text) override;
    void storeAll(const ZoValue& pairs) override;
    ZoError error(const std::string& problem) const override;

    struct Fetched
    {
        std::shared_ptr<ValuesSink> sink;
        SteadyClock::time_point arrived;
    };

    std::shared_ptr<const ListRequest> encoded(const ZoValue& request, int connection);
    Fetched fetch(const std::shared_ptr<const ListRequest>& request, ZoValue::Elements values,
                  const Deadline& deadline);
    Fetched askKeyByKey(const ListRequest& request, ValuesSink& refused, int connection,
                        const Deadline& deadline);
    void send(const std::string& what, const StoreRequest& request);

    const std::shared_ptr<RobotLink> fRobot;
    Link& fLink;                 ///< of fRobot
    Following* const fFollowing; ///< of fRobot

    std::mutex fMutex; ///< guards fLast
    std::shared_ptr<const ListRequest> fLast;
};

} // namespace zo
