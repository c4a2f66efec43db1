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

// The first page is short: nobody knows the way yet. Each is twice the one before it as long as
// that leaves it time enough.
constexpr int longestPage = 10 * keysPerCommand;

/// Pages that come may take so many times what one may.
constexpr int mostWaits = 15;

/// The walk over the pages of the list.
class NamesWalk
{
public:
    explicit NamesWalk(Link& link) : fLink(link) {}

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
        const std::string count = std::to_string(fPage);
        const auto asked = SteadyClock::now();
        auto bytes = encodeCommand({"SCAN", cursor, "COUNT", count, "TYPE", "string"});
        fLink.run(
            std::make_shared<Call>("SCAN", sharedText(std::move(bytes)), 1, sink, deadline()));
        if (!sink->refusal().empty())
            throw fLink.refusal("SCAN", sink->refusal());
        const std::size_t known = fNames.size();
        for (std::string& name : sink->names())
            add(std::move(name));
        const auto now = SteadyClock::now();
        if (now - asked < allowed() / 2)
            fPage = std::min(2 * fPage, longestPage);
        if (fNames.size() > known)
            fLastNews = now;
        return sink->cursor();
    }

    void add(std::string name)
    {
        fMemory += placeOfName + name.size();
        if (fMemory > ReplyLimits::fMaxReply)
            throw fLink.error("the key list is larger than " + inMebibytes(ReplyLimits::fMaxReply));
        fNames.insert(std::move(name));
    }

    std::chrono::milliseconds allowed() const
    {
        return std::max(fSettings->options.keyListTimeout, fSettings->options.exchangeTimeout);
    }

    /// A page with names that are new gives the next one its time; a robot that goes on for ever
    /// comes to an end all the same.
    Deadline deadline() const
    {
        const auto keys = static_cast<std::chrono::microseconds::rep>(fNames.size());
        const auto forKeys = fSettings->options.timeoutPerKey * keys;
        const auto page = Deadline::after(fLastNews, allowed() + forKeys);
        const auto all = Deadline::after(fStart, mostWaits * allowed() + forKeys);
        return page.at < all.at ? page : all;
    }

    Link& fLink;
    const std::shared_ptr<const LinkSettings> fSettings = fLink.settings();
    const SteadyClock::time_point fStart = SteadyClock::now();
    SteadyClock::time_point fLastNews = fStart; ///< when the last name came that was new
    int fPage = keysPerCommand;                 ///< names, about
    std::unordered_set<std::string> fNames;
    std::size_t fMemory = 0; ///< that the names take
};

} // namespace

ZoValue namesOf(Link& link)
{
    return NamesWalk(link).names();
}

} // namespace zo
