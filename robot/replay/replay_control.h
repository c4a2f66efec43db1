// SPDX-License-Identifier: MIT
#pragma once

#include <kit/replay_command.h>

#include <zo/memory_proxy.h>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

/// Looks now and then whether somebody has set the key that controls a replay, and takes the
/// commands from there. A thread of its own does that: a server that is far away must not make a
/// step late.
class ReplayControl
{
public:
    static constexpr std::chrono::milliseconds fInterval{50};

    /// `tell` hears of texts that are no command, when they are taken.
    ReplayControl(ZoMemoryProxy memory, std::function<void(const std::string&)> tell);
    ~ReplayControl();
    ReplayControl(const ReplayControl&) = delete;
    ReplayControl& operator=(const ReplayControl&) = delete;

    /// Those that have come since the last call, the oldest first.
    std::vector<kit::ReplayCommand> take();
    /// Why the last look failed; empty: it did not.
    std::string problem();

private:
    void run();
    std::vector<std::string> look();

    ZoMemoryProxy fMemory;
    const std::function<void(const std::string&)> fTell;
    const ZoValue fRequest;

    std::mutex fMutex; ///< guards what follows
    std::condition_variable fChanged;
    bool fIsEnding = false;
    std::vector<std::string> fTexts;
    std::string fProblem;
    std::thread fThread; ///< the last: it begins when the others are there
};
