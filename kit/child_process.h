// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

namespace kit {

/// A program that this process started. It ends with this object, and what it has started itself
/// with it, but for what has left its process group. It also ends when the process ends in any
/// other way.
///
/// The kernel ties its life to the thread that starts it: do so in the main thread, before any
/// other thread, or in one that lives as long.
class ChildProcess
{
public:
    static constexpr int fProgramMissing = 127; ///< the exit status when there is no such program

    /// What the program has for its standard streams.
    struct Streams
    {
        int input; ///< -1: nothing to read
        int output;
        int errors;
    };

    /// Starts the program words[0], which is looked for in PATH, with the other words. It writes
    /// both its outputs to the descriptor `output`, reads nothing, and inherits nothing else that
    /// is open here. Signals reach it whatever is blocked or ignored here, but for a Ctrl-C, which
    /// is for this process alone. Throws std::system_error.
    ChildProcess(std::vector<std::string> words, int output);
    /// The same, with these streams.
    ChildProcess(std::vector<std::string> words, const Streams& streams);
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    /// Nobody else gets that number before this object ends, or isRunning or wait tell of its end.
    pid_t pid() const { return fPid; }
    bool isRunning();
    void signal(int number) const;
    /// Waits for its end; returns the exit status, or -1 when a signal ended it or, where SIGCHLD
    /// is ignored, nobody knows.
    int wait();
    /// The same, when it has ended already.
    int exitStatus() const { return fExitStatus; }

private:
    void lookForEnd(int flags);

    pid_t fPid;
    bool fHasEnded = false;
    int fExitStatus = -1;
};

} // namespace kit
