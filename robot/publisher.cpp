// SPDX-License-Identifier: MIT
#include "publisher.h"

#include <cmath>
#include <utility>

Publisher::Publisher(std::vector<RobotKey> keys, ZoMemoryProxy memory)
    : fKeys(std::move(keys)), fMemory(std::move(memory)), fWritten(fKeys.size())
{
}

void Publisher::publish(double seconds)
{
    // Whoever follows the memory is told of each write, also of one that changes nothing.
    ZoValue::Elements pairs;
    for (std::size_t i = 0; i < fKeys.size(); ++i) {
        ZoValue value = fKeys[i].value(seconds);
        if (fIsKnown && value == fWritten[i] && !isInTurn(i, seconds))
            continue;
        fWritten[i] = value;
        pairs.push_back(ZoValue::fromElements({ZoValue(fKeys[i].name), std::move(value)}));
    }
    fIsKnown = false; // until this has succeeded
    fMemory.setListData(ZoValue::fromElements(std::move(pairs)));
    fIsKnown = true;
    fLastTime = seconds;
}

// The turn goes through the keys as the time goes through its period.
bool Publisher::isInTurn(std::size_t key, double seconds) const
{
    const double place = static_cast<double>(key) / static_cast<double>(fKeys.size());
    return std::floor(seconds / fTurn - place) > std::floor(fLastTime / fTurn - place);
}
