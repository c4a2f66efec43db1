// SPDX-License-Identifier: MIT
#include <zo/check.h>
#include <zo/error.h>

#include "link/greeting.h"
#include "link/host_name.h"
#include "link/owner_search.h"
#include "link/probe.h"
#include "memory/key_prefix.h"
#include "memory/list_request.h"
#include "memory/names_sink.h"
#include "memory/names_walk.h"
#include "memory/notices_set_up.h"
#include "memory/values_sink.h"
#include "value/number_text.h"
#include "wire/request.h"
#include "wire/server_error.h"
#include "wire/status_sink.h"

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

// So many keys tell whether any may be read. Among so many of a server's may be some of a robot
// that shares it.
constexpr int mostTriedKeys = 20;
constexpr int keysOfMany = 1000;
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

std::string textOf(const zo::LinkAddress& address)
{
    return ZoAddress{address.address().to_string(), address.port()}.toText();
}

std::string counted(std::size_t count, const std::string& word)
{
    return std::to_string(count) + " " + word + (count == 1 ? "" : "s");
}

/// The argument of getListData.
ZoValue requestOf(const std::vector<std::string>& keys)
{
    ZoValue::Elements wanted;
    for (const std::string& key : keys)
        wanted.push_back(ZoValue::fromElements({key, 0}));
    return ZoValue::fromElements(std::move(wanted));
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
    Steps(std::shared_ptr<const zo::LinkSettings> settings, const ZoCheck::Tell& tell,
          const ZoCheck::GoOn& goOn)
        : fSettings(std::move(settings)),
          fTell(tell),
          fProbe(fSettings, goOn),
          fGreeting(*fSettings, nullptr, options().sentinel.empty()),
          fSearch(fSettings)
    {
    }

    /// Whether none has failed.
    bool run()
    {
        const std::pair<Subject, Finding (Steps::*)()> all[] = {
            {Subject::LookUp, &Steps::lookUp},     {Subject::Connection, &Steps::connect},
            {Subject::Tls, &Steps::encrypt},       {Subject::Answer, &Steps::greet},
            {Subject::Readiness, &Steps::isReady}, {Subject::Login, &Steps::logIn},
            {Subject::Node, &Steps::findNode},     {Subject::Rights, &Steps::tryRights},
            {Subject::Server, &Steps::askServer},  {Subject::Keys, &Steps::countKeys},
            {Subject::RoundTrip, &Steps::measure}, {Subject::Notices, &Steps::tryNotices}};
        bool isGood = true;
        for (const auto& [subject, step] : all) {
            if (subject == Subject::Node && !isSearched())
                continue;
            const Outcome outcome = make(subject, step);
            isGood = isGood && outcome != Outcome::Failed;
            if (outcome == Outcome::Failed && (subject <= Subject::Node || fIsBroken))
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
    std::string lookUp(const zo::NodePtr& node);
    Finding connect();
    Finding encrypt();
    Finding greet();
    Finding isReady();
    Finding logIn();
    bool isSearched() const
    {
        return fSettings->slot() || fSettings->wouldScatter() || !options().sentinel.empty();
    }
    Finding findNode();
    void goTo(const zo::NodePtr& node);
    void greetAgain();
    std::shared_ptr<zo::NamesSink> listSome(const std::string& kind);
    Finding tryRights();
    Finding tryToRead();
    Finding askServer();
    Finding countKeys();
    void connectAnew();
    Finding measure();
    void askForNotices(const zo::NoticesSetUp::Question& question);
    Finding tryNotices();

    const std::shared_ptr<const zo::LinkSettings> fSettings;
    const ZoCheck::Tell& fTell;
    zo::Probe fProbe;
    zo::Greeting fGreeting;
    zo::OwnerSearch fSearch;
    bool fIsBroken = false; ///< the connection

    // What the steps before have found.
    std::vector<std::pair<zo::NodePtr, zo::LinkAddress>> fAddresses;
    zo::NodePtr fNode;              ///< that is asked
    std::vector<std::string> fKeys; ///< some of them
    zo::LinkAddress fAddress;       ///< the one that answers
    bool fMayList = false;
    bool fMayRead = false;
    zo::NoticesSetUp fNotices;
};

Finding Steps::lookUp()
{
    std::string text;
    for (const zo::NodePtr& node : fSettings->nodes) {
        text += text.empty() ? "" : "; ";
        try {
            text += lookUp(node);
        } catch (const ZoError& error) {
            text += fSettings->nodes.size() > 1 ? node->host + ": " : "";
            text += error.toString();
        }
    }
    if (fAddresses.empty())
        return failed(text);
    return options().socketPath.empty() ? ok(text) : skipped("left to the other end of the tunnel");
}

std::string Steps::lookUp(const zo::NodePtr& node)
{
    const auto addresses = fProbe.lookUp(*node);
    std::string text;
    for (const zo::LinkAddress& address : addresses) {
        text += (text.empty() ? "" : ", ") + address.address().to_string();
        fAddresses.emplace_back(node, address);
    }
    return node->host + (zo::isNumericHost(node->host) ? " is an address" : " is " + text);
}

Finding Steps::connect()
{
    std::string problems;
    for (const auto& [node, address] : fAddresses) {
        try {
            fProbe.connect(address, node->host);
            fNode = node;
            fAddress = address;
            if (!options().socketPath.empty())
                return ok("the tunnel is there");
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
    if (!options().sentinel.empty())
        return skipped("a sentinel is asked without");
    if (!options().user.empty())
        return ok("as " + quoted(options().user));
    return ok(options().password.empty() ? "none needed" : "as the default user");
}

/// Goes to the node that has the robot's keys, as a link does.
Finding Steps::findNode()
{
    fSearch.begin();
    for (;;) {
        const zo::OwnerSearch::Question& question = *fSearch.ask();
        ask(question.name, question.bytes, question.replies, question.sink);
        const zo::OwnerSearch::Lead lead = fSearch.judge(fNode);
        if (!lead.problem.empty())
            return failed(fNode->toText() + ": " + quoted(lead.problem));
        if (!lead.node)
            break;
        goTo(lead.node);
    }
    if (!options().sentinel.empty())
        return ok(fNode->toText() + " is the server \"" + quoted(options().sentinel) + '"');
    if (!fSearch.isInCluster())
        return ok("one server for all keys, or it does not tell of others");
    return ok(fNode->toText() + " has slot " + std::to_string(*fSettings->slot()) +
              " with the robot's keys");
}

void Steps::goTo(const zo::NodePtr& node)
{
    fNode = node;
    fAddresses.clear();
    lookUp(node);
    const Finding connection = connect();
    if (connection.outcome == Outcome::Failed)
        throw ZoError("node " + node->toText() + ": " + connection.text);
    greetAgain();
}

/// On another connection than the first one.
void Steps::greetAgain()
{
    if (options().tls)
        fProbe.startTls();
    const zo::Greeting greeting(*fSettings);
    fProbe.ask(*greeting.inquiry());
    if (greeting.verdict() != zo::Greeting::Verdict::Welcome)
        throw ZoError("node " + fNode->toText() + ": " + greeting.problem(fSettings->peer));
}

std::shared_ptr<zo::NamesSink> Steps::listSome(const std::string& kind)
{
    auto page = std::make_shared<zo::NamesSink>();
    const std::string pattern = zo::patternOf(options().prefix, {});
    ask("SCAN", zo::encodeScan("0", pattern.empty() ? mostTriedKeys : keysOfMany, kind, pattern), 1,
        page);
    return page;
}

Finding Steps::tryRights()
{
    auto page = listSome("string");
    if (page->knowsNoKinds())
        page = listSome("");
    fMayList = page->refusal().empty();
    for (const std::string& whole : page->names()) {
        const auto name = zo::nameBehind(options().prefix, whole);
        if (name && fKeys.size() < std::size_t{mostTriedKeys})
            fKeys.emplace_back(*name);
    }
    const Finding reading = tryToRead();
    fMayRead = reading.outcome == Outcome::Ok;
    if (fMayList)
        return {reading.outcome, "SCAN is allowed; " + reading.text};
    return failed("SCAN is refused: " + quoted(page->refusal()) + "; " + reading.text);
}

Finding Steps::tryToRead()
{
    const std::vector<std::string> tried = fKeys.empty() ? std::vector<std::string>{"Key"} : fKeys;
    const zo::ListRequest together(requestOf(tried), std::make_shared<zo::ForbiddenKeys::Set>(),
                                   options().prefix);
    const auto each = std::make_shared<zo::ListRequest>(together, std::vector<int>{0});
    const auto sink = std::make_shared<zo::ValuesSink>(each, ZoValue::Elements(tried.size()));
    fProbe.ask(zo::Inquiry("MGET", each->bytes(), each->replies(), sink));
    const auto& refusals = sink->refusals();
    if (refusals.empty())
        return ok("MGET is allowed");
    if (fKeys.empty() && zo::isKeyForbidden(refusals.front().text))
        return ok("MGET is allowed, but not for every key");
    if (refusals.size() < tried.size())
        return ok("MGET is allowed for " + std::to_string(tried.size() - refusals.size()) +
                  " of the first " + counted(tried.size(), "key"));
    return failed("MGET is refused: " + quoted(refusals.front().text));
}

Finding Steps::askServer()
{
    fNotices.begin();
    askForNotices(*fNotices.next());
    const zo::HelloSink& hello = *fNotices.hello();
    if (!hello.refusal().empty())
        return skipped("it does not tell: " + quoted(hello.refusal()));
    return ok(quoted(hello.server()) + " " + quoted(hello.version()));
}

// As a broker does, but on this connection: behind a tunnel, another may ask the user once more.
Finding Steps::countKeys()
{
    const std::string rest = fMayRead ? "; those that are named can be read" : "";
    if (!fMayList)
        return skipped("they cannot be listed" + rest);
    const auto ask = [this](const std::string& name, const zo::SharedText& bytes, int replies,
                            const std::shared_ptr<zo::ReplySink>& sink,
                            const zo::Deadline& deadline) {
        fProbe.ask(zo::Inquiry(name, bytes, replies, sink), deadline);
    };
    const auto start = SteadyClock::now();
    try {
        const auto count = static_cast<std::size_t>(zo::namesOf(*fSettings, ask).getSize());
        const std::string where =
            options().prefix.empty() ? "" : " behind " + quoted(options().prefix);
        return ok(counted(count, "key") + where + ", listed in " +
                  textOf(SteadyClock::now() - start));
    } catch (const ZoError& error) {
        connectAnew();
        return failed(quoted(error.toString()) + (fIsBroken ? "" : rest));
    }
}

/// For what comes behind a list that took too long, which needs none.
void Steps::connectAnew()
{
    if (fProbe.isReady())
        return;
    fIsBroken = !options().socketPath.empty();
    if (fIsBroken)
        return;
    try {
        fProbe.connect(fAddress, fNode->host);
        greetAgain();
        fNotices.begin();
        askForNotices(*fNotices.next());
    } catch (const ZoError&) {
        fIsBroken = true;
    }
}

Finding Steps::measure()
{
    std::array<SteadyClock::duration, pings> times;
    for (SteadyClock::duration& time : times) {
        const auto sink = std::make_shared<zo::StatusSink>("PING"); // a refusal takes the same way
        const auto start = SteadyClock::now();
        ask("PING", zo::encodeCommand({"PING"}), 1, sink);
        time = SteadyClock::now() - start;
    }
    std::sort(times.begin(), times.end());
    return ok(textOf(times[pings / 2]) + " in the median of " + std::to_string(pings) + ", " +
              textOf(times.front()) + " to " + textOf(times.back()));
}

void Steps::askForNotices(const zo::NoticesSetUp::Question& question)
{
    fProbe.ask(zo::Inquiry(question.name, question.bytes, question.replies, question.sink));
    fNotices.answered();
}

Finding Steps::tryNotices()
{
    const std::string otherwise = "; what is followed is read as a whole";
    if (!options().notices)
        return skipped("not wanted");
    while (const auto question = fNotices.next())
        askForNotices(*question);
    if (!fNotices.isDone())
        return skipped(quoted(fNotices.problem()) + otherwise);
    return ok("the server tells what was written, and only that is read again");
}

} // namespace

bool ZoCheck::run(const ZoAddress& robot, const ZoBrokerOptions& options, const Tell& tell,
                  const GoOn& goOn)
{
    const auto settings = zo::makeLinkSettings(robot.host, robot.port, options, "zo-check");
    return Steps(settings, tell, goOn).run();
}
