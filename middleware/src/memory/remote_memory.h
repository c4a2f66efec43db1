// SPDX-License-Identifier: MIT
#pragma once

#include "memory/list_request.h"
#include "memory/memory_module.h"
#include "memory/robot_link.h"
#include "memory/store_request.h"
#include "memory/values_sink.h"

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace zo {

/// The robot's module "ZoMemory", behind a link. May be called from any thread.
class RemoteMemory : public MemoryModule
{
public:
    explicit RemoteMemory(std::shared_ptr<RobotLink> robot);

private:
    ZoListAnswer values(const ZoValue& request) override;
    ZoValue names(const std::string& ending) override;
    void store(const std::string& key, const std::string& text) override;
    ZoValue exchange(const std::string& key, const std::string& text) override;
    void storeAll(const ZoValue& pairs) override;
    ZoError error(const std::string& problem) const override;

    using ListRequestPtr = std::shared_ptr<const ListRequest>;

    struct Fetched
    {
        std::shared_ptr<ValuesSink> sink;
        SteadyClock::time_point arrived;
        std::uint64_t sent = 0; ///< the number of its last slice among all that the link has sent
        int tooLarge = 0;       ///< values that are left out because of their size
    };
    /// An answer whose call gave up: it may come later.
    struct Late
    {
        std::shared_ptr<ValuesSink> sink; ///< null: there is none
        std::uint64_t writes = 0;         ///< that had begun when it was asked for
    };

    static ZoListAnswer answerOf(const Fetched& fetched);
    Fetched read(const ZoValue& request);
    ZoListAnswer readBesideFollowing(const ZoValue& request);
    ListRequestPtr encoded(const ZoValue& request, int connection);
    Fetched fetchOrLate(const ListRequestPtr& request, const Deadline& deadline);
    std::optional<Fetched> late(const ListRequestPtr& request, const Deadline& deadline, Late next);
    Fetched fetch(const std::shared_ptr<ValuesSink>& sink, const Deadline& deadline);
    Fetched askKeyByKey(const ListRequest& request, const Fetched& refused, int connection,
                        const Deadline& deadline);
    Fetched askImporter(const ListRequest& request, const Fetched& asked,
                        const std::vector<int>& replies, const Deadline& deadline);
    std::shared_ptr<Call> runAtImporter(const std::string& name, const std::string& error,
                                        const SharedText& bytes, const Inquiry::Parts& parts,
                                        const std::shared_ptr<ReplySink>& sink,
                                        const Deadline& deadline);
    void writeAtImporter(const std::string& what, const StoreRequest& request,
                         const std::string& error, const std::shared_ptr<ReplySink>& sink,
                         const Deadline& deadline);
    void send(const std::string& what, const StoreRequest& request);
    void write(const std::string& what, const StoreRequest& request,
               const std::shared_ptr<ReplySink>& sink);

    const std::shared_ptr<RobotLink> fRobot;
    Link& fLink;                 ///< of fRobot
    Following* const fFollowing; ///< of fRobot

    std::mutex fMutex; ///< guards what follows
    ListRequestPtr fLast;
    Late fLate;
};

} // namespace zo
