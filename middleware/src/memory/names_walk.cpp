// SPDX-License-Identifier: MIT
#include "memory/names_walk.h"

#include "link/link.h"
#include "memory/keys_per_command.h"
#include "memory/names_sink.h"
#include "wire/limits.h"
#include "wire/request.h"

#include <zo/error.h>

#include <algorithm>
#include <memory>
#include <string>
#include <unordered_set>
#include <utility>

namespace zo {

namespace {

/// What a name takes at most beside its bytes: its node in the set, its share of the set's table,
/// what a block of its own rounds it up by, and its place in the answer.
constexpr std::size_t placeOfName = 64 + 3 * sizeof(void*) + 3 * sizeof(void*) + sizeof(ZoValue);

/// The walk over the pages of the list.
class NamesWalk
{
public:
    explicit NamesWalk(Link& link) : fLink(link), fStart(SteadyClock::now()) {}

    ZoValue names()
    {
        std::string cursor = "0";
        do {
            cursor = takePage(cursor);
        } while (cursor != "0");
        ZoValue::Elements all;
        all.reserve(fNames.size());
        while (!fNames.empty())
            all.emplace_back(std::move(fNames.extract(fNames.begin()).value()));
        return ZoValue::fromElements(std::move(all));
    }

private:
    std::string takePage(const std::string& cursor)
    {
        const auto sink = std::make_shared<NamesSink>();
        const std::string count = std::to_string(keysPerCommand);
        auto bytes = encodeCommand({"SCAN", cursor, "COUNT", count, "TYPE", "string"});
        fLink.run(
            std::make_shared<Call>("SCAN", sharedText(std::move(bytes)), 1, sink, deadline()));
        if (!sink->refusal().empty())
            throw fLink.refusal("SCAN", sink->refusal());
        for (std::string& name : sink->names())
            add(std::move(name));
        return sink->cursor();
    }

    void add(std::string name)
    {
        fMemory += placeOfName + name.size();
        if (fMemory > ReplyLimits::fMaxReply)
            throw fLink.error("the key list is larger than " + inMebibytes(ReplyLimits::fMaxReply));
        fNames.insert(std::move(name));
    }

    Deadline deadline() const
    {
        const auto settings = fLink.settings();
        const ZoBrokerOptions& options = settings->options;
        const auto keys = static_cast<std::chrono::microseconds::rep>(fNames.size());
        const auto allowed = std::max(options.keyListTimeout, options.exchangeTimeout);
        return Deadline::after(fStart, allowed + options.timeoutPerKey * keys);
    }

    Link& fLink;
    const SteadyClock::time_point fStart;
    std::unordered_set<std::string> fNames;
    std::size_t fMemory = 0; ///< that the names take
};

} // namespace

ZoValue namesOf(Link& link)
{
    return NamesWalk(link).names();
}

} // namespace zo
