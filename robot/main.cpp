// SPDX-License-Identifier: MIT
#include "arguments.h"
#include "robot.h"

#include <exception>
#include <iostream>

namespace {

constexpr int failed = 1;
constexpr int misused = 2;

int run(const RobotArguments& arguments)
{
    switch (arguments.action) {
    case RobotArguments::Action::Help:
        std::cout << helpText();
        return 0;
    case RobotArguments::Action::Version:
        std::cout << "tarvek-robot " << ROBOT_VERSION << "\n";
        return 0;
    case RobotArguments::Action::Run:
        break;
    }
    return runRobot(arguments, std::cout, std::cerr);
}

} // namespace

int main(int argc, char** argv)
{
    try {
        return run(parseArguments({argv + 1, argv + argc}));
    } catch (const UsageError& error) {
        std::cerr << "tarvek-robot: " << error.what() << " (see tarvek-robot --help)\n";
        return misused;
    } catch (const std::exception& error) {
        std::cerr << "tarvek-robot: " << error.what() << "\n";
        return failed;
    }
}
