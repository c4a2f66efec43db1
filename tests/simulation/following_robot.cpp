// SPDX-License-Identifier: MIT
#include "simulation/following_robot.h"

#include <algorithm>
#include <utility>

FollowingRobot::FollowingRobot(const Agenda& agenda, int count, Notify notify)
    : fAgenda(agenda), fNotify(std::move(notify))
{
    for (int number = 0; number < count; ++number) {
        fKeys.push_back({"Key/" + std::to_string(number), {}});
        fNumbers[fKeys.back().name] = number;
        fKeys.back().past.push_back({fresh(), fAgenda.now()});
    }
}

void FollowingRobot::put(int key, std::int64_t value)
{
    auto& past = fKeys[key].past;
    if (past.back().value == fTooLarge)
        fKeys[key].oddUntil = fAgenda.now();
    past.back().until = fAgenda.now();
    past.push_back({value, fAgenda.now()});
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
    put(key, value);
    fKeys[key].quietSince = fAgenda.now();
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
    fKeys[key].isForbidden = true;
}

void FollowingRobot::allowAll()
{
    for (Key& key : fKeys) {
        if (key.isForbidden)
            key.oddUntil = fAgenda.now();
        key.isForbidden = false;
    }
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
