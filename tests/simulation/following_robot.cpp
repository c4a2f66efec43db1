// SPDX-License-Identifier: MIT
#include "simulation/following_robot.h"

#include <algorithm>
#include <utility>

FollowingRobot::FollowingRobot(const Agenda& agenda, int count, Notify notify)
    : fAgenda(agenda), fNotify(std::move(notify))
{
    for (int number = 0; number < count; ++number) {
        fKeys.push_back({"Key/" + std::to_string(number), fresh(), {}});
        fNumbers[fKeys.back().name] = number;
        fKeys.back().past.push_back({fKeys.back().value, fAgenda.now()});
    }
}

void FollowingRobot::put(int key, std::int64_t value, bool isQuiet)
{
    fKeys[key].value = value;
    if (!fKeys[key].isForbidden)
        become(fKeys[key], value, isQuiet);
}

void FollowingRobot::become(Key& key, std::int64_t value, bool isQuiet)
{
    key.past.back().until = fAgenda.now();
    key.past.push_back({value, fAgenda.now(), isQuiet});
}

void FollowingRobot::write(int key, std::int64_t value)
{
    put(key, value);
    if (fTold.erase(key) > 0)
        fNotify(&fKeys[key]);
}

void FollowingRobot::tick()
{
    const std::int64_t value = fresh();
    for (int key = 0; key < count(); ++key) {
        if (fKeys[key].isTogether)
            write(key, value);
    }
}

void FollowingRobot::writeQuietly(int key, std::int64_t value)
{
    put(key, value, true);
}

void FollowingRobot::flush()
{
    for (int key = 0; key < count(); ++key)
        put(key, fNone);
    fTold.clear();
    fNotify(nullptr);
}

void FollowingRobot::forbid(int key)
{
    if (std::exchange(fKeys[key].isForbidden, true))
        return;
    become(fKeys[key], fForbidden, true);
    fMostForbidden = std::max(fMostForbidden, ++fForbiddenKeys);
}

void FollowingRobot::allowAll()
{
    for (Key& key : fKeys) {
        if (std::exchange(key.isForbidden, false))
            become(key, key.value, true);
    }
    fForbiddenKeys = 0;
}

std::vector<std::int64_t> FollowingRobot::read(const std::vector<int>& keys, zo::Telling telling)
{
    if (std::any_of(keys.begin(), keys.end(), [&](int key) { return fKeys[key].isForbidden; }))
        return {};
    std::vector<std::int64_t> values;
    for (const int key : keys) {
        if (telling == zo::Telling::Wanted)
            fTold.insert(key);
        values.push_back(fKeys[key].past.back().value);
    }
    return values;
}
