// SPDX-License-Identifier: MIT
#include <kit/rest_of_time.h>
#include <kit/signals.h>

#include <cerrno>

namespace kit {

namespace {

/// As nohup has it, and a shell for what runs in its background. Blocked, it would be waited for.
bool isIgnored(int number)
{
    struct sigaction action
    {
    };
    return ::sigaction(number, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

} // namespace

Signals::Signals(std::initializer_list<int> numbers)
{
    ::sigemptyset(&fSet);
    for (const int signal : numbers) {
        if (!isIgnored(signal))
            ::sigaddset(&fSet, signal);
    }
    ::pthread_sigmask(SIG_BLOCK, &fSet, nullptr);
}

int Signals::waitUntil(std::chrono::steady_clock::time_point then) const
{
    while (true) {
        const timespec time = restUntil(then);
        const int signal = ::sigtimedwait(&fSet, nullptr, &time);
        if (signal > 0)
            return signal;
        if (errno != EINTR) // one that is none of ours, as when the process was stopped a while
            return 0;
    }
}

} // namespace kit
