// SPDX-License-Identifier: MIT
#include <kit/child_process.h>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace kit {

namespace {

/// What runs between fork and exec: nothing here may allocate.
[[noreturn]] void become(char* const* words, pid_t parent, const ChildProcess::Streams& streams)
{
    for (int number = 1; number < NSIG; ++number)
        ::signal(number, SIG_DFL);
    sigset_t none;
    ::sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
    ::setpgid(0, 0); // a Ctrl-C is for the parent, which then ends the child
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (::getppid() != parent)
        ::_exit(1); // the parent ended before the line above
    const int input = streams.input < 0 ? ::open("/dev/null", O_RDONLY | O_CLOEXEC) : streams.input;
    // Past the three first: one of them may be among those that another is to become.
    const int kept[] = {::fcntl(input, F_DUPFD_CLOEXEC, STDERR_FILENO + 1),
                        ::fcntl(streams.output, F_DUPFD_CLOEXEC, STDERR_FILENO + 1),
                        ::fcntl(streams.errors, F_DUPFD_CLOEXEC, STDERR_FILENO + 1)};
    for (int number = STDIN_FILENO; number <= STDERR_FILENO; ++number)
        ::dup2(kept[number], number);
    ::close_range(STDERR_FILENO + 1, ~0U, 0);
    ::execvp(words[0], words);
    ::_exit(ChildProcess::fProgramMissing);
}

pid_t spawn(std::vector<std::string>& words, const ChildProcess::Streams& streams)
{
    std::vector<char*> pointers;
    pointers.reserve(words.size() + 1);
    for (std::string& word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    const pid_t parent = ::getpid();
    // A signal must not run this process's handler in the child.
    sigset_t all;
    sigset_t before;
    ::sigfillset(&all);
    ::pthread_sigmask(SIG_SETMASK, &all, &before);
    const pid_t pid = ::fork();
    if (pid == 0)
        become(pointers.data(), parent, streams);
    const int error = errno;
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    if (pid < 0)
        throw std::system_error(error, std::generic_category(), "cannot start " + words[0]);
    ::setpgid(pid, pid); // whoever of the two comes first: the group may be ended at once
    return pid;
}

} // namespace

ChildProcess::ChildProcess(std::vector<std::string> words, int output)
    : ChildProcess(std::move(words), {-1, output, output})
{
}

ChildProcess::ChildProcess(std::vector<std::string> words, const Streams& streams)
    : fPid(spawn(words, streams))
{
}

ChildProcess::~ChildProcess()
{
    if (!fHasEnded)
        ::kill(-fPid, SIGKILL);
    wait();
}

bool ChildProcess::isRunning()
{
    lookForEnd(WNOHANG);
    return !fHasEnded;
}

void ChildProcess::signal(int number) const
{
    if (!fHasEnded)
        ::kill(fPid, number);
}

int ChildProcess::wait()
{
    lookForEnd(0);
    return fExitStatus;
}

/// Where SIGCHLD is ignored the kernel forgets how a child ended: there is none to wait for then.
void ChildProcess::lookForEnd(int flags)
{
    if (fHasEnded)
        return;
    int status = 0;
    pid_t ended = 0;
    do
        ended = ::waitpid(fPid, &status, flags);
    while (ended < 0 && errno == EINTR);
    fHasEnded = ended != 0;
    if (ended == fPid && WIFEXITED(status))
        fExitStatus = WEXITSTATUS(status);
}

} // namespace kit
