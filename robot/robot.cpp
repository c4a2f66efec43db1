// SPDX-License-Identifier: MIT
#include "robot.h"

#include "publication.h"
#include "robot_thread.h"
#include "tick_loop.h"
#include "trouble.h"

#include <kit/program.h>
#include <kit/signals.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <deque>
#include <unistd.h>

namespace {

constexpr int refusalSignal = SIGUSR1; ///< one robot's thread to the main thread

/// The robots of a publication at work.
class Fleet
{
public:
    Fleet(const RobotArguments& arguments, const Publication& publication)
    {
        for (std::size_t robot = 0; robot < publication.robots(); ++robot) {
            const std::uint32_t seed = arguments.seed + static_cast<std::uint32_t>(robot);
            fLoops.emplace_back(publication, robot, robotKeys(arguments.keys, seed), arguments.rate,
                                fTrouble);
        }
        // Those that are there already would hold up the others.
        for (TickLoop& loop : fLoops)
            fThreads.emplace_back(loop,
                                  [this](const std::exception_ptr& why) { keepRefusal(why); });
    }

    /// Throws what has ended one of them.
    void throwRefusal()
    {
        const std::lock_guard<std::mutex> lock(fMutex);
        if (fRefusal)
            std::rethrow_exception(fRefusal);
    }

private:
    void keepRefusal(const std::exception_ptr& why)
    {
        {
            const std::lock_guard<std::mutex> lock(fMutex);
            fRefusal = why;
        }
        ::kill(::getpid(), refusalSignal);
    }

    Trouble fTrouble;
    std::mutex fMutex;
    std::exception_ptr fRefusal;
    // Neither ever moves.
    std::deque<TickLoop> fLoops;
    std::deque<RobotThread> fThreads;
};

} // namespace

void runRobot(RobotArguments arguments)
{
    kit::tellWarning("tarvek-robot", arguments.connection.warning);
    // Those that end the robot, and the one that tells of its server's end.
    const kit::Signals signals{SIGTERM, SIGINT, SIGHUP, SIGCHLD, refusalSignal};
    Publication publication(arguments);
    Fleet fleet(arguments, publication);
    kit::print(publication.news());
    while (true) {
        const int signal =
            signals.waitUntil(std::chrono::steady_clock::now() + std::chrono::hours(1));
        if (signal != 0 && publication.endsOn(signal))
            break;
    }
    fleet.throwRefusal();
}
