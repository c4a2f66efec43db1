// SPDX-License-Identifier: MIT
#include "ending_signals.h"

#include <QSocketNotifier>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <system_error>
#include <unistd.h>

namespace {

volatile std::sig_atomic_t pipeForSignals = -1;

/// Of all that a program may do, this little is allowed here.
extern "C" void tellOfSignal(int)
{
    const int before = errno;
    const char any = 0;
    // A full pipe has told it already.
    [[maybe_unused]] const ssize_t written = ::write(pipeForSignals, &any, 1);
    errno = before;
}

/// As nohup has it, and a shell for what runs in its background.
bool isIgnored(int number)
{
    struct sigaction action
    {
    };
    return ::sigaction(number, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

} // namespace

constexpr std::array<int, 3> EndingSignals::numbers()
{
    return {SIGTERM, SIGINT, SIGHUP};
}

EndingSignals::EndingSignals(QObject* parent) : QObject(parent)
{
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0)
        throw std::system_error(errno, std::generic_category(), "cannot wait for signals");
    fReadEnd = kit::Descriptor(ends[0]);
    fWriteEnd = kit::Descriptor(ends[1]);
    pipeForSignals = ends[1];
    auto* notifier = new QSocketNotifier(ends[0], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, &EndingSignals::xRead);
    struct sigaction action
    {
    };
    action.sa_handler = tellOfSignal;
    action.sa_flags = static_cast<int>(SA_RESTART | SA_RESETHAND);
    for (const int number : numbers())
        if (!isIgnored(number))
            ::sigaction(number, &action, nullptr);
}

EndingSignals::~EndingSignals()
{
    for (const int number : numbers())
        if (!isIgnored(number))
            ::signal(number, SIG_DFL);
    pipeForSignals = -1;
}

void EndingSignals::xRead()
{
    char any = 0;
    if (::read(fReadEnd.get(), &any, 1) == 1)
        emit received();
}
