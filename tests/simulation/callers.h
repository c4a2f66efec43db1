// SPDX-License-Identifier: MIT
#pragma once

#include "simulation/agenda.h"
#include "simulation/random.h"
#include "simulation/robot_memory.h"

#include <link/call.h>
#include <link/link_actions.h>
#include <link/link_settings.h>
#include <memory/list_request.h>
#include <memory/names_sink.h>
#include <memory/values_sink.h>
#include <wire/status_sink.h>

#include <memory>
#include <string>
#include <vector>

/// Who calls over a link: with the requests and sinks of the real memory module. Checks that each
/// call ends as it should, and what it brings. Throws Violation.
class Callers
{
public:
    using Time = Agenda::Time;

    Callers(const Agenda& agenda, Random& random, const RobotMemory& memory)
        : fAgenda(agenda), fRandom(random), fMemory(memory)
    {
    }

    /// A new call of some kind. `isLate`: its time is up already.
    std::shared_ptr<zo::Call> make(const zo::LinkSettings& settings, bool isLate);
    /// One of the calls under way, if there are any; it may end no more.
    std::shared_ptr<zo::Call> giveUp();
    void end(const zo::LinkAction::End& end);

    /// So late calls must have ended when the link was awake at `awake`.
    void checkDeadlines(Time awake) const;
    int underWay() const { return static_cast<int>(fCalls.size()); }
    int answered() const { return fAnswered; }
    /// Those among them that name keys: any node of a cluster lists names, only one has the keys.
    int answeredForKeys() const { return fAnsweredForKeys; }
    /// All have ended, and nothing keeps them.
    void checkEnd();
    /// The next call's request is long.
    void wantMuch() { fWantsMuch = true; }
    /// From now on no call is in a greater hurry than those of the memory module.
    void calmDown() { fIsInHurry = false; }
    /// Bytes that the link may use for what is under way.
    std::int64_t allowance() const;

private:
    struct Call
    {
        std::shared_ptr<zo::Call> exchange;
        Time begin;
        std::shared_ptr<const zo::ListRequest> list;
        std::shared_ptr<zo::ValuesSink> values;
        std::shared_ptr<zo::NamesSink> names;
        std::shared_ptr<zo::SlotNamesSink> namesInSlot;
        std::shared_ptr<zo::StatusSink> stored;
        std::vector<ValueId> store; ///< the values that it stores
    };

    void askForValues(Call& call);
    std::vector<int> someKeys(bool areMany);
    void askForNames(Call& call);
    void askForNamesInSlot(Call& call, int slot);
    void storeValues(Call& call);
    void checkAnswer(const Call& call) const;
    void checkValues(const Call& call) const;
    void checkNames(const std::vector<std::string>& names) const;
    void checkNamesInSlot(const Call& call) const;
    void checkStore(const Call& call, bool isAnswered, const zo::SharedText& problem) const;
    void make(Call& call, const char* name, zo::SharedText bytes, zo::Inquiry::Parts parts,
              std::shared_ptr<zo::ReplySink> sink, int keys);

    const Agenda& fAgenda;
    Random& fRandom;
    const RobotMemory& fMemory;
    const zo::LinkSettings* fSettings = nullptr; ///< while a call is made
    std::string fPrefix;                         ///< of the robot's keys
    bool fIsLate = false;
    bool fIsInHurry = true;
    bool fWantsMuch = false;
    std::shared_ptr<const zo::ListRequest> fLast; ///< polls ask for the same again
    std::vector<Call> fCalls;
    std::vector<std::weak_ptr<zo::Call>> fAll;
    int fAnswered = 0;
    int fAnsweredForKeys = 0;
    int fVersions = 500000; ///< beyond those that the robot itself makes
};
