// SPDX-License-Identifier: MIT
#pragma once

#include "simulation/agenda.h"

#include <memory/round_plan.h>

#include <cstdint>
#include <functional>
#include <limits>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

/// The robot's memory as followers see it: every value that each key ever had, and which keys the
/// one client is told about.
class FollowingRobot
{
public:
    using Time = Agenda::Time;

    /// What a key may be, beside the numbers that it has.
    static constexpr std::int64_t fNone = -1; ///< there is none
    static constexpr std::int64_t fTooLarge = -2;
    static constexpr std::int64_t fForbidden = -3;

    /// What whoever asks for a key is told.
    struct Past
    {
        std::int64_t value;
        Time from;
        bool isQuiet = false; ///< nobody was told that it became so
        Time until = Time::max();

        std::int64_t shown() const { return value < 0 ? fNone : value; }
    };
    struct Key
    {
        std::string name;
        std::int64_t value; ///< whether it may be read or not
        std::vector<Past> past;
        bool isTogether = false; ///< one command writes it with the others that are
        bool isForbidden = false;
    };
    /// Called for each key that was written while it was told about; null: for all of them.
    using Notify = std::function<void(const Key*)>;

    FollowingRobot(const Agenda& agenda, int count, Notify notify);

    const std::vector<Key>& keys() const { return fKeys; }
    int count() const { return static_cast<int>(fKeys.size()); }
    int numberOf(const std::string& name) const { return fNumbers.at(name); }

    void writeTogether(int key) { fKeys[key].isTogether = true; }

    void write(int key, std::int64_t value);
    /// Writes those that are written together.
    void tick();
    /// As when rights or databases change: nobody is told.
    void writeQuietly(int key, std::int64_t value);
    void flush();
    /// Nobody may read it, until everybody may read everything. Nobody is told.
    void forbid(int key);
    void allowAll();
    /// Keys, at any time.
    int mostForbidden() const { return fMostForbidden; }
    std::int64_t fresh() { return ++fNewest; }

    /// Of all `keys` at one moment; nothing when one of them is forbidden.
    std::vector<std::int64_t> read(const std::vector<int>& keys, zo::Telling telling);
    void forgetClient() { fTold.clear(); }

private:
    void put(int key, std::int64_t value, bool isQuiet = false);
    void become(Key& key, std::int64_t value, bool isQuiet);

    const Agenda& fAgenda;
    std::vector<Key> fKeys;
    std::unordered_map<std::string, int> fNumbers;
    std::unordered_set<int> fTold; ///< keys whose change is told, once
    Notify fNotify;
    std::int64_t fNewest = 0;
    int fForbiddenKeys = 0;
    int fMostForbidden = 0;
};
