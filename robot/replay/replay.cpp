// SPDX-License-Identifier: MIT
#include "replay.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace {

constexpr std::size_t cellsOfPiece = 50000; ///< of a search: some milliseconds' work

double inSeconds(std::chrono::milliseconds time)
{
    return static_cast<double>(time.count()) / 1000;
}

/// A key by which the playing is told of and ruled. A recording of what played one has them, too.
bool isControlsOwn(const ZoValue& key)
{
    const std::string prefix = "Replay/";
    return key.toString(ZoWhole).compare(0, prefix.size(), prefix) == 0;
}

} // namespace

Replay::Replay(const std::string& path, double speed, bool loops) : fRecording(path), fLoops(loops)
{
    fetch();
    if (!fNext)
        throw std::runtime_error("the file '" + path + "' has no row to play");
    fFirst = fNext->time;
    fClock = ReplayClock(fFirst, speed);
    showNext();
}

std::optional<Replay::Point> Replay::due() const
{
    if (isSearching())
        return Point(); // that time is over
    if (fNext)
        return fClock.due(fNext->time);
    return fLoops ? fClock.due(fShown + interval()) : std::nullopt;
}

void Replay::advance(Point now)
{
    if (isSearching())
        search(now);
    if (isSearching())
        return;
    beginAgain(now);
    for (std::size_t cells = 0; cells < cellsOfPiece && isNextDue(now);)
        cells += showNext();
}

bool Replay::isNextDue(Point now) const
{
    return fNext && fClock.isRunning() && *fClock.due(fNext->time) <= now;
}

/// The first step of another round follows the last one as that did its own; rounds that are over
/// are not played.
void Replay::beginAgain(Point now)
{
    if (fNext || !fLoops || !fClock.isRunning())
        return;
    const Point again = *due();
    if (again > now)
        return;
    showFirst();
    fClock.jump(now - again > fMostLate ? now : again, fFirst);
}

void Replay::obey(const kit::ReplayCommand& command, Point now)
{
    using Kind = kit::ReplayCommand::Kind;
    switch (command.kind) {
    case Kind::Play:
        giveUpSteps(now);
        if (hasEnded())
            jump(fFirst, now);
        fClock.run(now);
        break;
    case Kind::Pause:
        giveUpSteps(now);
        fClock.stop(now);
        break;
    case Kind::Step:
        step(command.steps, now);
        break;
    case Kind::JumpTo:
        jump(command.time, now);
        break;
    case Kind::JumpBy:
        jump(position(now) + command.time, now);
        break;
    case Kind::JumpFrom:
        jump(fFirst + command.time, now);
        break;
    case Kind::Speed:
        fClock.setSpeed(now, command.speed);
        break;
    }
}

ZoValue Replay::takeChanged()
{
    ZoValue::Elements pairs;
    ZoValue values;
    if (!isSearching())
        values = fValues.takeChanged(fRecording.keys());
    for (int i = 0; i < values.getSize(); ++i) {
        if (!isControlsOwn(values[i][0]))
            pairs.push_back(std::move(values[i]));
    }
    const std::vector<std::pair<const char*, ZoValue>> states = {
        {kit::replayStateKey, state()},
        {kit::replayTimeKey, inSeconds(fShown)},
        {kit::replaySpeedKey, fClock.speed()}};
    fToldStates.resize(states.size());
    for (std::size_t i = 0; i < states.size(); ++i) {
        if (fToldStates[i] == states[i].second)
            continue;
        fToldStates[i] = states[i].second;
        pairs.push_back(ZoValue::fromElements({ZoValue(states[i].first), states[i].second}));
    }
    return ZoValue::fromElements(std::move(pairs));
}

void Replay::startOver()
{
    fValues.startOver();
    fToldStates.clear();
}

void Replay::fetch()
{
    if (!fNext)
        fNext.emplace();
    if (!fRecording.next(*fNext))
        fNext.reset();
}

/// Returns what that is worth in cells.
std::size_t Replay::showNext()
{
    const std::size_t cells = fNext->cells.size() + 1;
    fValues.apply(*fNext);
    fInterval = fNext->time - fShown;
    fShown = fNext->time;
    fetch();
    return cells;
}

void Replay::showFirst()
{
    fRecording.rewind();
    fValues.clear();
    fetch();
    showNext();
}

void Replay::jump(Time time, Point now)
{
    if (time < fShown)
        showFirst();
    fStepsLeft = 0;
    fSought = std::max(time, fFirst);
    search(now);
}

void Replay::step(int steps, Point now)
{
    fSought.reset();
    fStepsLeft = steps;
    search(now);
}

/// The clock stands where the first of them began.
void Replay::giveUpSteps(Point now)
{
    if (fStepsLeft == 0)
        return;
    fStepsLeft = 0;
    fClock.jump(now, fShown);
}

/// Where a step is tells only who reads all before it.
void Replay::search(Point now)
{
    for (std::size_t cells = 0; cells < cellsOfPiece && isBeforeGoal();) {
        cells += showNext();
        fStepsLeft -= fSought ? 0 : 1;
    }
    if (isBeforeGoal())
        return;
    const bool isStep = !fSought;
    // Behind the end there is nothing: there time goes on from the end.
    fClock.jump(now, fSought && fNext ? *fSought : fShown);
    if (isStep)
        fClock.stop(now);
    fSought.reset();
    fStepsLeft = 0;
}

bool Replay::isBeforeGoal() const
{
    return fNext && (fSought ? fNext->time <= *fSought : fStepsLeft > 0);
}

/// The clock runs on behind the end, but the recording does not; a search sets it only when done.
Replay::Time Replay::position(Point now) const
{
    if (fSought)
        return *fSought;
    return hasEnded() || fStepsLeft > 0 ? fShown : fClock.at(now);
}

/// From the last step to the first one of another round.
Replay::Time Replay::interval() const
{
    const bool isOnly = fShown == fFirst;
    return isOnly || fInterval.count() == 0 ? Time(1000) : fInterval;
}

std::string Replay::state() const
{
    if (isSearching())
        return "searching";
    if (hasEnded())
        return "ended";
    return fClock.isRunning() ? "playing" : "paused";
}
