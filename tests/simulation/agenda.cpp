// SPDX-License-Identifier: MIT
#include "simulation/agenda.h"

#include <algorithm>
#include <utility>

using namespace zo;

void Agenda::at(Time time, Task task)
{
    fTasks.push_back({time, fCount++, std::move(task)});
    std::push_heap(fTasks.begin(), fTasks.end());
}

void Agenda::runNext()
{
    std::pop_heap(fTasks.begin(), fTasks.end());
    const Entry entry = std::move(fTasks.back());
    fTasks.pop_back();
    passTo(entry.at);
    entry.task();
}
