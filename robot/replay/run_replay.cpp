// SPDX-License-Identifier: MIT
#include "replay/run_replay.h"

#include "publication.h"
#include "replay/replay.h"
#include "replay/replay_control.h"
#include "trouble.h"

#include <kit/password_file.h>
#include <kit/program.h>
#include <kit/refusal.h>
#include <kit/signals.h>

#include <zo/zo.h>

#include <algorithm>
#include <csignal>
#include <utility>

namespace {

using Steady = std::chrono::steady_clock;

void tell(const std::string& message)
{
    kit::tell("tarvek-robot", message);
}

/// Plays on as time goes by, and tells once of each end and each outage.
class ReplayLoop
{
public:
    ReplayLoop(Replay& replay, const Publication& publication)
        : fReplay(replay),
          fMemory(publication.memory()),
          fBroker(publication.broker()),
          fSign(publication.signOfLife()),
          fControl(fMemory, tell)
    {
    }
    /// What it leaves on a given server shall not look as if it went on.
    ~ReplayLoop()
    {
        try {
            fMemory.setData(kit::replayStateKey, ZoValue());
        } catch (const ZoError&) {
            // A server that is lost is told of already.
        }
    }
    ReplayLoop(const ReplayLoop&) = delete;
    ReplayLoop& operator=(const ReplayLoop&) = delete;

    /// For the next step, or to see whether a command has come.
    Steady::time_point wakeAt() const
    {
        const auto next = Steady::now() + ReplayControl::fInterval;
        return std::min(next, fReplay.due().value_or(next));
    }

    /// Throws ZoError when the server refuses user, password or certificate.
    void goOn()
    {
        fReplay.advance(Steady::now());
        tellEnd();
        try {
            publish();
            for (const kit::ReplayCommand& command : fControl.take()) {
                fReplay.obey(command, Steady::now());
                publish();
            }
            fSign.tell();
            report(fControl.problem());
        } catch (const ZoError& error) {
            fReplay.startOver();
            report(error.toString());
        }
    }

private:
    /// Empty: all is well.
    void report(const std::string& problem)
    {
        if (!problem.empty())
            kit::throwIfRefused(fBroker.linkStatus());
        fTrouble.report(problem);
    }

    /// What has changed; everything where the server may be another one, or have been emptied.
    void publish()
    {
        const auto upSince = fBroker.linkStatus().since;
        if (std::exchange(fUpSince, upSince) != upSince)
            fReplay.startOver();
        const ZoValue pairs = fReplay.takeChanged();
        if (pairs.getSize() > 0)
            fMemory.setListData(pairs);
    }

    void tellEnd()
    {
        const bool hasEnded = fReplay.hasEnded();
        const std::uint64_t cut = fReplay.cutRow();
        if (hasEnded && !std::exchange(fHasEnded, hasEnded))
            tell("the recording has ended" +
                 (cut > 0 ? " within row " + std::to_string(cut) + ", which is left out"
                          : std::string()) +
                 "; its last values stay until Ctrl-C");
        fHasEnded = hasEnded;
    }

    Replay& fReplay;
    ZoMemoryProxy fMemory;
    const ZoBroker& fBroker;
    SignOfLife fSign;
    ReplayControl fControl;
    Trouble fTrouble;
    std::chrono::system_clock::time_point fUpSince = fBroker.linkStatus().since;
    bool fHasEnded = false;
};

} // namespace

void runReplay(RobotArguments arguments)
{
    kit::tellWarning("tarvek-robot", arguments.connection.warning);
    const kit::Signals signals{SIGTERM, SIGINT, SIGHUP, SIGCHLD};
    const ReplayArguments& wanted = arguments.replay;
    Replay replay(wanted.path, wanted.speed, wanted.loops); // a bad file is told before all else
    if (wanted.from)
        replay.obey(*wanted.from, Steady::now());
    while (replay.isSearching()) {
        replay.advance(Steady::now());
        if (signals.waitUntil({}) != 0)
            return;
    }
    Publication publication(arguments, kit::replayControlKey);
    ZoMemoryProxy memory = publication.memory();
    memory.setData(kit::replayControlKey, ZoValue()); // what is there was meant for an earlier one
    memory.setListData(replay.takeChanged());
    publication.signOfLife().tell();
    kit::print(publication.news());
    if (!wanted.isPaused)
        replay.obey({kit::ReplayCommand::Kind::Play}, Steady::now());

    ReplayLoop loop(replay, publication);
    while (true) {
        loop.goOn();
        const int signal = signals.waitUntil(loop.wakeAt());
        if (signal != 0 && publication.endsOn(signal))
            return;
    }
}
