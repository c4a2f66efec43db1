// SPDX-License-Identifier: MIT
#include "link/quiet_thread.h"

#include <zo/error.h>

#include <csignal>
#include <system_error>
#include <utility>

namespace zo {

namespace {

/// Blocks all signals of this thread, for a new one to inherit that.
class SignalPause
{
public:
    SignalPause()
    {
        sigset_t all;
        sigfillset(&all);
        ::pthread_sigmask(SIG_SETMASK, &all, &fBefore);
    }
    ~SignalPause() { ::pthread_sigmask(SIG_SETMASK, &fBefore, nullptr); }
    SignalPause(const SignalPause&) = delete;
    SignalPause& operator=(const SignalPause&) = delete;

private:
    sigset_t fBefore{};
};

} // namespace

std::thread startQuietThread(std::function<void()> work)
{
    const SignalPause pause;
    try {
        return std::thread(std::move(work));
    } catch (const std::system_error& error) {
        throw ZoError(std::string("cannot start a thread: ") + error.what());
    }
}

} // namespace zo
