// SPDX-License-Identifier: MIT
#include "connection/ssh_relay.h"

#include <kit/child_process.h>

#include <zo/error.h>

#include <QCoreApplication>
#include <QFile>

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <optional>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <system_error>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

/// The context that translators find the texts in.
struct SshRelayText
{
    Q_DECLARE_TR_FUNCTIONS(SshRelay)
};

using Clock = std::chrono::steady_clock;

constexpr std::size_t mostWords = 2000;
constexpr std::size_t longestJumpHost = 255;

/// `descriptor`, which the system has just made.
kit::Descriptor made(int descriptor, const char* what)
{
    if (descriptor < 0)
        throw std::system_error(errno, std::generic_category(), what);
    return kit::Descriptor(descriptor);
}

bool isFitForJumpHost(char c)
{
    const bool isLetter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
    return isLetter || (c >= '0' && c <= '9') ||
           std::string("._-@:[]%/+").find(c) != std::string::npos;
}

/// Whether a name in `text` begins as an option does: ssh's configuration may hand it to programs.
bool hasOption(const std::string& text)
{
    const std::string before = "@/[:";
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '-' && (i == 0 || before.find(text[i - 1]) != std::string::npos))
            return true;
    }
    return false;
}

/// Leaves the end of `text`, in whole lines where it has such.
void cutToEnd(std::string& text)
{
    if (text.size() <= mostWords)
        return;
    const std::size_t start = text.size() - mostWords;
    const std::size_t line = text.find('\n', start) + 1;
    text.erase(0, line > 0 && line < text.size() ? line : start);
}

} // namespace

void checkJumpHost(const std::string& text)
{
    const bool isFit = !text.empty() && text.size() <= longestJumpHost && !hasOption(text) &&
                       std::all_of(text.begin(), text.end(), isFitForJumpHost);
    if (!isFit)
        throw ZoError(SshRelayText::tr("'%1' is no host for ssh: write USER@HOST, as in "
                                       "pilot@gate-3, or a name that ssh's configuration knows")
                          .arg(QString::fromStdString(text))
                          .toStdString());
}

/// One connection, and the ssh that carries it.
struct SshRelay::Channel
{
    kit::Descriptor socket; ///< kept to see its other end go
    kit::Descriptor errors; ///< of ssh
    kit::ChildProcess child;
    kit::Descriptor exit;      ///< can be read when the child has ended
    const Time questionsUntil; ///< of the relay, when it was started
    bool hasSpoken = false;
    bool isOver = false;

    Channel(kit::Descriptor connection, std::array<kit::Descriptor, 2> pipe,
            const std::vector<std::string>& words, Time mayAskUntil)
        : socket(std::move(connection)),
          errors(std::move(pipe[0])),
          child(words, {socket.get(), socket.get(), pipe[1].get()}),
          exit(made(static_cast<int>(::syscall(SYS_pidfd_open, child.pid(), 0)),
                    "cannot watch ssh")),
          questionsUntil(mayAskUntil)
    {
    }
};

SshRelay::SshRelay(const std::string& jumpHost, const ZoAddress& robot)
    : fJumpHost((checkJumpHost(jumpHost), jumpHost)),
      fRobot(robot),
      fOwnProgram(QFile::encodeName(QCoreApplication::applicationFilePath()).toStdString()),
      fFolder("tarvek-ssh-"),
      fPath(fFolder.path() + "/robot"),
      fListener(made(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0),
                     "cannot make a socket")),
      fEnd(made(::eventfd(0, EFD_CLOEXEC), "cannot make an event")),
      fQuestionsUntil(Time::min())
{
    listen();
    fThread = std::thread([this] { run(); });
}

SshRelay::~SshRelay()
{
    const std::uint64_t one = 1;
    while (::write(fEnd.get(), &one, sizeof one) < 0 && errno == EINTR) {
    }
    fThread.join();
}

void SshRelay::listen()
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (fPath.size() >= sizeof address.sun_path)
        throw ZoError(SshRelayText::tr("the folder for temporary files has too long a name: %1")
                          .arg(QFile::decodeName(fPath.c_str()))
                          .toStdString());
    fPath.copy(address.sun_path, fPath.size());
    if (::bind(fListener.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
        ::listen(fListener.get(), SOMAXCONN) != 0)
        throw std::system_error(errno, std::generic_category(), "cannot listen at " + fPath);
}

