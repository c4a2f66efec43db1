// SPDX-License-Identifier: MIT
#include "tick_loop.h"

#include "ticks.h"

#include <kit/refusal.h>

#include <zo/zo.h>

#include <algorithm>
#include <utility>

TickLoop::TickLoop(const Publication& publication, std::size_t robot, std::vector<RobotKey> keys,
                   double rate, Trouble& trouble)
    : fBroker(publication.broker(robot)),
      fRobot(robot),
      fPublisher(std::move(keys), publication.memory(robot)),
      fSign(publication.signOfLife(robot)),
      fRate(rate),
      fTrouble(trouble)
{
    fPublisher.publish(0);
    fSign.tell(); // who is told that it is there shall find it
}

TickLoop::Steady::time_point TickLoop::wakeAt() const
{
    const auto next = nextTickTime();
    return std::min(next, fSign.due().value_or(next));
}

void TickLoop::goOn()
{
    const bool isTick = Steady::now() >= nextTickTime();
    try {
        if (isTick)
            publish();
        fSign.tell();
        if (isTick)
            fTrouble.report("", fRobot);
    } catch (const ZoError& error) {
        kit::throwIfRefused(fBroker.linkStatus());
        fTrouble.report(error.toString(), fRobot);
    }
    if (isTick)
        fTick = nextTick(fTick, elapsed(), fRate);
}

TickLoop::Steady::time_point TickLoop::nextTickTime() const
{
    const std::chrono::duration<double> sinceStart(tickTime(fTick, fRate));
    return fStart + std::chrono::duration_cast<std::chrono::nanoseconds>(sinceStart);
}

void TickLoop::publish()
{
    startOverAfterALoss();
    fPublisher.publish(tickTime(fTick, fRate));
}

/// The server that the link came back to may be another one, or have been emptied.
void TickLoop::startOverAfterALoss()
{
    const auto upSince = fBroker.linkStatus().since;
    if (upSince != fUpSince)
        fPublisher.startOver();
    fUpSince = upSince;
}
