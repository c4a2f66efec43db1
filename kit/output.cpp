// SPDX-License-Identifier: MIT
#include <kit/output.h>

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <poll.h>
#include <system_error>
#include <unistd.h>

namespace kit {

namespace {

constexpr std::size_t gatheredBytes = 65536;

/// Waits for room in an output that somebody else made non-blocking.
void waitForRoom(int descriptor)
{
    pollfd output{descriptor, POLLOUT, 0};
    ::poll(&output, 1, -1);
}

[[noreturn]] void throwWriteError(int error)
{
    if (error == EPIPE)
        throw OutputClosed();
    throw OutputError("cannot write the output: " + std::generic_category().message(error));
}

timespec asTimespec(std::chrono::nanoseconds time)
{
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(time);
    return {seconds.count(), (time - seconds).count()};
}

} // namespace

OutputClosed::OutputClosed() : OutputError("the reader of the output is gone") {}

Output::Output(int descriptor) : fDescriptor(descriptor) {}

void Output::add(const std::string& text)
{
    fText += text;
    if (fText.size() >= gatheredBytes)
        flush();
}

void Output::flush()
{
    std::size_t written = 0;
    while (written < fText.size()) {
        const ssize_t count = ::write(fDescriptor, fText.data() + written, fText.size() - written);
        if (count >= 0)
            written += static_cast<std::size_t>(count);
        else if (errno == EAGAIN)
            waitForRoom(fDescriptor);
        else if (errno != EINTR)
            throwWriteError(errno);
    }
    fText.clear();
}

void Output::waitUntil(std::chrono::steady_clock::time_point then) const
{
    while (true) {
        const auto rest = then - std::chrono::steady_clock::now();
        const timespec time = asTimespec(std::max<std::chrono::nanoseconds>(rest, {}));
        pollfd output{fDescriptor, 0, 0};
        const int events = ::ppoll(&output, 1, &time, nullptr);
        if (events > 0)
            throw OutputClosed();
        if (events == 0)
            return;
    }
}

} // namespace kit
