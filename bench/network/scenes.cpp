// SPDX-License-Identifier: MIT
#include "network/scenes.h"

#include "network/ticking_robot.h"
#include "network/watched_panel.h"
#include "support/redis_server.h"
#include "widget.h"

#include <algorithm>

namespace {

using Reading = WatchedPanel::Reading;
using std::chrono::milliseconds;

const Load load{1000, Load::Changing::Same};
constexpr int watched = 500;

struct Waits
{
    Report::Figure opening;
    Report::Figure changedList;
    Report::Figure refreshAll;
    Report::Figure stopped;
    Report::Figure resumed;
    Report::Figure dripping;
    Report::Figure killed;
    Report::Figure restarted;
};

/// One panel's scenes, one after the other.
class Scenes
{
public:
    Scenes(const NetworkProfile& profile, milliseconds time, LoopWatch& loop, Reading reading)
        : fWay(profile.way),
          fTime(time),
          fPause(time / 3 + std::chrono::duration_cast<milliseconds>(2 * profile.roundTrip())),
          fNetwork(fServer.port(), profile.way),
          fPanel(fNetwork.port(), reading, load.keys, watched, loop)
    {
    }

    Waits play()
    {
        Waits waits{};
        waits.opening = fPanel.open();
        fPanel.start();
        WatchedPanel::pass(fTime);
        waits.changedList = changeLists();
        waits.refreshAll = refreshAll();
        waits.stopped = after([this] { fServer.stop(); });
        waits.resumed = after([this] { fServer.resume(); });
        waits.dripping = after([this] {
            NetworkWay dripping = fWay;
            dripping.drip = 1;
            fNetwork.change(fWay, dripping);
        });
        fNetwork.change(fWay, fWay);
        WatchedPanel::pass(fTime);
        waits.killed = after([this] { fServer.kill(); });
        fServer.restart();
        waits.restarted = after([] {});
        return waits;
    }

private:
    template <class Action>
    Report::Figure after(Action action)
    {
        return fPanel.longestCallIn(fTime, action);
    }

    /// One more key each time.
    Report::Figure changeLists()
    {
        Report::Figure longest;
        for (int key = watched; key < watched + 5; ++key) {
            const QString alias = QString::fromStdString(Load::alias(key));
            longest = std::max(longest, fPanel.longestCallIn(fPause, [&] {
                fPanel.panel.click(alias, Widget::fColWatch);
            }));
        }
        return longest;
    }

    Report::Figure refreshAll()
    {
        Report::Figure longest;
        for (int i = 0; i < 3; ++i) {
            longest = std::max(longest, fPanel.longestCallIn(milliseconds(0), [this] {
                fPanel.panel.button("Refresh All")->click();
            }));
            WatchedPanel::pass(fPause);
        }
        return longest;
    }

    const NetworkWay fWay;
    const milliseconds fTime;
    const milliseconds fPause;
    RedisServer fServer;
    TickingRobot fRobot{fServer.port(), load};
    NetworkEmulator fNetwork;
    WatchedPanel fPanel;
};

} // namespace

void reportScenes(const NetworkProfile& profile, milliseconds time, LoopWatch& loop, Report& report)
{
    const Waits followed = Scenes(profile, time, loop, Reading::Followed).play();
    const Waits plain = Scenes(profile, time, loop, Reading::Plain).play();
    const auto trip = profile.roundTrip() + 2 * profile.way.jitter;
    const double change =
        std::chrono::duration<double, std::milli>(trip + milliseconds(50)).count();
    report.begin(profile.text + "; longest call of getListData, " + std::to_string(watched) +
                 " of " + load.text());
    const auto line = [&](const char* what, Report::Figure Waits::*wait,
                          std::optional<Target> target) {
        report.line(what, followed.*wait, plain.*wait, target);
    };
    line("the opening fetch, ms", &Waits::opening, {});
    line("Watch clicked: a changed list, ms", &Waits::changedList, atMost(change));
    line("Refresh All clicked, ms", &Waits::refreshAll, {});
    line("the robot's server stopped, ms", &Waits::stopped, atMost(20));
    line("and goes on, ms", &Waits::resumed, atMost(20));
    line("its answers drip, ms", &Waits::dripping, atMost(20));
    line("it was killed, ms", &Waits::killed, atMost(20));
    line("and is back, ms", &Waits::restarted, atMost(20));
}
