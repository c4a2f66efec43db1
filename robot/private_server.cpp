// SPDX-License-Identifier: MIT
#include "private_server.h"

#include <arpa/inet.h>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <netinet/in.h>
#include <poll.h>
#include <stdexcept>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace {

constexpr int programMissing = 127;
constexpr auto startDeadline = std::chrono::seconds(10);
constexpr std::size_t longestAnswer = 65536;

/// A loopback socket, closed with the object.
class LoopbackSocket
{
public:
    LoopbackSocket() : fFd(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        const int on = 1;
        ::setsockopt(fFd, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    }
    ~LoopbackSocket() { ::close(fFd); }
    LoopbackSocket(const LoopbackSocket&) = delete;
    LoopbackSocket& operator=(const LoopbackSocket&) = delete;

    bool bindTo(int port) const
    {
        const sockaddr_in address = loopback(port);
        return ::bind(fFd, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    }

    bool connectTo(int port) const
    {
        const sockaddr_in address = loopback(port);
        return ::connect(fFd, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    }

    /// What it answers to `command`, up to and with `end`; less when it does not.
    std::string ask(const std::string& command, const std::string& end) const
    {
        const timeval patience{1, 0};
        ::setsockopt(fFd, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
        ::send(fFd, command.data(), command.size(), MSG_NOSIGNAL);
        std::string answer;
        std::array<char, 4096> block{};
        while (answer.find(end) == std::string::npos && answer.size() < longestAnswer) {
            const ssize_t size = ::recv(fFd, block.data(), block.size(), 0);
            if (size <= 0)
                break;
            answer.append(block.data(), static_cast<std::size_t>(size));
        }
        return answer;
    }

    int port() const
    {
        sockaddr_in address{};
        socklen_t size = sizeof address;
        ::getsockname(fFd, reinterpret_cast<sockaddr*>(&address), &size);
        return ntohs(address.sin_port);
    }

private:
    static sockaddr_in loopback(int port)
    {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        address.sin_port = htons(static_cast<std::uint16_t>(port));
        return address;
    }

    int fFd;
};

[[noreturn]] void throwPortInUse(int port)
{
    const std::string address = "127.0.0.1:" + std::to_string(port);
    throw std::runtime_error("cannot listen on " + address +
                             ": it is in use, or not yours to use. Choose another --port, or "
                             "publish to the server there with --connect " +
                             address);
}

/// An empty folder for the server to run in, so that it finds no stored data there. Removed as
/// soon as the server has entered it: then it cannot write any either.
class EmptyFolder
{
public:
    EmptyFolder() : fPath((std::filesystem::temp_directory_path() / "robot-XXXXXX").string())
    {
        if (!::mkdtemp(fPath.data()))
            throw std::system_error(errno, std::generic_category(), "cannot make " + fPath);
    }
    ~EmptyFolder() { ::rmdir(fPath.c_str()); }
    EmptyFolder(const EmptyFolder&) = delete;
    EmptyFolder& operator=(const EmptyFolder&) = delete;

    const std::string& path() const { return fPath; }

private:
    std::string fPath;
};

/// What runs between fork and exec: nothing here may allocate.
[[noreturn]] void becomeServer(char* const* words, pid_t parent, int log)
{
    sigset_t none;
    ::sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
    ::setpgid(0, 0); // a Ctrl-C is for the robot, which then ends the server
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (::getppid() != parent)
        ::_exit(1); // the robot ended before the line above
    ::dup2(::open("/dev/null", O_RDONLY | O_CLOEXEC), STDIN_FILENO);
    ::dup2(log, STDOUT_FILENO);
    ::dup2(log, STDERR_FILENO);
    ::execvp(words[0], words);
    ::_exit(programMissing);
}

pid_t spawn(std::vector<std::string> words, int log)
{
    std::vector<char*> pointers;
    pointers.reserve(words.size() + 1);
    for (std::string& word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    const pid_t parent = ::getpid();
    const pid_t pid = ::fork();
    if (pid == 0)
        becomeServer(pointers.data(), parent, log);
    if (pid < 0)
        throw std::system_error(errno, std::generic_category(), "cannot start redis-server");
    return pid;
}

} // namespace

int PrivateServer::freePort()
{
    const LoopbackSocket probe;
    if (!probe.bindTo(0))
        throw std::system_error(errno, std::generic_category(), "no free port on 127.0.0.1");
    return probe.port();
}

PrivateServer::PrivateServer(int port, const std::function<int()>& findPort) : fPort(port)
{
    if (port != 0 && !LoopbackSocket().bindTo(port))
        throwPortInUse(port);
    for (int attempt = 0; attempt < fFreePortAttempts; ++attempt) {
        fPort = port != 0 ? port : findPort();
        if (start())
            return;
        if (log().find("in use") == std::string::npos)
            throw std::runtime_error("redis-server does not start: " + log());
    }
    throwPortInUse(fPort);
}

PrivateServer::~PrivateServer()
{
    if (fPid > 0) {
        ::kill(fPid, SIGKILL); // nothing to save
        ::waitpid(fPid, nullptr, 0);
    }
    ::close(fLogFile);
}

bool PrivateServer::start()
{
    const EmptyFolder folder;
    ::close(fLogFile);
    fLogFile = ::memfd_create("redis-server.log", MFD_CLOEXEC);
    fPid = spawn({"redis-server", "--port", std::to_string(fPort), "--bind", "127.0.0.1", "--save",
                  "", "--appendonly", "no", "--daemonize", "no", "--loglevel", "warning", "--dir",
                  folder.path()},
                 fLogFile);
    return waitUntilListening();
}

bool PrivateServer::waitUntilListening()
{
    const auto deadline = std::chrono::steady_clock::now() + startDeadline;
    while (isRunning()) {
        if (isListening())
            return true;
        if (std::chrono::steady_clock::now() > deadline)
            throw std::runtime_error("redis-server does not listen on port " +
                                     std::to_string(fPort) + ": " + log());
        ::poll(nullptr, 0, 5);
    }
    return false;
}

/// Somebody else may listen there, who took the port first: then ours is about to end.
bool PrivateServer::isListening() const
{
    const std::string process = "process_id:" + std::to_string(fPid) + "\r\n";
    const LoopbackSocket socket;
    return socket.connectTo(fPort) &&
           socket.ask("INFO server\r\n", process).find(process) != std::string::npos;
}

bool PrivateServer::isRunning()
{
    int status = 0;
    if (fPid <= 0 || ::waitpid(fPid, &status, WNOHANG) == 0)
        return fPid > 0;
    fPid = -1;
    if (WIFEXITED(status) && WEXITSTATUS(status) == programMissing)
        throw std::runtime_error("the program redis-server is missing. Install it: "
                                 "apt-get install redis-server (as root), or publish to a "
                                 "server elsewhere with --connect HOST:PORT");
    return false;
}

std::string PrivateServer::log() const
{
    std::array<char, 2000> text{};
    const ssize_t size = ::pread(fLogFile, text.data(), text.size(), 0);
    return size > 0 ? std::string(text.data(), static_cast<std::size_t>(size)) : "no reason given";
}
