// SPDX-License-Identifier: MIT
#include "arguments.h"
#include "replay/run_replay.h"
#include "robot.h"

#include <kit/output.h>
#include <kit/program.h>

#include <string>
#include <utility>
#include <vector>

namespace {

int run(RobotArguments arguments)
{
    switch (arguments.action) {
    case RobotArguments::Action::Help:
        kit::print(robotHelp());
        break;
    case RobotArguments::Action::Version:
        kit::print(robotVersion());
        break;
    case RobotArguments::Action::Run:
        if (arguments.replay.path.empty())
            runRobot(std::move(arguments));
        else
            runReplay(std::move(arguments));
        break;
    }
    return kit::exitDone;
}

} // namespace

int main(int argc, char** argv)
{
    kit::prepareProcess();
    const std::vector<std::string> words(argv + 1, argv + argc);
    if (kit::isAskedToComplete(words))
        return kit::answerShell(words, completeRobotOptions);
    return kit::runProgram("tarvek-robot", [&] { return run(parseArguments(words)); });
}
