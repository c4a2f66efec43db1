// SPDX-License-Identifier: MIT
#include "replay_remote.h"

#include "commands.h"

#include <kit/output.h>
#include <kit/replay_command.h>

#include <zo/error.h>
#include <zo/memory_proxy.h>

#include <chrono>

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds lookInterval{20};
constexpr std::chrono::seconds patience{5};

void checkPlays(ZoMemoryProxy& memory)
{
    if (valuesOf(memory, requestOf({kit::replayStateKey}))[0].getType() == ZoValue::Invalid)
        throw ZoError("this robot plays no recording: tarvek-robot --replay FILE is one that does");
}

/// What stands there of commands; invalid: none.
ZoValue present(ZoMemoryProxy& memory)
{
    return valuesOf(memory, requestOf({kit::replayControlKey}))[0];
}

/// Waits until nobody's command is there; false: that lasts too long.
bool isTaken(ZoMemoryProxy& memory, const kit::Output& output)
{
    const Clock::time_point end = Clock::now() + patience;
    while (present(memory).getType() != ZoValue::Invalid) {
        if (Clock::now() > end)
            return false;
        output.waitUntil(Clock::now() + lookInterval);
    }
    return true;
}

/// Lest a later robot obeys it. Somebody else's, who has not waited, stays: whoever reads that it
/// has gone takes it for obeyed. What is set between the look and the withdrawal is lost, since the
/// few rights that this needs know no way to do both in one step.
void withdraw(ZoMemoryProxy& memory, const std::string& text)
{
    if (present(memory).toString(ZoWhole) == text)
        memory.setData(kit::replayControlKey, ZoValue());
}

} // namespace

void controlReplay(ZoMemoryProxy& memory, const std::string& text, kit::Output& output)
{
    checkPlays(memory);
    if (text == "status") {
        printValues(memory, {kit::replayStateKey, kit::replayTimeKey, kit::replaySpeedKey}, output);
        return;
    }
    if (!isTaken(memory, output))
        throw ZoError("the robot does not take the command that was there before: does it still "
                      "run?");
    memory.setText(kit::replayControlKey, text);
    if (isTaken(memory, output))
        return;
    withdraw(memory, text);
    throw ZoError("the robot does not take the command, which is withdrawn: does it still run?");
}
