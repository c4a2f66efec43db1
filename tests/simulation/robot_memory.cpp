// SPDX-License-Identifier: MIT
#include "simulation/robot_memory.h"

using namespace zo;

namespace {

bool reads(ValueId id, ValueId as)
{
    return id == as || (id == largeValue && as == noValue);
}

} // namespace

void RobotMemory::clear()
{
    for (int key = 0; key < keys(); ++key) {
        if (get(key) != noValue)
            put(key, noValue);
    }
}

bool RobotMemory::hasHeld(int key, ValueId id, Time begin) const
{
    const auto& history = fHistories[key];
    for (std::size_t i = history.size(); i > 0; --i) {
        if (reads(history[i - 1].id, id))
            return true;
        if (history[i - 1].since < begin)
            return false; // it was there all the time before
    }
    return id == noValue;
}

int RobotMemory::writes(int key, ValueId id, Time begin) const
{
    int count = 0;
    for (const Entry& entry : fHistories[key])
        count += entry.id == id && entry.since >= begin ? 1 : 0;
    return count;
}
