// SPDX-License-Identifier: MIT
#include "broken_pipe_shield.h"

#include <cerrno>
#include <ctime>

namespace {

sigset_t pipeSignal()
{
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGPIPE);
    return set;
}

} // namespace

BrokenPipeShield::BrokenPipeShield()
{
    sigset_t pending;
    sigemptyset(&pending);
    sigpending(&pending);
    fWasPending = sigismember(&pending, SIGPIPE) == 1;
    const sigset_t set = pipeSignal();
    pthread_sigmask(SIG_BLOCK, &set, &fBefore);
}

BrokenPipeShield::~BrokenPipeShield()
{
    const sigset_t set = pipeSignal();
    const timespec now = {0, 0};
    if (!fWasPending) {
        while (sigtimedwait(&set, nullptr, &now) < 0 && errno == EINTR) {
        }
    }
    pthread_sigmask(SIG_SETMASK, &fBefore, nullptr);
}
