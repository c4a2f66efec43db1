// SPDX-License-Identifier: MIT
#include <kit/output.h>
#include <kit/rest_of_time.h>
#include <kit/system_text.h>

#include <cerrno>
#include <poll.h>
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
    throw OutputError("cannot write the output: " + messageOf(error));
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
        const timespec time = restUntil(then);
        pollfd output{fDescriptor, 0, 0};
        const int events = ::ppoll(&output, 1, &time, nullptr);
        if (events > 0)
            throw OutputClosed();
        if (events == 0)
            return;
    }
}

} // namespace kit
