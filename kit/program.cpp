// SPDX-License-Identifier: MIT
#include <kit/escape.h>
#include <kit/output.h>
#include <kit/program.h>
#include <kit/usage_error.h>

#include <csignal>
#include <exception>
#include <fcntl.h>
#include <iostream>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/time.h>
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

void endWithParent()
{
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    pollfd output{standardOutput, 0, 0}; // closed by a parent that ended before the line above
    ::poll(&output, 1, 0);
    if ((output.revents & POLLERR) != 0)
        ::_exit(exitFailed);
}

int runProgram(const std::string& program, const std::function<int()>& run, const Tell& tellWhy)
{
    const auto say = [&](const std::string& message) {
        tellWhy ? tellWhy(message) : tell(program, message);
    };
    try {
        return run();
    } catch (const UsageError& error) {
        say(std::string(error.what()) + " (see " + program + " --help)");
        return exitWrongUse;
    } catch (const OutputClosed&) {
        return exitFailed;
    } catch (const std::exception& error) {
        say(error.what());
        return exitFailed;
    }
}

std::string lineOf(const std::string& program, const std::string& message)
{
    return program + ": " + escaped(message) + "\n";
}

void tell(const std::string& program, const std::string& message)
{
    std::cerr << lineOf(program, message) << std::flush;
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

void endWellAfter(int time)
{
    std::signal(SIGALRM, endWell);
    const itimerval once{{}, {time / 1000000, time % 1000000}};
    ::setitimer(ITIMER_REAL, &once, nullptr);
}

void endWellOnStopSignals()
{
    std::signal(SIGINT, endWell);
    std::signal(SIGTERM, endWell);
}

} // namespace kit