void SshRelay::allowQuestions()
{
    fQuestionsUntil = Clock::now() + fTimeForQuestions;
}

std::string SshRelay::lastWords() const
{
    const std::lock_guard<std::mutex> lock(fMutex);
    return fWords;
}

/// The body of the thread, on which the life of the children depends.
void SshRelay::run()
{
    while (wait()) {
        for (Channel& channel : fChannels)
            attend(channel);
        fChannels.remove_if([](const Channel& channel) { return channel.isOver; });
        begin();
    }
    fChannels.clear();
}

/// Until something happens. Whether the thread is to go on.
bool SshRelay::wait()
{
    std::vector<pollfd> files = {{fEnd.get(), POLLIN, 0}, {fListener.get(), POLLIN, 0}};
    for (const Channel& channel : fChannels) {
        files.push_back({channel.socket.get(), POLLRDHUP, 0});
        files.push_back({channel.errors.get(), POLLIN, 0});
        files.push_back({channel.exit.get(), POLLIN, 0});
    }
    ::poll(files.data(), files.size(), -1);
    return files[0].revents == 0;
}

void SshRelay::begin()
{
    kit::Descriptor connection(::accept4(fListener.get(), nullptr, nullptr, SOCK_CLOEXEC));
    if (!connection.isOpen())
        return;
    int ends[2] = {-1, -1};
    if (::pipe2(ends, O_CLOEXEC) != 0)
        return; // the connection closes, and the link says so
    ::fcntl(ends[0], F_SETFL, O_NONBLOCK);
    try {
        std::array<kit::Descriptor, 2> pipe{kit::Descriptor(ends[0]), kit::Descriptor(ends[1])};
        const Time until = fQuestionsUntil;
        fChannels.emplace_back(std::move(connection), std::move(pipe), words(Clock::now() < until),
                               until);
    } catch (const std::exception& error) {
        const std::lock_guard<std::mutex> lock(fMutex);
        fWords = error.what();
    }
}

/// What has happened to it.
void SshRelay::attend(Channel& channel)
{
    pollfd socket{channel.socket.get(), POLLRDHUP, 0};
    ::poll(&socket, 1, 0);
    const bool hasEnded = !channel.child.isRunning(); // before its last words are read
    hear(channel);
    channel.isOver = hasEnded || socket.revents != 0;
    // Whatever came of its questions: only a user who wants to connect again is asked once more.
    Time until = channel.questionsUntil;
    if (channel.isOver)
        fQuestionsUntil.compare_exchange_strong(until, Time::min());
}

void SshRelay::hear(Channel& channel)
{
    std::array<char, 512> bytes;
    while (channel.errors.isOpen()) {
        const ssize_t size = ::read(channel.errors.get(), bytes.data(), bytes.size());
        if (size < 0)
            return;
        if (size == 0)
            channel.errors = kit::Descriptor();
        const std::lock_guard<std::mutex> lock(fMutex);
        if (size > 0 && !std::exchange(channel.hasSpoken, true))
            fWords.clear(); // those of the one before
        fWords.append(bytes.data(), static_cast<std::size_t>(size));
        cutToEnd(fWords);
    }
}

std::vector<std::string> SshRelay::words(bool mayAsk) const
{
    std::vector<std::string> all = {"/usr/bin/env"};
    if (mayAsk && qEnvironmentVariableIsEmpty("SSH_ASKPASS")) {
        all.push_back("SSH_ASKPASS=" + fOwnProgram);
        all.push_back(std::string(answersSshVariable) + "=1");
    }
    // Not on a terminal, of which the children are not in the foreground.
    all.insert(all.end(), {"SSH_ASKPASS_REQUIRE=force", "ssh", "-o", "ConnectTimeout=20"});
    if (!mayAsk)
        all.insert(all.end(), {"-o", "BatchMode=yes"});
    all.insert(all.end(), {"-W", fRobot.toText(), "--", fJumpHost});
    return all;
}
