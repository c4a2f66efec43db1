// SPDX-License-Identifier: MIT
#include "process.h"

#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace {

extern "C" void endWell(int)
{
    ::_exit(0);
}

} // namespace

void prepareProcess()
{
    std::signal(SIGPIPE, SIG_IGN);
    int descriptor = 0;
    // Read-only, so that output into a stream that was closed still is an error.
    do
        descriptor = ::open("/dev/null", O_RDONLY);
    while (descriptor >= 0 && descriptor <= STDERR_FILENO);
    if (descriptor >= 0)
        ::close(descriptor);
}

void endWellOnStopSignals()
{
    std::signal(SIGINT, endWell);
    std::signal(SIGTERM, endWell);
}
