// SPDX-License-Identifier: MIT
#pragma once

#include "missing_keys.h"
#include "presence.h"
#include "recording_view.h"
#include "row_clock.h"
#include "row_sink.h"
#include "rows.h"

#include <zo/link_status.h>
#include <zo/memory_proxy.h>

#include <functional>

/// The time in which a recorder runs.
struct RecorderTime
{
    using Point = std::chrono::steady_clock::time_point;

    std::function<ClockReading()> now;
    /// Waits until then; false when the recording shall end.
    std::function<bool(Point then)> wait;
};

/// Whom to record.
struct RecordedRobot
{
    ZoMemoryProxy memory;
    std::function<ZoLinkStatus()> link;
};

/// What to record, and how.
struct RecorderPlan
{
    std::vector<std::string> keys; ///< by column
    std::chrono::milliseconds period{1000};
    std::chrono::milliseconds duration{0}; ///< 0: until it is told to end
    bool gapRows = false;
    bool tellsMissing = true; ///< keys without a value by messages, not only by its state
};

/// Polls a robot at an even pace, and hands the rows that its answers make to a sink: for each poll
/// one answer at most, and none that is not the robot's.
class Recorder
{
public:
    using Tell = std::function<void(const std::string&)>;

    Recorder(RecordedRobot robot, Rows& rows, RowSink& sink, RecordingView& view, Tell tell,
             RecorderTime time);

    /// Records until the end of the plan, or until it is told to. Throws ZoError when the robot
    /// refuses user, password or certificate, and what the sink does.
    void run(const RecorderPlan& plan);

private:
    using Point = RecorderTime::Point;

    void recordAndSave(const RecorderPlan& plan);
    void saveAfterFailure(const Tell& tell);
    void record(const RecorderPlan& plan);
    bool hasReader();
    void poll(bool gapRows);
    void take(const ZoListAnswer& answer);
    void tellTooLarge(int count);
    void tellMissing(const std::string& missing);
    bool beginsFile(Rows::Time time);
    void addGap();
    void write(Rows::Time time);
    bool waitFor(Point then);
    void handOver();
    void show(const ClockReading& now);
    void showEnd(const std::string& cause);
    void say(const std::string& message);

    RecordedRobot fRobot;
    Rows& fRows;
    RowSink& fSink;
    RecordingView& fView;
    const Tell fTell;
    const RecorderTime fTime;

    Presence fPresence;
    MissingKeys fMissing;
    bool fTellsMissing = true;
    RowClock fClock;
    const Point fStart;
    ZoValue fRequest;
    std::optional<Point> fLastArrival;
    RecorderState fState;
    std::int64_t fPolls = 0; ///< that were due so far
    std::int64_t fAnswers = 0;
    bool fReaderPauses = false;
    bool fHasTooLarge = false;
    std::string fText; ///< of rows; its memory is used again
};
