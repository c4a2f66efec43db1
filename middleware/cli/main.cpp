// SPDX-License-Identifier: MIT
#include "command_line.h"
#include "commands.h"
#include "escape.h"
#include "output.h"
#include "process.h"
#include "usage_error.h"
#include "watch.h"

#include <zo/zo.h>

#include <exception>
#include <iostream>

namespace {

constexpr int exitDone = 0;
constexpr int exitFailed = 1;
constexpr int exitWrongUse = 2;

void tell(const std::string& message)
{
    std::cerr << "zo: " + escaped(message) + "\n" << std::flush;
}

ZoMemoryProxy connect(const CliCommandLine& line)
{
    const auto broker = ZoBroker::create("zo", line.address.host, line.address.port, line.options);
    return ZoMemoryProxy(broker->getProxy("ZoMemory", 0));
}

void watch(const CliCommandLine& line, Output& output)
{
    endWellOnStopSignals();
    ZoMemoryProxy memory = connect(line);
    watchValues(memory, {line.operands, line.period, line.count}, output, tell);
}

void run(const CliCommandLine& line, Output& output)
{
    using Command = CliCommandLine::Command;
    if (line.command == Command::Watch)
        return watch(line, output);
    ZoMemoryProxy memory = connect(line);
    if (line.command == Command::List)
        listKeys(memory, line.operands.empty() ? "" : line.operands[0], output);
    else if (line.command == Command::Get)
        printValues(memory, line.operands, output);
    else
        memory.setText(line.operands[0], line.operands[1]);
}

void runOrExplain(const CliCommandLine& line)
{
    Output output(standardOutput);
    if (line.command == CliCommandLine::Command::Help)
        output.add(helpText());
    else if (line.command == CliCommandLine::Command::Version)
        output.add("zo " ZO_VERSION "\n");
    else
        run(line, output);
    output.flush();
}

} // namespace

int main(int argc, char** argv)
{
    prepareProcess();
    try {
        runOrExplain(readCommandLine({argv + 1, argv + argc}));
        return exitDone;
    } catch (const UsageError& error) {
        tell(std::string(error.what()) + " (see zo --help)");
        return exitWrongUse;
    } catch (const OutputClosed&) {
        return exitFailed; // whoever read us has what they wanted
    } catch (const std::exception& error) {
        tell(error.what());
        return exitFailed;
    }
}
