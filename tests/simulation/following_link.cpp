// SPDX-License-Identifier: MIT
#include "simulation/following_link.h"

#include "simulation/following_replies.h"
#include "simulation/request_reader.h"
#include "simulation/violation.h"

#include <algorithm>
#include <string>
#include <string_view>

using namespace zo;

namespace {

using std::chrono::milliseconds;

constexpr int bytesOfNotice = 60;
constexpr int bytesOfWrite = 50;
constexpr int bytesOfValue = 16;
constexpr int bytesOfReply = 10;

// Between two parts of a round others have their turn.
constexpr milliseconds longestTurn{5};

std::string textOf(const RoundPlan& plan)
{
    std::string text = plan.telling() == Telling::Wanted ? " asks, and to be told, of" : " asks of";
    for (const auto* entry : plan.keys())
        text += " " + entry->first;
    return text;
}

} // namespace

FollowingLink::FollowingLink(FollowingWorld& world, FollowingNetwork& network,
                             FollowingRobot& robot, FollowingRules& rules)
    : fWorld(world), fNetwork(network), fRobot(robot), fRules(rules), fFollower(world.prefix)
{
}

void FollowingLink::comeUp()
{
    fWorld.trace.line([] { return "the link is up"; });
    fNetwork.connect();
    fFollower.cameUp(fWorld.random.chance(85));
    beginRounds();
}

void FollowingLink::lose()
{
    fWorld.trace.line([] { return "the link is lost"; });
    fNetwork.cut();
    fSentUntil.clear();
    fRules.lost();
    fRobot.forgetClient();
    fFollower.wentDown();
    fWorld.agenda.in(fWorld.random.upTo(std::chrono::seconds(3)), [this] { comeUp(); });
}

Follower::Asked FollowingLink::ask(const FollowingCaller& caller, const ZoValue& request)
{
    auto asked = fFollower.ask(fWorld.now(), caller, request);
    fRules.called(asked.list);
    beginRounds();
    return asked;
}

std::optional<ZoValue::Elements> FollowingLink::news(const Follower::List& list)
{
    return fFollower.news(fWorld.now(), list);
}

std::optional<ZoValue::Elements> FollowingLink::answer(const Follower::List& list)
{
    return fFollower.answer(fWorld.now(), list);
}

void FollowingLink::write(int key)
{
    const std::vector<std::string> names{fRobot.keys()[key].name};
    fWorld.trace.line([&] { return "the link writes " + names.front(); });
    // Others have their turn before it is sent.
    const std::uint64_t number = fFollower.writes(names);
    fNetwork.in(fWorld.random.upTo(longestTurn), [this, key, names, number] {
        sendWrite(key, names, {number, ++fOrder});
    });
}

void FollowingLink::sendWrite(int key, const std::vector<std::string>& names, const OwnWrite& own)
{
    fNetwork.up(bytesOfWrite, [this, key, names, own] {
        // Servers tell the writer itself before they reply, or behind it.
        const bool isToldFirst = fWorld.random.chance(50);
        const bool isRefused = fRobot.keys()[key].isForbidden;
        const auto past = static_cast<std::ptrdiff_t>(fRobot.keys()[key].past.size());
        if (isToldFirst && !isRefused)
            fRobot.write(key, fRobot.fresh());
        fNetwork.down(bytesOfReply, [this, key, names, own, past = isRefused ? 0 : past] {
            fWorld.trace.line([&] { return names.front() + " is written"; });
            fRules.wrote(key, past, own.order);
            fFollower.wrote(names, own);
        });
        if (!isToldFirst && !isRefused)
            fRobot.write(key, fRobot.fresh());
    });
}

void FollowingLink::notify(const FollowingRobot::Key* key)
{
    fNetwork.down(bytesOfNotice, [this, key] {
        fWorld.trace.line([&] { return (key ? key->name : "everything") + " may have changed"; });
        if (key)
            fFollower.noticed(fWorld.prefix + key->name);
        else
            fFollower.noticedAll();
    });
}

void FollowingLink::beginRounds()
{
    while (const auto begun = fFollower.begin(fWorld.now())) {
        fWorld.trace.line(
            [&] { return fWorld.nameOf(begun->list) + textOf(*begun->round->plan()); });
        fRules.began(*begun);
        send(*begun);
    }
    wakeLater();
}

