// SPDX-License-Identifier: MIT
#include "robots.h"

#include "commands.h"

#include <kit/escape.h>
#include <kit/output.h>
#include <kit/sign_of_life.h>

#include <zo/json.h>
#include <zo/memory_proxy.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

namespace {

/// Seconds from the moment that `alive` tells until `now`; invalid when it tells none.
ZoValue ageOf(const ZoValue& alive, std::chrono::system_clock::time_point now)
{
    const auto* const told = std::get_if<std::int64_t>(&alive.data());
    const std::int64_t seconds = std::chrono::system_clock::to_time_t(now);
    // A time that is none must not overflow.
    if (!told || *told < 0 || *told > 2 * seconds)
        return {};
    return seconds - *told;
}

std::string lineOf(const std::string& prefix, const ZoValue& age, RobotsForm form)
{
    if (form == RobotsForm::Json)
        return "{\"prefix\":" + ZoJson::textOf(prefix) + ",\"age\":" + ZoJson::textOf(age) + "}\n";
    const bool isKnown = age.getType() != ZoValue::Invalid;
    return kit::escaped(prefix) + "\t" + (isKnown ? age.toString(ZoWhole) : "unknown") + "\n";
}

} // namespace

void listRobots(ZoMemoryProxy& memory, RobotsForm form, std::chrono::system_clock::time_point now,
                kit::Output& output)
{
    const std::string key = kit::aliveKey;
    std::vector<std::string> keys = memory.getDataListName(key);
    std::sort(keys.begin(), keys.end());
    const ZoValue alive = valuesOf(memory, requestOf(keys));
    for (int i = 0; i < alive.getSize(); ++i) {
        const std::string& whole = keys[static_cast<std::size_t>(i)];
        output.add(lineOf(whole.substr(0, whole.size() - key.size()), ageOf(alive[i], now), form));
    }
    output.flush();
}
