// SPDX-License-Identifier: MIT
#include "arguments.h"
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
        kit::print("tarvek-robot " ROBOT_VERSION "\n");
        break;
    case RobotArguments::Action::Run:
        runRobot(std::move(arguments));
        break;
    }
    return kit::exitDone;
}

} // namespace

int main(int argc, char** argv)
{
    kit::prepareProcess();
    const std::vector<std::string> words(argv + 1, argv + argc);
    return kit::runProgram("tarvek-robot", [&] { return run(parseArguments(words)); });
}
