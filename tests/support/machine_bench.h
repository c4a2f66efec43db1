// SPDX-License-Identifier: MIT
#pragma once

#include <link/call.h>
#include <link/link_machine.h>
#include <wire/status_sink.h>

#include <algorithm>
#include <chrono>
#include <map>
#include <memory>
#include <string>
#include <vector>

using namespace zo;

/// The least time that counts.
constexpr std::chrono::nanoseconds moment{1};

/// The machine of a link on the bench: in virtual time, and with all that it asks for written
/// down. Nothing happens by itself but `woken`, when time passes.
class MachineBench
{
public:
    using Time = LinkMachine::Time;

    explicit MachineBench(const ZoBrokerOptions& options = {}, std::uint32_t seed = 1)
        : machine(settingsFor(options), seed)
    {
    }

    static std::shared_ptr<const LinkSettings> settingsFor(const ZoBrokerOptions& options)
    {
        return makeLinkSettings("arm", 6379, options, "TestBroker");
    }
    static LinkAddress address(const char* text)
    {
        return {boost::asio::ip::make_address(text), 6379};
    }

    /// Writes down what the machine wants.
    void settle()
    {
        while (const auto action = machine.nextAction())
            std::visit([this](const auto& what) { note(what); }, *action);
    }

    /// Lets time pass, and wakes the machine whenever it wants.
    void pass(std::chrono::nanoseconds time)
    {
        const Time end = now + time;
        while (machine.wakeAt() <= end) {
            now = std::max(now, machine.wakeAt());
            ++wakeUps;
            machine.woken(now);
            settle();
        }
        now = end;
    }
    /// Passes over to the next look-up, an hour later at most.
    void passToNextAttempt()
    {
        const std::size_t before = lookUps.size();
        const Time end = now + std::chrono::hours(1);
        while (lookUps.size() == before && now < end)
            pass(std::max(machine.wakeAt() - now, std::chrono::nanoseconds(1)));
    }

    void start()
    {
        machine.start(now);
        settle();
    }
    void answerLookUp(const std::vector<LinkAddress>& addresses = {address("10.0.0.7")},
                      const std::string& problem = {})
    {
        fAnswered = lookUps.size();
        machine.lookedUp(now, lookUps.back(), addresses, problem);
        settle();
    }
    /// All of them, each with an address of its own.
    void answerLookUps()
    {
        while (fAnswered < lookUps.size()) {
            const int number = lookUps[fAnswered++];
            const std::string host = "10.0.1." + std::to_string(number % 250 + 1);
            machine.lookedUp(now, number, {address(host.c_str())}, {});
            settle();
        }
    }
    void connect()
    {
        machine.connected(now, newest());
        settle();
    }
    void receive(const std::string& bytes)
    {
        machine.received(now, newest(), bytes);
        settle();
    }
    void finishWrite()
    {
        machine.written(now, newest());
        settle();
    }
    void close(const std::string& problem)
    {
        machine.closed(now, newest(), problem);
        settle();
    }
    /// From a connection that is under way on.
    void comeUp()
    {
        connect();
        if (!handshakes.empty() && handshakes.back() == newest()) {
            machine.secured(now, newest());
            settle();
        }
        finishWrite();
        receive("+PONG\r\n+OK\r\n");
    }
    /// From a look-up that is under way on.
    void goUp()
    {
        answerLookUp();
        comeUp();
    }
    void startUp()
    {
        start();
        goUp();
    }

    std::shared_ptr<Exchange> makeCall(const std::string& name,
                                       std::chrono::milliseconds limit = std::chrono::seconds(2),
                                       std::string bytes = {})
    {
        auto sink = std::make_shared<StatusSink>(name);
        auto made = std::make_shared<Call>(
            name, sharedText(bytes.empty() ? name + "\r\n" : std::move(bytes)), 1, sink,
            Deadline::after(now, limit));
        sinks[made.get()] = sink;
        return made;
    }
    std::shared_ptr<Exchange> call(const std::string& name,
                                   std::chrono::milliseconds limit = std::chrono::seconds(2),
                                   std::string bytes = {})
    {
        auto made = makeCall(name, limit, std::move(bytes));
        machine.call(now, made);
        settle();
        return made;
    }

    /// One of `parts` commands, each of so many bytes that are the name's.
    std::shared_ptr<Exchange> callInParts(const std::string& name, std::size_t parts,
                                          std::size_t size, const void* flow = nullptr)
    {
        std::vector<RequestPart> all;
        for (std::size_t part = 1; part <= parts; ++part)
            all.push_back({part * size, 1});
        auto sink = std::make_shared<StatusSink>(name);
        auto made =
            std::make_shared<Call>(name, sharedText(std::string(parts * size, name[0])),
                                   std::make_shared<const std::vector<RequestPart>>(std::move(all)),
                                   sink, Deadline::after(now, std::chrono::seconds(10)), flow);
        sinks[made.get()] = sink;
        machine.call(now, made);
        settle();
        return made;
    }

    ConnectionId newest() const { return connects.back().connection; }
    bool isUp() const { return machine.condition().isUp; }
    std::string cause() const { return *machine.condition().cause; }
    int ends(const std::shared_ptr<Exchange>& call) const
    {
        const auto found = problems.find(call);
        return found == problems.end() ? 0 : static_cast<int>(found->second.size());
    }
    /// Why `call` ended; "answered" when it was, empty while it has not.
    std::string end(const std::shared_ptr<Exchange>& call) const
    {
        const auto found = problems.find(call);
        return found == problems.end() ? std::string() : found->second.front();
    }
    std::string answer(const std::shared_ptr<Exchange>& call) const
    {
        const auto& answers = sinks.at(call.get())->answers();
        return answers.empty() ? std::string() : answers.front().text;
    }
    bool isClosed(ConnectionId connection) const
    {
        return std::count(closes.begin(), closes.end(), connection) == 1;
    }
    /// All that was written on `connection`.
    std::string written(ConnectionId connection) const
    {
        std::string bytes;
        for (const auto& write : writes) {
            if (write.connection == connection)
                bytes += write.slice();
        }
        return bytes;
    }

    LinkMachine machine;
    Time now = Time(std::chrono::hours(1000));
    int wakeUps = 0;
    std::vector<int> lookUps;
    std::vector<NodePtr> lookUpNodes; ///< whom each of these is for
    std::vector<LinkAction::Connect> connects;
    std::vector<ConnectionId> handshakes;
    std::vector<LinkAction::Write> writes;
    std::vector<ConnectionId> closes;
    std::vector<LinkCondition> told;
    std::map<std::shared_ptr<Exchange>, std::vector<std::string>> problems;
    std::map<const Exchange*, std::shared_ptr<StatusSink>> sinks;

private:
    std::size_t fAnswered = 0; ///< look-ups

    void note(const LinkAction::LookUp& action)
    {
        lookUps.push_back(action.number);
        lookUpNodes.push_back(action.node);
    }
    void note(const LinkAction::Connect& action) { connects.push_back(action); }
    void note(const LinkAction::StartTls& action) { handshakes.push_back(action.connection); }
    void note(const LinkAction::Write& action) { writes.push_back(action); }
    void note(const LinkAction::Close& action) { closes.push_back(action.connection); }
    void note(const LinkAction::Tell& action) { told.push_back(action.condition); }
    void note(const LinkAction::End& action)
    {
        problems[action.exchange].push_back(action.problem ? *action.problem : "answered");
    }
};
