// SPDX-License-Identifier: MIT
#include "robot.h"

#include "publication.h"
#include "publisher.h"
#include "ticks.h"
#include "trouble.h"

#include <kit/program.h>
#include <kit/refusal.h>
#include <kit/signals.h>

#include <zo/zo.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <string>

namespace {

using Steady = std::chrono::steady_clock;

/// Publishes tick after tick and that the robot is there, and tells once for each outage that and
/// why nothing arrives.
class TickLoop
{
public:
    TickLoop(Publisher& publisher, const Publication& publication, double rate)
        : fPublisher(publisher),
          fBroker(publication.broker()),
          fSign(publication.signOfLife()),
          fRate(rate)
    {
    }

    /// For the next tick, or the sign of life, which does not wait for a slow one.
    Steady::time_point wakeAt() const
    {
        const auto next = nextTickTime();
        return std::min(next, fSign.due().value_or(next));
    }

    /// Throws ZoError when the server refuses user, password or certificate.
    void goOn()
    {
        const bool isTick = Steady::now() >= nextTickTime();
        try {
            if (isTick)
                publish();
            fSign.tell();
            if (isTick)
                fTrouble.report("");
        } catch (const ZoError& error) {
            kit::throwIfRefused(fBroker.linkStatus());
            fTrouble.report(error.toString());
        }
        if (isTick)
            fTick = nextTick(fTick, elapsed(), fRate);
    }

private:
    Steady::time_point nextTickTime() const
    {
        const std::chrono::duration<double> sinceStart(tickTime(fTick, fRate));
        return fStart + std::chrono::duration_cast<std::chrono::nanoseconds>(sinceStart);
    }
    double elapsed() const { return std::chrono::duration<double>(Steady::now() - fStart).count(); }

    void publish()
    {
        startOverAfterALoss();
        fPublisher.publish(tickTime(fTick, fRate));
    }

    /// The server that the link came back to may be another one, or have been emptied.
    void startOverAfterALoss()
    {
        const auto upSince = fBroker.linkStatus().since;
        if (upSince != fUpSince)
            fPublisher.startOver();
        fUpSince = upSince;
    }

    Publisher& fPublisher;
    const ZoBroker& fBroker;
    SignOfLife fSign;
    double fRate;
    Steady::time_point fStart = Steady::now();
    std::chrono::system_clock::time_point fUpSince = fBroker.linkStatus().since;
    long long fTick = 1;
    Trouble fTrouble;
};

} // namespace

void runRobot(RobotArguments arguments)
{
    kit::tellWarning("tarvek-robot", arguments.connection.warning);
    // Those that end the robot, and the one that tells of its server's end.
    const kit::Signals signals{SIGTERM, SIGINT, SIGHUP, SIGCHLD};
    Publication publication(arguments);
    Publisher publisher(robotKeys(arguments.keys, arguments.seed), publication.memory());
    publisher.publish(0);
    publication.signOfLife().tell(); // who is told that it is there shall find it
    kit::print(publication.news());

    TickLoop loop(publisher, publication, arguments.rate);
    while (true) {
        const int signal = signals.waitUntil(loop.wakeAt());
        if (signal == 0)
            loop.goOn();
        else if (publication.endsOn(signal))
            return;
    }
}
