// SPDX-License-Identifier: MIT
#include "memory/names_walk.h"

#include "link/link.h"
#include "link/redirection.h"
#include "memory/key_prefix.h"
#include "memory/key_text.h"
#include "memory/keys_per_command.h"
#include "memory/names_sink.h"
#include "wire/limits.h"
#include "wire/request.h"
#include "wire/server_error.h"
#include "wire/status_sink.h"

#include <zo/error.h>

#include <algorithm>
#include <memory>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

namespace zo {

namespace {

/// What a name takes at most beside its bytes: its node in the set, its share of the set's table,
/// what a block of its own rounds it up by, and its place in the answer.
constexpr std::size_t placeOfName = 64 + 3 * sizeof(void*) + 3 * sizeof(void*) + sizeof(ZoValue);

// The first page is short: nobody knows the way yet. Each is twice the one before it as long as
// that leaves it time enough.
constexpr int longestPage = 10 * keysPerCommand;

constexpr const char* textKind = "string";

/// Pages that come may take so many times what one may.
constexpr int mostWaits = 15;

/// The walk over the pages of the list.
class NamesWalk
{
public:
    NamesWalk(const LinkSettings& settings, const AskForNames& ask, const std::string& ending)
        : fSettings(settings),
          fAsk(ask),
          fEnding(ending),
          fPattern(patternOf(settings.options.prefix, ending))
    {
    }

    ZoValue names()
    {
        const auto slot = fSettings.slot();
        if (!slot || !takeSlot(*slot))
            takePages();
        ZoValue::Elements all;
        all.reserve(fNames.size());
        while (!fNames.empty())
            all.emplace_back(std::move(fNames.extract(fNames.begin()).value()));
        return ZoValue::fromElements(std::move(all));
    }

private:
    void takePages()
    {
        std::string cursor = "0";
        do {
            cursor = takePage(cursor);
        } while (cursor != "0");
    }

    /// In a cluster the slot knows its keys: nobody goes through those of a whole fleet. Whether
    /// the server tells us. A node that has not all of them any more knows none, either, by going
    /// through what it has.
    bool takeSlot(int slot)
    {
        const std::string& prefix = fSettings.options.prefix;
        const auto sink = std::make_shared<SlotNamesSink>();
        run("CLUSTER GETKEYSINSLOT", encodeKeysInSlot(slot, prefix), 2, sink);
        for (const std::string& refusal : sink->refusals()) {
            if (!isForbidden(refusal) && !isUnknown(refusal))
                throw fSettings.refusal("the key list", refusal);
        }
        if (!sink->refusals().empty())
            return false;
        if (sink->isCut())
            throw tooLarge();
        std::vector<std::string> some;
        for (std::string& name : sink->names()) {
            if (nameBehind(prefix, name))
                some.push_back(std::move(name));
            if (some.size() == std::size_t{longestPage} && !takeTexts(some))
                return false;
        }
        return takeTexts(some);
    }

    /// Takes those of text keys, and leaves none. Whether the server tells which they are.
    bool takeTexts(std::vector<std::string>& some)
    {
        if (!dropOthers(some))
            return false;
        for (const std::string& name : some)
            add(name);
        some.clear();
        fLastNews = SteadyClock::now();
        return true;
    }

    std::string takePage(const std::string& cursor)
    {
        const auto asked = SteadyClock::now();
        const auto sink = askPage(cursor);
        if (!sink->refusal().empty())
            throw fSettings.refusal("SCAN", sink->refusal());
        if (sink->isCut())
            throw tooLarge();
        const std::size_t known = fNames.size();
        for (const std::string& name : sink->names())
            add(name);
        const auto now = SteadyClock::now();
        if (now - asked < allowed() / 2)
            fPage = std::min(2 * fPage, longestPage);
        // Between the robot's keys may be any number of others': then a page is news by itself.
        if (fNames.size() > known || !fPattern.empty())
            fLastNews = now;
        return sink->cursor();
    }

