// SPDX-License-Identifier: MIT
#pragma once

#include "support/patience.h"

#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

/// Runs an action in a process of its own: one that could end the process, or never return. Beware
/// of locks that other threads hold at the start.
class ForkedAction
{
public:
    /// The action's result is the exit status. It is ended after `seconds`.
    template <class Action>
    explicit ForkedAction(Action action, unsigned seconds = patience / 1000) : fPid(fork())
    {
        if (fPid != 0)
            return;
        ::alarm(seconds);
        ::_exit(action());
    }
    ~ForkedAction()
    {
        if (fPid > 0)
            ::kill(fPid, SIGKILL);
        waitForExit();
    }
    ForkedAction(const ForkedAction&) = delete;
    ForkedAction& operator=(const ForkedAction&) = delete;

    /// The exit status; -1 when a signal ended it.
    int waitForExit()
    {
        int status = 0;
        if (fPid > 0 && ::waitpid(fPid, &status, 0) == fPid)
            fStatus = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        fPid = -1;
        return fStatus;
    }

private:
    pid_t fPid;
    int fStatus = -1;
};
