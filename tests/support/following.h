// SPDX-License-Identifier: MIT
#pragma once

#include "support/patience.h"
#include "support/redis_server.h"
#include "support/robot.h"

#include <chrono>
#include <optional>
#include <string>
#include <thread>

/// Words for tests of lists that are followed.

inline ZoBrokerOptions following(ZoBrokerOptions options = patientOptions())
{
    options.follow = true;
    return options;
}

/// What a panel gets, which asks again when there is no answer yet.
inline std::optional<ZoValue> tried(ZoMemoryProxy& memory, const ZoValue& request)
{
    try {
        return memory.getListData(request);
    } catch (const ZoUnderWay&) {
        return {};
    }
}

/// Lets pass what lies between two calls of a panel: the rhythm by which a list is known to be
/// followed.
inline void pauseAsAPanelDoes()
{
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
}

/// Polls like a panel until `isIt` holds for what comes.
template <class Condition>
bool polls(ZoMemoryProxy& memory, const ZoValue& request, Condition isIt)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(patience);
    while (std::chrono::steady_clock::now() < end) {
        const auto values = tried(memory, request);
        if (values && isIt(*values))
            return true;
        pauseAsAPanelDoes();
    }
    return false;
}

/// The number behind `name` in what a server tells of itself; 0: none.
inline long numberIn(const std::string& told, const std::string& name)
{
    const std::size_t at = told.find(name);
    return at == std::string::npos ? 0 : std::stol(told.substr(at + name.size()));
}

/// The same in this part of it.
inline long toldNumber(const RedisServer& server, const std::string& part, const std::string& name)
{
    return numberIn(server.command({"INFO", part}), name);
}

inline int answeredCommands(const RedisServer& server, const std::string& name)
{
    return static_cast<int>(toldNumber(server, "commandstats", "cmdstat_" + name + ":calls="));
}
