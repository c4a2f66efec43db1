// SPDX-License-Identifier: MIT
#include "watch.h"

#include "commands.h"
#include "presence.h"
#include "ticks.h"

#include <kit/output.h>
#include <kit/quantity.h>
#include <kit/refusal.h>

#include <zo/error.h>

WatchTime realTime()
{
    return {std::chrono::steady_clock::now, &kit::Output::waitUntil};
}

void watchValues(WatchedRobot& robot, const Watch& watch, kit::Output& output,
                 const std::function<void(const std::string&)>& tell, const WatchTime& time)
{
    const ZoValue request = requestOf(watch.keys);
    Presence presence(tell);
    Ticks ticks(time.now(), watch.period);
    for (int polls = 0; watch.count == 0 || polls < watch.count;) {
        const std::string seconds = kit::secondsText(ticks.sinceStart(time.now()));
        try {
            const ZoValue values = valuesOf(robot.memory, request);
            presence.present();
            for (int i = 0; i < values.getSize(); ++i)
                output.add(seconds + "\t" +
                           recordOf(watch.keys[static_cast<std::size_t>(i)], values[i]));
            output.flush();
            ++polls;
        } catch (const ZoUnderWay&) {
            // It is there at the next time.
        } catch (const ZoError& error) {
            kit::throwIfRefused(robot.link());
            presence.lost(error);
        }
        if (watch.count == 0 || polls < watch.count)
            time.wait(output, ticks.next(time.now()));
    }
}
