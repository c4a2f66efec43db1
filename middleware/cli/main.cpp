// SPDX-License-Identifier: MIT
#include "become_recorder.h"
#include "check.h"
#include "commands.h"
#include "complete.h"
#include "replay_remote.h"
#include "robots.h"
#include "watch.h"
#include "zo_command.h"

#include <kit/output.h>
#include <kit/password_file.h>
#include <kit/program.h>
#include <kit/version_text.h>

#include <zo/zo.h>

#include <chrono>
#include <utility>
#include <vector>

namespace {

/// The broker has a password of its own from then on.
boost::shared_ptr<ZoBroker> connect(kit::Connection& connection)
{
    kit::tellWarning("zo", connection.warning);
    auto broker = ZoBroker::create("zo", connection.address.host, connection.address.port,
                                   connection.options);
    kit::wipe(connection.options.password);
    return broker;
}

ZoMemoryProxy memoryOf(ZoBroker& broker)
{
    return ZoMemoryProxy(broker.getProxy("ZoMemory", 0));
}

void tell(const std::string& message)
{
    kit::tell("zo", message);
}

void watch(ZoCommand& command, kit::Output& output)
{
    kit::endWellOnStopSignals();
    command.connection.options.follow = !command.isPlain;
    const auto broker = connect(command.connection);
    WatchedRobot robot{memoryOf(*broker), [broker] { return broker->linkStatus(); }};
    watchValues(robot, {command.operands, command.period, command.count}, output, tell);
}

void askOnce(ZoCommand& command, kit::Output& output)
{
    ZoMemoryProxy memory = memoryOf(*connect(command.connection));
    if (command.action == ZoCommand::Action::List)
        listKeys(memory, command.operands.empty() ? "" : command.operands[0], output);
    else if (command.action == ZoCommand::Action::Get)
        printValues(memory, command.operands, output);
    else if (command.action == ZoCommand::Action::ReplayControl)
        controlReplay(memory, command.operands[0], output);
    else
        memory.setText(command.operands[0], command.operands[1]);
}

std::vector<ZoAddress> mastersOf(const kit::Connection& connection)
{
    // Sentinels watch a server without a cluster, and a tunnel leads to one node.
    if (!connection.options.sentinel.empty() || !connection.options.socketPath.empty())
        return {};
    return ZoCluster::masters(connection.address, connection.options);
}

RobotAges robotsAt(kit::Connection connection, const ZoAddress& node)
{
    connection.address = node;
    connection.options.furtherAddresses.clear();
    ZoMemoryProxy memory = memoryOf(*connect(connection));
    return robotsIn(memory, std::chrono::system_clock::now(), true);
}

/// Those of every node. One that cannot be asked hides its robots only, and is told at the end.
void listRobots(ZoCommand& command, kit::Output& output)
{
    const kit::WipedAtEnd wiped(command.connection.options.password);
    kit::tellWarning("zo", std::exchange(command.connection.warning, "")); // once
    const std::vector<ZoAddress> masters = mastersOf(command.connection);
    RobotAges robots;
    std::string problems;
    for (const ZoAddress& node : masters) {
        try {
            robots.merge(robotsAt(command.connection, node));
        } catch (const ZoError& error) {
            problems += (problems.empty() ? "" : "; ") + error.toString();
        }
    }
    if (masters.empty()) {
        ZoMemoryProxy memory = memoryOf(*connect(command.connection));
        robots = robotsIn(memory, std::chrono::system_clock::now(), false);
    }
    printRobots(robots, command.isJson ? RobotsForm::Json : RobotsForm::Plain, output);
    if (!problems.empty())
        throw ZoError("robots of these nodes may be missing: " + problems);
}

int check(ZoCommand& command, kit::Output& output)
{
    const kit::WipedAtEnd wiped(command.connection.options.password);
    kit::tellWarning("zo", command.connection.warning);
    return checkRobot(command.connection, output) ? kit::exitDone : kit::exitFailed;
}

int run(ZoCommand command)
{
    if (command.action == ZoCommand::Action::Record)
        becomeRecorder(std::move(command.operands));
    kit::Output output(kit::standardOutput);
    if (command.action == ZoCommand::Action::Check)
        return check(command, output);
    if (command.action == ZoCommand::Action::Help)
        output.add(zoHelp());
    else if (command.action == ZoCommand::Action::Version)
        output.add(kit::versionText("zo"));
    else if (command.action == ZoCommand::Action::Watch)
        watch(command, output);
    else if (command.action == ZoCommand::Action::Robots)
        listRobots(command, output);
    else
        askOnce(command, output);
    output.flush();
    return kit::exitDone;
}

} // namespace

int main(int argc, char** argv)
{
    kit::prepareProcess();
    const std::vector<std::string> words(argv + 1, argv + argc);
    if (kit::isAskedToComplete(words))
        return kit::answerShell(words, completeZo);
    return kit::runProgram("zo", [&] { return run(readZoCommand(words)); });
}
