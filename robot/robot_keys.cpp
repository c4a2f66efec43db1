// SPDX-License-Identifier: MIT
#include "robot_keys.h"

#include "key_groups.h"
#include "noise.h"

#include <cmath>

std::uint32_t KeyCollector::seed()
{
    return static_cast<std::uint32_t>(scatter(fSeed, 100 + fKeys.size()) * 0x1p32);
}

void KeyCollector::add(const std::string& name, std::function<ZoValue(double)> value)
{
    fKeys.push_back({name, std::move(value)});
}

void KeyCollector::addFloat(const std::string& name, int decimals, Curve curve)
{
    add(name, [decimals, curve = std::move(curve)](double t) {
        return ZoValue(rounded(curve(t), decimals));
    });
}

void KeyCollector::addInt(const std::string& name, Curve curve)
{
    add(name, [curve = std::move(curve)](double t) {
        return ZoValue(static_cast<std::int64_t>(std::floor(curve(t))));
    });
}

void KeyCollector::addArray(const std::string& name, int decimals, std::vector<Curve> curves)
{
    add(name, [decimals, curves = std::move(curves)](double t) {
        ZoValue array;
        array.arraySetSize(static_cast<int>(curves.size()));
        for (int i = 0; i < array.getSize(); ++i)
            array[i] = ZoValue(rounded(curves[static_cast<std::size_t>(i)](t), decimals));
        return array;
    });
}

std::vector<RobotKey> robotKeys(int count, std::uint32_t seed)
{
    KeyCollector keys(seed);
    addStateKeys(keys);
    addBatteryKeys(keys);
    addBodyKeys(keys);
    addJointKeys(keys);
    addSkinKeys(keys, count);
    std::vector<RobotKey> all = keys.take();
    all.resize(static_cast<std::size_t>(count));
    return all;
}
