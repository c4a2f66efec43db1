// SPDX-License-Identifier: MIT
#include <zo/broker.h>
#include <zo/check.h>
#include <zo/error.h>
#include <zo/memory_proxy.h>

#include "link/greeting.h"
#include "link/host_name.h"
#include "link/probe.h"
#include "memory/memory_methods.h"
#include "memory/names_sink.h"
#include "memory/notices_set_up.h"
#include "value/number_text.h"
#include "wire/request.h"
#include "wire/server_error.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <utility>
#include <vector>

namespace {

using zo::SteadyClock;
using Outcome = ZoCheck::Outcome;
using Subject = ZoCheck::Subject;

// So many keys tell whether any may be read.
constexpr std::size_t mostTriedKeys = 20;
constexpr int pings = 9;

/// What came of one step.
struct Finding
{
    Outcome outcome;
    std::string text;
};

Finding ok(std::string text)
{
    return {Outcome::Ok, std::move(text)};
}

Finding failed(std::string text)
{
    return {Outcome::Failed, std::move(text)};
}

Finding skipped(std::string text)
{
    return {Outcome::Skipped, std::move(text)};
}

/// Takes replies of any kind, and keeps the errors among them.
class ErrorSink : public zo::ReplySink
{
public:
    explicit ErrorSink(std::string command) : fCommand(std::move(command)) {}

    const std::vector<std::string>& errors() const { return fErrors; }

    [[nodiscard]] bool take(const zo::ReplyPlace& place, const zo::ReplyPiece& piece) override
    {
        if (place.depth == 0 && piece.kind == zo::ReplyKind::Error)
            fErrors.emplace_back(piece.text);
        return true;
    }
    std::string nameOf(const zo::ReplyPlace&) const override { return "the reply to " + fCommand; }

private:
    const std::string fCommand;
    std::vector<std::string> fErrors;
};

std::string textOf(const zo::LinkAddress& address)
{
    return ZoAddress{address.address().to_string(), address.port()}.toText();
}

std::string counted(std::size_t count, const std::string& word)
{
    return std::to_string(count) + " " + word + (count == 1 ? "" : "s");
}

/// In milliseconds, with two decimals at most.
std::string textOf(SteadyClock::duration time)
{
    std::string text;
    const auto hundredths = std::chrono::duration<double, std::ratio<1, 100000>>(time).count();
    zo::appendNumber(std::round(hundredths) / 100, text);
    return text + " ms";
}

/// The steps of a check, each of which needs those before it.
class Steps
{
public:
    Steps(std::shared_ptr<const zo::LinkSettings> settings, const ZoCheck::Tell& tell)
        : fSettings(std::move(settings)), fTell(tell), fProbe(fSettings), fGreeting(*fSettings)
    {
    }

    /// Whether none has failed.
    bool run()
    {
        const std::pair<Subject, Finding (Steps::*)()> all[] = {
            {Subject::LookUp, &Steps::lookUp},        {Subject::Connection, &Steps::connect},
            {Subject::Tls, &Steps::encrypt},          {Subject::Answer, &Steps::greet},
            {Subject::Readiness, &Steps::isReady},    {Subject::Login, &Steps::logIn},
            {Subject::Rights, &Steps::tryRights},     {Subject::Server, &Steps::askServer},
            {Subject::Keys, &Steps::countKeys},       {Subject::RoundTrip, &Steps::measure},
            {Subject::Notices, &Steps::askForNotices}};
        bool isGood = true;
        for (const auto& [subject, step] : all) {
            const Outcome outcome = make(subject, step);
            isGood = isGood && outcome != Outcome::Failed;
            if (outcome == Outcome::Failed && (subject <= Subject::Login || fIsBroken))
                break;
        }
        return isGood;
    }

private:
    Outcome make(Subject subject, Finding (Steps::*step)())
    {
        Finding finding;
        try {
            finding = (this->*step)();
        } catch (const ZoError& error) {
            finding = failed(quoted(error.toString()));
            fIsBroken = true;
        }
        fTell({subject, finding.outcome, finding.text});
        return finding.outcome;
    }

    const ZoBrokerOptions& options() const { return fSettings->options; }
    std::string quoted(const std::string& text) const { return fSettings->peer.quote(text); }
    template <class Sink>
    void ask(const std::string& name, std::string bytes, int replies,
             const std::shared_ptr<Sink>& sink)
    {
        fProbe.ask(zo::Inquiry(name, zo::sharedText(std::move(bytes)), replies, sink));
    }

    Finding lookUp();
    Finding connect();
    Finding encrypt();
    Finding greet();
    Finding isReady();
    Finding logIn();
    Finding tryRights();
    Finding tryToRead();
    Finding askServer();
    Finding countKeys();
    Finding measure();
    Finding askForNotices();

    const std::shared_ptr<const zo::LinkSettings> fSettings;
    const ZoCheck::Tell& fTell;
    zo::Probe fProbe;
    zo::Greeting fGreeting;
    bool fIsBroken = false; ///< the connection

