// SPDX-License-Identifier: MIT
#pragma once

#include "simulation/agenda.h"
#include "simulation/robot_values.h"

#include <vector>

/// What the simulated robot holds under each key, and has ever held.
class RobotMemory
{
public:
    using Time = Agenda::Time;

    RobotMemory(const Agenda& agenda, int keys) : fAgenda(agenda), fHistories(keys) {}

    int keys() const { return static_cast<int>(fHistories.size()); }
    ValueId get(int key) const
    {
        return fHistories[key].empty() ? noValue : fHistories[key].back().id;
    }

    /// A value that was never there before.
    ValueId fresh(int key) { return makeValueId(key, ++fVersions); }
    void put(int key, ValueId id) { fHistories[key].push_back({fAgenda.now(), id}); }
    /// Forgets all keys; the history stays.
    void clear();

    /// Whether `id` was there at any time from `begin` until now; of values that cannot be read,
    /// one is as good as none.
    bool hasHeld(int key, ValueId id, Time begin) const;
    /// How often `id` was put there since `begin`.
    int writes(int key, ValueId id, Time begin) const;

private:
    struct Entry
    {
        Time since;
        ValueId id;
    };

    const Agenda& fAgenda;
    int fVersions = 0;
    std::vector<std::vector<Entry>> fHistories;
};
