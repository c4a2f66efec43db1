// SPDX-License-Identifier: MIT
#include <kit/escape.h>
#include <kit/output.h>
#include <kit/program.h>
#include <kit/usage_error.h>

#include <csignal>
#include <exception>
#include <fcntl.h>
#include <iostream>
#include <unistd.h>

namespace kit {

namespace {

extern "C" void endWell(int)
{
    ::_exit(exitDone);
}

} // namespace

void prepareProcess()
{
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGCHLD, SIG_DFL);
    int descriptor = 0;
    // Read-only, so that output into a stream that was closed still is an error.
    do
        descriptor = ::open("/dev/null", O_RDONLY);
    while (descriptor >= 0 && descriptor <= STDERR_FILENO);
    if (descriptor >= 0)
        ::close(descriptor);
}

int runProgram(const std::string& program, const std::function<int()>& run)
{
    try {
        return run();
    } catch (const UsageError& error) {
        tell(program, std::string(error.what()) + " (see " + program + " --help)");
        return exitWrongUse;
    } catch (const OutputClosed&) {
        return exitFailed;
    } catch (const std::exception& error) {
        tell(program, error.what());
        return exitFailed;
    }
}

void tell(const std::string& program, const std::string& message)
{
    std::cerr << program + ": " + escaped(message) + "\n" << std::flush;
}

void tellWarning(const std::string& program, const std::string& warning)
{
    if (!warning.empty())
        tell(program, warning);
}

void print(const std::string& text)
{
    Output output(standardOutput);
    output.add(text);
    output.flush();
}

void endWellOnStopSignals()
{
    std::signal(SIGINT, endWell);
    std::signal(SIGTERM, endWell);
}

} // namespace kit
