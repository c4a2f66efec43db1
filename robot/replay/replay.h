// SPDX-License-Identifier: MIT
#pragma once

#include "recorded_file.h"
#include "replay_clock.h"
#include "replayed_values.h"

#include <kit/replay_command.h>

#include <optional>

/// A recording that is played: which values are due when. Knows no robot, and no clock: it is told
/// the time. Errors are those of RecordedFile.
class Replay
{
public:
    using Point = ReplayClock::Point;

    /// Shows the first step, and stands there.
    Replay(const std::string& path, double speed, bool loops);

    /// When `advance` has something to do; nothing while it stands.
    std::optional<Point> due() const;
    /// Shows the last of the steps that are due, if any. Of many, and of a search, does a piece
    /// that takes some milliseconds.
    void advance(Point now);
    void obey(const kit::ReplayCommand& command, Point now);

    bool hasEnded() const { return !fNext && !fLoops && !isSearching(); }
    /// Whether it reads up to where it shall jump or step: it shows nothing new until it is there.
    bool isSearching() const { return fSought || fStepsLeft > 0; }
    /// The row within which the file ends, and which is left out; 0: none. Known at its end.
    std::uint64_t cutRow() const { return fRecording.cutRow(); }

    /// The pairs for ZoMemoryProxy::setListData of all that has changed since the last call.
    ZoValue takeChanged();
    /// The robot's memory may have lost what it had.
    void startOver();

private:
    using Time = ReplayClock::Time;

    /// By which a round may begin too late without being put off.
    static constexpr std::chrono::seconds fMostLate{1};

    void fetch();
    std::size_t showNext();
    bool isNextDue(Point now) const;
    void beginAgain(Point now);
    bool isBeforeGoal() const;
    Time position(Point now) const;
    void showFirst();
    void search(Point now);
    void jump(Time time, Point now);
    void step(int steps, Point now);
    void giveUpSteps(Point now);
    Time interval() const;
    std::string state() const;

    RecordedFile fRecording;
    ReplayClock fClock{Time(0), 1};
    const bool fLoops;
    ReplayedValues fValues;
    std::optional<ReplayStep> fNext; ///< nothing: the end
    std::optional<Time> fSought;     ///< where it shall jump
    int fStepsLeft = 0;              ///< that it shall show
    Time fFirst{0};
    Time fShown{0};
    Time fInterval{0}; ///< between the last two steps
    std::vector<ZoValue> fToldStates;
};
