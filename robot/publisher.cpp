// SPDX-License-Identifier: MIT
#include "publisher.h"

Publisher::Publisher(std::vector<RobotKey> keys, ZoMemoryProxy memory)
    : fKeys(std::move(keys)), fMemory(std::move(memory))
{
    fPairs.arraySetSize(static_cast<int>(fKeys.size()));
    for (int i = 0; i < fPairs.getSize(); ++i) {
        fPairs[i].arraySetSize(2);
        fPairs[i][0] = ZoValue(fKeys[static_cast<std::size_t>(i)].name);
    }
}

void Publisher::publish(double seconds)
{
    for (int i = 0; i < fPairs.getSize(); ++i)
        fPairs[i][1] = fKeys[static_cast<std::size_t>(i)].value(seconds);
    fMemory.setListData(fPairs);
}
