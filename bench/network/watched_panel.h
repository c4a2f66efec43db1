// SPDX-License-Identifier: MIT
#pragma once

#include "network/load.h"
#include "network/loop_watch.h"
#include "support/panel.h"

#include <zo/zo.h>

#include <chrono>
#include <functional>
#include <optional>

/// A robot's memory as a panel has it, and what becomes of its calls.
class WatchedMemory : public ZoProxy
{
public:
    WatchedMemory(boost::shared_ptr<ZoProxy> memory, LoopWatch& loop);

    ZoValue call(const std::string& method, const ZoValue& arguments) override;

    Samples calls;                                    ///< answered and failed
    int answered = 0;                                 ///< of them
    std::function<void(const ZoValue&)> whenAnswered; ///< with the values

private:
    const boost::shared_ptr<ZoProxy> fMemory;
    LoopWatch& fLoop;
};

/// A shown panel with a link of its own to the robot, made as the desktop makes it.
class WatchedPanel
{
public:
    enum class Reading
    {
        Followed,
        Plain
    };

    /// With so many keys, of which the first `watched` are watched. It fetches nothing by itself
    /// before `start`. Throws ZoError when the robot does not answer.
    WatchedPanel(int port, Reading reading, int keys, int watched, LoopWatch& loop);

    /// The opening fetch, of all keys. Returns what of it was spent in getListData.
    std::optional<double> open();
    /// From here on the panel fetches what is watched, at its period.
    void start() const { panel.dataTimer()->start(); }

    /// How long getListData takes in what `action` does and the time after it, at most; none when
    /// it is not called.
    template <class Action>
    std::optional<double> longestCallIn(std::chrono::milliseconds time, Action action)
    {
        memory->calls.clear();
        action();
        pass(time);
        return memory->calls.longest();
    }
    /// Lets the window's events come.
    static void pass(std::chrono::milliseconds time);

    const boost::shared_ptr<ZoBroker> broker;
    const boost::shared_ptr<WatchedMemory> memory;
    Panel panel;
};