    std::shared_ptr<NamesSink> askPage(const std::string& cursor)
    {
        auto sink = std::make_shared<NamesSink>();
        run("SCAN", encodeScan(cursor, fPage, fKnowsKinds ? textKind : "", fPattern), 1, sink);
        if (fKnowsKinds && sink->knowsNoKinds()) {
            fKnowsKinds = false;
            return askPage(cursor);
        }
        if (!fKnowsKinds)
            dropOthers(sink->names());
        return sink;
    }

    /// Leaves the names of text keys. Whether the server tells which they are.
    bool dropOthers(std::vector<std::string>& names)
    {
        std::string bytes;
        for (const std::string& name : names)
            appendCommand({"TYPE", name}, bytes);
        const auto kinds = std::make_shared<StatusSink>("TYPE");
        if (!names.empty())
            run("TYPE", std::move(bytes), static_cast<int>(names.size()), kinds);
        bool isTold = true;
        for (const StatusSink::Answer& answer : kinds->answers()) {
            if (answer.isError && readRedirection(answer.text, {}).kind != Redirection::Kind::None)
                throw fSettings.refusal("TYPE", answer.text);
            isTold = isTold && !answer.isError;
        }
        auto kind = kinds->answers().begin();
        names.erase(std::remove_if(names.begin(), names.end(),
                                   [&](const std::string&) { return kind++->text != textKind; }),
                    names.end());
        return isTold;
    }

    void run(const char* name, std::string bytes, int replies,
             const std::shared_ptr<ReplySink>& sink)
    {
        fAsk(name, sharedText(std::move(bytes)), replies, sink, deadline());
    }

    /// The server may have sent what was not asked for.
    void add(const std::string& whole)
    {
        const auto name = nameBehind(fSettings.options.prefix, whole);
        if (!name || !endsWith(*name, fEnding))
            return;
        fMemory += placeOfName + name->size();
        if (fMemory > ReplyLimits::fMaxKept)
            throw tooLarge();
        fNames.emplace(*name);
    }

    ZoError tooLarge() const
    {
        return fSettings.peer.error("the key list is larger than " +
                                    inMebibytes(ReplyLimits::fMaxKept));
    }

    std::chrono::milliseconds allowed() const
    {
        return std::max(fSettings.options.keyListTimeout, fSettings.options.exchangeTimeout);
    }

    /// A page with names that are new gives the next one its time; a robot that goes on for ever
    /// comes to an end all the same.
    Deadline deadline() const
    {
        const auto keys = static_cast<std::chrono::microseconds::rep>(fNames.size());
        const auto forKeys = fSettings.options.timeoutPerKey * keys;
        const auto page = Deadline::after(fLastNews, allowed() + forKeys);
        const auto all = Deadline::after(fStart, mostWaits * allowed() + forKeys);
        return page.at < all.at ? page : all;
    }

    const LinkSettings& fSettings;
    const AskForNames& fAsk;
    const std::string& fEnding;
    const std::string fPattern;
    const SteadyClock::time_point fStart = SteadyClock::now();
    SteadyClock::time_point fLastNews = fStart; ///< when the last name came that was new, or page
    int fPage = keysPerCommand;                 ///< names, about
    bool fKnowsKinds = true;                    ///< the server can leave out keys of other kinds
    std::unordered_set<std::string> fNames;
    std::size_t fMemory = 0; ///< that the names take
};

} // namespace

ZoValue namesOf(Link& link, const std::string& ending)
{
    return namesOf(
        *link.settings(),
        [&link](const std::string& name, const SharedText& bytes, int replies,
                const std::shared_ptr<ReplySink>& sink, const Deadline& deadline) {
            link.run(std::make_shared<SideCall>(name, bytes, replies, sink, deadline));
        },
        ending);
}

ZoValue namesOf(const LinkSettings& settings, const AskForNames& ask, const std::string& ending)
{
    return NamesWalk(settings, ask, ending).names();
}

} // namespace zo