    // What the steps before have found.
    std::vector<zo::LinkAddress> fAddresses;
    std::vector<std::string> fKeys; ///< some of them
    bool fMayList = false;
    const std::shared_ptr<zo::HelloSink> fHello = std::make_shared<zo::HelloSink>();
};

Finding Steps::lookUp()
{
    fAddresses = fProbe.lookUp();
    const std::string& host = fSettings->peer.host();
    if (zo::isNumericHost(host))
        return ok(host + " is an address");
    std::string text = host + " is ";
    for (const zo::LinkAddress& address : fAddresses)
        text += (address == fAddresses.front() ? "" : ", ") + address.address().to_string();
    return ok(text);
}

Finding Steps::connect()
{
    std::string problems;
    for (const zo::LinkAddress& address : fAddresses) {
        try {
            fProbe.connect(address);
            return ok(textOf(address) + " answers" + (problems.empty() ? "" : "; " + problems));
        } catch (const ZoError& error) {
            problems += (problems.empty() ? "" : "; ") + textOf(address) + ": " + error.toString();
        }
    }
    return failed(problems);
}

Finding Steps::encrypt()
{
    if (!options().tls)
        return skipped("not asked for");
    const zo::TlsFacts facts = fProbe.startTls();
    return ok(facts.version + ", certificate of " + quoted(facts.subject) + ", valid until " +
              facts.validUntil + (facts.isChecked ? "" : ", not checked"));
}

Finding Steps::greet()
{
    try {
        fProbe.ask(*fGreeting.inquiry());
    } catch (const ZoError&) {
        // One that has no place, or serves its own machine only, says so and hangs up.
        if (fGreeting.verdict() == zo::Greeting::Verdict::Pending)
            throw;
    }
    return ok("it speaks the protocol of a robot's memory");
}

Finding Steps::isReady()
{
    if (fGreeting.verdict() == zo::Greeting::Verdict::NotReady)
        return failed(fGreeting.problem(fSettings->peer));
    return ok("it is");
}

Finding Steps::logIn()
{
    if (fGreeting.verdict() == zo::Greeting::Verdict::Refused)
        return failed(fGreeting.problem(fSettings->peer));
    if (!options().user.empty())
        return ok("as " + quoted(options().user));
    return ok(options().password.empty() ? "none needed" : "as the default user");
}

Finding Steps::tryRights()
{
    const auto page = std::make_shared<zo::NamesSink>();
    const std::string count = std::to_string(mostTriedKeys);
    ask("SCAN", zo::encodeCommand({"SCAN", "0", "COUNT", count, "TYPE", "string"}), 1, page);
    fMayList = page->refusal().empty();
    fKeys = std::move(page->names());
    fKeys.resize(std::min(fKeys.size(), mostTriedKeys));
    const Finding reading = tryToRead();
    if (fMayList)
        return {reading.outcome, "SCAN is allowed; " + reading.text};
    return failed("SCAN is refused: " + quoted(page->refusal()) + "; " + reading.text);
}

Finding Steps::tryToRead()
{
    const std::vector<std::string> tried = fKeys.empty() ? std::vector<std::string>{"Key"} : fKeys;
    std::string bytes;
    for (const std::string& key : tried)
        zo::appendCommand({"MGET", key}, bytes);
    const auto sink = std::make_shared<ErrorSink>("MGET");
    ask("MGET", std::move(bytes), static_cast<int>(tried.size()), sink);
    const auto& errors = sink->errors();
    if (errors.empty())
        return ok("MGET is allowed");
    if (fKeys.empty() && zo::isKeyForbidden(errors.front()))
        return ok("MGET is allowed, but not for every key");
    if (errors.size() < tried.size())
        return ok("MGET is allowed for " + std::to_string(tried.size() - errors.size()) +
                  " of the first " + counted(tried.size(), "key"));
    return failed("MGET is refused: " + quoted(errors.front()));
}

Finding Steps::askServer()
{
    ask("HELLO", zo::encodeCommand({"HELLO", "3"}), 1, fHello);
    if (!fHello->refusal().empty())
        return skipped("it does not tell: " + quoted(fHello->refusal()));
    return ok(quoted(fHello->server()) + " " + quoted(fHello->version()));
}

// As every other program does, on a link of its own.
Finding Steps::countKeys()
{
    if (!fMayList)
        return skipped("they cannot be listed");
    try {
        ZoBrokerOptions plain = options();
        plain.follow = false;
        const auto broker = ZoBroker::create(fSettings->clientName, fSettings->peer.host(),
                                             fSettings->peer.port(), plain);
        ZoMemoryProxy memory(broker->getProxy(zo::memoryModuleName, 0));
        const auto start = SteadyClock::now();
        const std::size_t count = memory.getDataListName().size();
        return ok(counted(count, "key") + ", listed in " + textOf(SteadyClock::now() - start));
    } catch (const ZoError& error) {
        return failed(error.toString());
    }
}

Finding Steps::measure()
{
    std::array<SteadyClock::duration, pings> times;
    for (SteadyClock::duration& time : times) {
        const auto sink = std::make_shared<ErrorSink>("PING"); // a refusal takes the same way
        const auto start = SteadyClock::now();
        ask("PING", zo::encodeCommand({"PING"}), 1, sink);
        time = SteadyClock::now() - start;
    }
    std::sort(times.begin(), times.end());
    return ok(textOf(times[pings / 2]) + " in the median of " + std::to_string(pings) + ", " +
              textOf(times.front()) + " to " + textOf(times.back()));
}

Finding Steps::askForNotices()
{
    const std::string otherwise = "; what is followed is read as a whole";
    if (!options().notices)
        return skipped("not wanted");
    if (!fHello->refusal().empty())
        return skipped("HELLO is refused" + otherwise);
    if (!zo::canSendNotices(fHello->version()))
        return skipped("the server is too old for that" + otherwise);
    const auto sink = std::make_shared<ErrorSink>("CLIENT TRACKING");
    ask("CLIENT TRACKING", zo::encodeCommand({"CLIENT", "TRACKING", "ON", "OPTOUT"}), 1, sink);
    if (!sink->errors().empty())
        return skipped("CLIENT TRACKING is refused: " + quoted(sink->errors().front()) + otherwise);
    return ok("the server tells what was written, and only that is read again");
}

} // namespace

bool ZoCheck::run(const ZoAddress& robot, const ZoBrokerOptions& options, const Tell& tell)
{
    return Steps(zo::makeLinkSettings(robot.host, robot.port, options, "zo-check"), tell).run();
}
