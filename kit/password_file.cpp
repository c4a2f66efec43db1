// SPDX-License-Identifier: MIT
#include <kit/descriptor.h>
#include <kit/password_file.h>
#include <kit/system_text.h>
#include <kit/usage_error.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <string_view>
#include <sys/stat.h>

namespace kit {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr std::size_t longestPassword = 4096;

/// Room for the longest line and its line break. Leaves nothing behind in memory.
class LineBuffer
{
public:
    LineBuffer() = default;
    ~LineBuffer() { ::explicit_bzero(fBytes.data(), fBytes.size()); }
    LineBuffer(const LineBuffer&) = delete;
    LineBuffer& operator=(const LineBuffer&) = delete;

    bool isFull() const { return fSize == fBytes.size(); }
    bool hasLine() const { return line().size() < fSize; }
    std::string_view line() const
    {
        const std::string_view all(fBytes.data(), fSize);
        return all.substr(0, all.find('\n'));
    }

    /// As ::read does.
    ssize_t readFrom(int file)
    {
        const ssize_t size = ::read(file, fBytes.data() + fSize, fBytes.size() - fSize);
        fSize += static_cast<std::size_t>(std::max<ssize_t>(size, 0));
        return size;
    }

private:
    std::array<char, longestPassword + 2> fBytes{};
    std::size_t fSize = 0;
};

[[noreturn]] void throwWrong(const std::string& path, const std::string& cause)
{
    throw UsageError("password file '" + path + "': " + cause);
}

[[noreturn]] void throwErrno(const std::string& path)
{
    throwWrong(path, messageOf(errno));
}

/// Reads one password file.
class Reading
{
public:
    Reading(const std::string& path, milliseconds patience)
        // Opening a pipe without a partner, or a terminal line, must not stop the program.
        : fPath(path),
          fFile(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC)),
          fPatience(patience),
          fDeadline(Clock::now() + patience)
    {
        if (!fFile.isOpen() || ::fstat(fFile.get(), &fStatus) != 0)
            throwErrno(path);
    }

    std::string password()
    {
        while (!fBuffer.hasLine() && !fBuffer.isFull() && !isAtEnd()) {
        }
        std::string_view line = fBuffer.line();
        if (!line.empty() && line.back() == '\r')
            line.remove_suffix(1);
        if (line.size() > longestPassword)
            throwWrong(fPath, "its first line is too long to be a password");
        if (line.empty())
            throwWrong(fPath, "its first line is empty");
        return std::string(line);
    }

    bool othersMayRead() const { return (fStatus.st_mode & (S_IRGRP | S_IROTH)) != 0; }

private:
    /// Reads on; whether there was nothing more to read.
    bool isAtEnd()
    {
        const ssize_t size = fBuffer.readFrom(fFile.get());
        if (size > 0)
            return false;
        if (size < 0 && errno != EAGAIN && errno != EINTR)
            throwErrno(fPath);
        // A pipe into which nobody has begun to write reads as one that has ended.
        if (size == 0 && !S_ISFIFO(fStatus.st_mode))
            return true;
        return !waitForMore();
    }

    /// False when the writer has gone.
    bool waitForMore() const
    {
        const auto rest = std::chrono::ceil<milliseconds>(fDeadline - Clock::now());
        pollfd file{fFile.get(), POLLIN, 0};
        const int wait = static_cast<int>(std::max(rest, milliseconds(0)).count());
        const int events = ::poll(&file, 1, wait);
        if (events == 0)
            throwWrong(fPath, "nobody wrote a line into it within " +
                                  std::to_string(fPatience.count()) + " ms");
        return events < 0 || (file.revents & POLLIN) != 0;
    }

    std::string fPath;
    Descriptor fFile;
    milliseconds fPatience;
    Clock::time_point fDeadline;
    struct stat fStatus = {};
    LineBuffer fBuffer;
};

} // namespace

Password readPassword(const std::string& path, milliseconds patience)
{
    Reading reading(path, patience);
    Password password{reading.password(), ""};
    if (reading.othersMayRead())
        password.warning = "others on this machine may read the password file '" + path +
                           "'; keep it to yourself: chmod 600 '" + path + "'";
    return password;
}

void wipe(std::string& secret)
{
    secret.resize(secret.capacity()); // what was moved from keeps its bytes behind its end
    ::explicit_bzero(secret.data(), secret.size());
    secret.clear();
}

Secret& Secret::operator=(std::string_view text)
{
    if (text.data() != data()) {
        wipe(*this);
        assign(text);
    }
    return *this;
}

} // namespace kit
