// SPDX-License-Identifier: MIT
#include "network/ticking_robot.h"

#include <wire/request.h>

#include <hiredis/hiredis.h>

#include <algorithm>
#include <csignal>
#include <cstring>
#include <limits>
#include <stdexcept>
#include <string_view>
#include <sys/time.h>

namespace {

constexpr int keysOfCommand = 1000;
// So that all numbers have as many digits.
constexpr std::int64_t firstNumber = 1000000000000000;

/// In this thread: the client library would end the program when the server is gone.
void blockBrokenPipes()
{
    sigset_t broken;
    sigemptyset(&broken);
    sigaddset(&broken, SIGPIPE);
    ::pthread_sigmask(SIG_BLOCK, &broken, nullptr);
}

} // namespace

TickingRobot::TickingRobot(int port, const Load& load)
    : fPort(port), fLoad(load), fServer(nullptr, &redisFree), fTick(load.cycle() - 1)
{
    const int written = load.written();
    for (int i = 0; i < load.cycle(); ++i)
        fGroups.push_back(makeGroup(i * written, written));
    const int moving = load.cycle() * written;
    fStill = makeGroup(moving, load.keys - moving);
    setValue(fStill, 0);
    if (!connect() || !writeAll())
        throw std::runtime_error("the server does not take what the robot writes");
    fThread = std::thread([this] { run(); });
}

TickingRobot::~TickingRobot()
{
    {
        const std::lock_guard<std::mutex> lock(fMutex);
        fIsEnding = true;
    }
    fEnd.notify_all();
    fThread.join();
}

TickingRobot::Group TickingRobot::makeGroup(int first, int keys) const
{
    Group group;
    const std::string value(Load::fValueSize, '0');
    for (int begin = first; begin < first + keys; begin += keysOfCommand) {
        const int end = std::min(first + keys, begin + keysOfCommand);
        const std::vector<std::string> names = Load::keyNames(begin, end - begin);
        std::vector<std::string_view> words{"MSET"};
        for (const std::string& name : names)
            words.insert(words.end(), {name, value});
        zo::appendCommand(words, group.bytes);
        ++group.commands;
    }
    const std::string lineOfValue = "\r\n" + value + "\r\n";
    for (std::size_t at = group.bytes.find(lineOfValue); at != std::string::npos;
         at = group.bytes.find(lineOfValue, at + value.size()))
        group.places.push_back(at + 2);
    return group;
}

void TickingRobot::setValue(Group& group, std::int64_t number) const
{
    const std::string text = std::to_string(firstNumber + number);
    for (const std::size_t place : group.places)
        std::memcpy(group.bytes.data() + place, text.data(), Load::fValueSize);
}

bool TickingRobot::connect()
{
    const timeval patience{1, 0};
    fServer.reset(redisConnectWithTimeout("127.0.0.1", fPort, patience));
    if (!fServer || fServer->err != 0)
        return false;
    redisSetTimeout(fServer.get(), patience);
    return true;
}

bool TickingRobot::send(const Group& group)
{
    redisAppendFormattedCommand(fServer.get(), group.bytes.data(), group.bytes.size());
    for (int i = 0; i < group.commands; ++i) {
        void* reply = nullptr;
        if (redisGetReply(fServer.get(), &reply) != REDIS_OK)
            return false;
        freeReplyObject(reply);
    }
    return true;
}

/// As they are after the last tick.
bool TickingRobot::writeAll()
{
    const std::int64_t cycle = fLoad.cycle();
    const auto now = Clock::now();
    for (std::int64_t tick = fTick - cycle + 1; tick <= fTick; ++tick) {
        Group& group = fGroups[tick % cycle];
        fTimes[tick % fTimes.size()] = now;
        setValue(group, tick);
        if (!send(group))
            return false;
    }
    return send(fStill);
}

/// False when the robot ends.
bool TickingRobot::pause(Clock::time_point until)
{
    std::unique_lock<std::mutex> lock(fMutex);
    return !fEnd.wait_until(lock, until, [this] { return fIsEnding; });
}

void TickingRobot::run()
{
    blockBrokenPipes();
    for (auto at = Clock::now() + Load::fTick; pause(at);
         at = std::max(at + Load::fTick, Clock::now())) {
        const std::int64_t tick = fTick + 1;
        Group& group = fGroups[tick % fLoad.cycle()];
        setValue(group, tick);
        fTimes[tick % fTimes.size()] = Clock::now();
        fTick = tick;
        if (!send(group) && (!connect() || !writeAll()))
            at = Clock::now();
    }
}

std::optional<TickingRobot::Clock::time_point> TickingRobot::writtenAt(const ZoValue& values) const
{
    const int moving = fLoad.cycle() * fLoad.written();
    std::int64_t least = std::numeric_limits<std::int64_t>::max();
    for (int i = 0; i < moving; ++i) {
        const auto* number = std::get_if<std::int64_t>(&values[i].data());
        if (!number)
            return {};
        least = std::min(least, *number - firstNumber);
    }
    // The key that was written least lately will be at the next tick of this number.
    const std::int64_t tick = least + fLoad.cycle() - 1;
    if (tick < 0 || tick + static_cast<std::int64_t>(fTimes.size()) <= fTick)
        return {};
    return fTimes[tick % fTimes.size()].load();
}
