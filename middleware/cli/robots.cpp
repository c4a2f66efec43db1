// SPDX-License-Identifier: MIT
#include "robots.h"

#include "commands.h"

#include <kit/escape.h>
#include <kit/output.h>
#include <kit/sign_of_life.h>

#include <zo/json.h>
#include <zo/memory_proxy.h>

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

/// Each is asked for by itself where `areApart`: its key may be in any slot of a cluster's node.
std::vector<ZoValue> valuesOf(ZoMemoryProxy& memory, const std::vector<std::string>& keys,
                              bool areApart)
{
    std::vector<ZoValue> values;
    if (areApart) {
        for (const std::string& key : keys)
            values.push_back(valuesOf(memory, requestOf({key}))[0]);
        return values;
    }
    ZoValue all = valuesOf(memory, requestOf(keys));
    for (int i = 0; i < all.getSize(); ++i)
        values.push_back(all[i]);
    return values;
}

std::string lineOf(const std::string& prefix, const ZoValue& age, RobotsForm form)
{
    if (form == RobotsForm::Json)
        return "{\"prefix\":" + ZoJson::textOf(prefix) + ",\"age\":" + ZoJson::textOf(age) + "}\n";
    const bool isKnown = age.getType() != ZoValue::Invalid;
    return kit::escaped(prefix) + "\t" + (isKnown ? age.toString(ZoWhole) : "unknown") + "\n";
}

} // namespace

RobotAges robotsIn(ZoMemoryProxy& memory, std::chrono::system_clock::time_point now, bool areApart)
{
    const std::string ending = kit::aliveKey;
    const std::vector<std::string> keys = memory.getDataListName(ending);
    const std::vector<ZoValue> alive = valuesOf(memory, keys, areApart);
    RobotAges robots;
    for (std::size_t i = 0; i < keys.size(); ++i)
        robots[keys[i].substr(0, keys[i].size() - ending.size())] = ageOf(alive[i], now);
    return robots;
}

void printRobots(const RobotAges& robots, RobotsForm form, kit::Output& output)
{
    for (const auto& [prefix, age] : robots)
        output.add(lineOf(prefix, age, form));
    output.flush();
}
