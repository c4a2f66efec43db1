// SPDX-License-Identifier: MIT
#include "recorder.h"

#include "commands.h"
#include "ticks.h"

#include <kit/output.h>
#include <kit/refusal.h>

#include <zo/error.h>

#include <algorithm>
#include <utility>

namespace {

using std::chrono::duration_cast;
using std::chrono::milliseconds;
using std::chrono::seconds;

/// An answer has a place for each key; what a robot sends is not to be trusted.
void checkSize(const ZoListAnswer& answer, const ZoValue& request)
{
    if (answer.values.getSize() != request.getSize())
        throw ZoError("the robot sent " + std::to_string(answer.values.getSize()) + " values for " +
                      std::to_string(request.getSize()) + " keys");
}

} // namespace

Recorder::Recorder(RecordedRobot robot, Rows& rows, RowSink& sink, RecordingView& view, Tell tell,
                   RecorderTime time)
    : fRobot(std::move(robot)),
      fRows(rows),
      fSink(sink),
      fView(view),
      fTell(std::move(tell)),
      fTime(std::move(time)),
      fPresence([this](const std::string& message) { say(message); }),
      fClock(fTime.now()),
      fStart(fTime.now().steady)
{
}

void Recorder::run(const RecorderPlan& plan)
{
    try {
        recordAndSave(plan);
        showEnd({});
    } catch (const std::exception& error) {
        showEnd(error.what());
        throw;
    }
}

/// What was recorded before a failure is brought to the disk, too. A sink that has failed may fail
/// at that once more, for the reason that is told already; the robot's failure says nothing of it.
void Recorder::recordAndSave(const RecorderPlan& plan)
{
    try {
        record(plan);
    } catch (const ZoError&) {
        saveAfterFailure([this](const std::string& problem) { say(problem); });
        throw;
    } catch (...) {
        saveAfterFailure([](const std::string&) {});
        throw;
    }
    fSink.finish();
    tellMissing(fMissing.atEnd());
}

void Recorder::saveAfterFailure(const Tell& tell)
{
    try {
        fSink.finish();
    } catch (const kit::OutputError&) {
        // It needs no message.
    } catch (const std::exception& error) {
        tell(error.what());
    }
}

void Recorder::record(const RecorderPlan& plan)
{
    fRequest = requestOf(plan.keys);
    fMissing = MissingKeys(plan.keys);
    fTellsMissing = plan.tellsMissing;
    if (plan.gapRows && fSink.isContinued())
        addGap();
    Ticks ticks(fStart, plan.period);
    bool goesOn = true;
    while (goesOn) {
        fPolls = ticks.passed() + 1;
        if (hasReader())
            poll(plan.gapRows);
        const Point next = ticks.next(fTime.now().steady);
        const bool isLast = plan.duration.count() > 0 && next >= fStart + plan.duration;
        if (isLast)
            handOver();
        goesOn = !isLast && waitFor(next);
    }
}

/// One who pauses makes polls miss, in place of rows fill the memory.
bool Recorder::hasReader()
{
    const bool pauses = !fSink.hasRoom();
    if (pauses && !fReaderPauses)
        say("the reader of the output pauses: polls are missed until it goes on");
    fReaderPauses = pauses;
    return !pauses;
}

void Recorder::poll(bool gapRows)
{
    try {
        const ZoListAnswer answer = fRobot.memory.getListAnswer(fRequest);
        checkSize(answer, fRequest);
        fPresence.present();
        fState.phase = RecorderState::Phase::Recording;
        fState.cause.clear();
        take(answer);
    } catch (const ZoUnderWay&) {
        // It is there at the next time.
    } catch (const ZoError& error) {
        kit::throwIfRefused(fRobot.link());
        fState.phase = RecorderState::Phase::Waiting;
        fState.cause = error.toString();
        if (fPresence.lost(error) && gapRows)
            addGap();
    }
}

/// The same answer may come twice where lists are followed: it is no news.
void Recorder::take(const ZoListAnswer& answer)
{
    if (fLastArrival && answer.arrived <= *fLastArrival)
        return;
    fLastArrival = answer.arrived;
    ++fAnswers;
    tellTooLarge(answer.tooLarge);
    tellMissing(fMissing.see(answer));
    const Rows::Time time =
        fClock.timeOf(answer.arrived, fTime.now(), [this](const std::string& text) { say(text); });
    std::size_t count = fRows.add(time, answer, fText);
    if (beginsFile(time)) {
        fText.clear();
        count = fRows.addFirst(time, answer, fText);
    }
    write(time);
    fState.rows += count;
}

/// Once, until there are none.
void Recorder::tellTooLarge(int count)
{
    fState.tooLarge += count;
    if (count > 0 && !fHasTooLarge)
        say(std::to_string(count) + (count == 1 ? " value is" : " values are") +
            " larger than 1 MiB: rows leave that out");
    fHasTooLarge = count > 0;
}

void Recorder::tellMissing(const std::string& missing)
{
    if (fTellsMissing && !missing.empty())
        say(missing);
}

/// Each file shall stand alone.
bool Recorder::beginsFile(Rows::Time time)
{
    return !fText.empty() && fSink.beginsFile(fText.size(), time);
}

void Recorder::addGap()
{
    const ClockReading now = fTime.now();
    const Rows::Time time =
        fClock.timeOf(now.steady, now, [this](const std::string& text) { say(text); });
    fRows.addGap(time, fText);
    beginsFile(time); // which a gap may do
    write(time);
}

void Recorder::write(Rows::Time time)
{
    if (!fText.empty())
        fSink.add(fText, time);
    fText.clear();
}

/// False when the recording shall end. Looks up now and then.
bool Recorder::waitFor(Point then)
{
    while (true) {
        const ClockReading now = fTime.now();
        fSink.checkReader();
        if (fView.isDue(now.steady, fState.phase))
            show(now);
        if (!fTime.wait(std::min(then, now.steady + seconds(1))))
            return false;
        if (fTime.now().steady >= then)
            return true;
    }
}

/// At its end a recording waits for the reader, until it is told to end.
void Recorder::handOver()
{
    while (!fSink.isTaken() && waitFor(fTime.now().steady + milliseconds(50))) {
    }
}

void Recorder::show(const ClockReading& now)
{
    if (fLastArrival)
        fState.age = duration_cast<milliseconds>(now.steady - *fLastArrival);
    fState.missedPolls = fPolls - fAnswers;
    fState.emptyKeys = fMissing.count();
    fState.bytes = fSink.bytes();
    fState.freeBytes = fSink.freeBytes();
    fState.path = fSink.path();
    fView.show(now.steady, fState);
}

void Recorder::showEnd(const std::string& cause)
{
    fState.phase = RecorderState::Phase::Ended;
    fState.cause = cause;
    show(fTime.now());
}

void Recorder::say(const std::string& message)
{
    fView.clear();
    fTell(message);
}