void FollowingLink::wakeLater()
{
    const Time wakeAt = fFollower.wakeAt();
    if (wakeAt == Time::max())
        return;
    fWorld.agenda.at(wakeAt, [this] {
        if (fFollower.wakeAt() <= fWorld.now())
            beginRounds();
    });
}

void FollowingLink::send(const Begun& begun)
{
    const auto sending = std::make_shared<Sending>(Sending{begun});
    const int commands = static_cast<int>(begun.round->plan()->commands().size());
    if (commands == 0)
        return sendEmpty(sending);
    Time& until = fSentUntil[begun.list];
    until = std::max(until, fWorld.now());
    for (int command = 0; command < commands; ++command) {
        if (command > 0)
            until += fWorld.random.upTo(longestTurn);
        fNetwork.in(until - fWorld.now(), [this, sending, command] { sendPart(sending, command); });
    }
}

/// Only asks whether the robot is there.
void FollowingLink::sendEmpty(const SendingPtr& sending)
{
    sending->order = ++fOrder;
    fNetwork.up(bytesOfReply, [this, sending] {
        fNetwork.down(bytesOfReply, [this, sending] { end(*sending); });
    });
}

void FollowingLink::sendPart(const SendingPtr& sending, int command)
{
    ++fOrder;
    if (command == 0)
        sending->order = fOrder;
    const auto& commands = sending->begun.round->plan()->commands();
    const std::size_t begin = command > 0 ? commands[command - 1].end : 0;
    fNetwork.up(commands[command].end - begin,
                [this, sending, command] { arrive(sending, command); });
}

void FollowingLink::arrive(const SendingPtr& sending, int command)
{
    const RoundPlan& plan = *sending->begun.round->plan();
    const Values values = fRobot.read(keysOf(plan, command), plan.telling());
    fNetwork.down(bytesOfReply + bytesOfValue * values.size(),
                  [this, sending, command, values] { receive(sending, command, values); });
}

void FollowingLink::receive(const SendingPtr& sending, int command, const Values& values)
{
    Round& round = *sending->begun.round;
    fWorld.trace.line(
        [&] { return fWorld.nameOf(sending->begun.list) + " gets a reply: " + textOf(values); });
    giveReply(round, command, values);
    noteOdd(*sending, command, values);
    if (command + 1 == static_cast<int>(round.plan()->commands().size()))
        end(*sending);
}

void FollowingLink::end(const Sending& sending)
{
    fFollower.ended(sending.begun, true, sending.order, fWorld.now(), roundTrip());
    fRules.ended(sending.begun, sending.order, sending.odd);
    beginRounds();
}

/// What is refused together is asked for again, each by itself.
void FollowingLink::noteOdd(Sending& sending, int command, const Values& values) const
{
    const auto& [first, count, end] = sending.begun.round->plan()->commands()[command];
    const auto& keys = sending.begun.round->plan()->keys();
    for (int i = 0; i < count; ++i) {
        if (values.empty() ? count == 1 : values[i] == FollowingRobot::fTooLarge)
            sending.odd.push_back(fRobot.numberOf(keys[first + i]->first));
    }
}

/// The keys that the robot understands the command to ask for.
std::vector<int> FollowingLink::keysOf(const RoundPlan& plan, int command) const
{
    const std::size_t begin = command > 0 ? plan.commands()[command - 1].end : 0;
    std::string_view bytes(*plan.bytes());
    bytes = bytes.substr(begin, plan.commands()[command].end - begin);
    std::vector<std::string_view> words;
    while (!bytes.empty() && takeCommand(bytes, words)) {
    }
    std::vector<int> keys;
    keys.reserve(words.size());
    for (std::size_t i = 1; i < words.size(); ++i) {
        const std::string_view prefix = fWorld.prefix;
        require(words[i].substr(0, prefix.size()) == prefix,
                "only the robot's own keys are asked for", [&] { return std::string(words[i]); });
        keys.push_back(fRobot.numberOf(std::string(words[i].substr(prefix.size()))));
    }
    return keys;
}
