// SPDX-License-Identifier: MIT
#pragma once

#include "link/link.h"
#include "memory/forbidden_keys.h"
#include "memory/list_request.h"
#include "memory/values_sink.h"

#include <zo/proxy.h>

#include <memory>
#include <mutex>
#include <string>

/// The robot's module "ZoMemory", behind a link. May be called from any thread.
class RemoteMemory : public ZoProxy
{
public:
    /// `forbidden` belongs to all proxies of `link`.
    RemoteMemory(std::shared_ptr<Link> link, std::shared_ptr<ForbiddenKeys> forbidden);

    ZoValue call(const std::string& method, const ZoValue& arguments) override;

private:
    ZoValue values(const ZoValue& request);
    std::shared_ptr<const ListRequest> encoded(const ZoValue& request, int connection);
    std::shared_ptr<ValuesSink> fetch(const std::shared_ptr<const ListRequest>& request,
                                      ZoValue::Elements values, const Deadline& deadline);
    ZoValue::Elements askKeyByKey(const ListRequest& request, ValuesSink& refused, int connection,
                                  const Deadline& deadline);
    void store(const std::string& key, const std::string& text);
    void storeAll(const ZoValue& pairs);
    /// Sends `commands` about `keys` keys, which so many one-line `replies` answer.
    void send(const std::string& what, std::shared_ptr<const std::string> commands, int replies,
              int keys);

    const std::shared_ptr<Link> fLink;
    const std::shared_ptr<ForbiddenKeys> fForbidden;

    std::mutex fMutex; ///< guards fLast
    std::shared_ptr<const ListRequest> fLast;
};
