// SPDX-License-Identifier: MIT
#include "private_server.h"

#include "random_password.h"

#include <kit/hex.h>
#include <kit/temporary_folder.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <fcntl.h>
#include <fstream>
#include <poll.h>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/un.h>

namespace {

constexpr auto startDeadline = std::chrono::seconds(10);

/// `text` in the server's way of writing any bytes.
std::string escapedBytes(std::string_view text)
{
    std::string result;
    for (const char byte : text) {
        result += "\\x";
        kit::appendHex(byte, result);
    }
    return result;
}

/// The pattern of `key` in an access list. What would have a meaning there stands for any one
/// character: nobody else has keys on this server.
std::string patternOf(std::string key)
{
    const auto hasMeaning = [](char c) {
        return std::string_view("*?[]\\").find(c) != std::string_view::npos;
    };
    std::replace_if(key.begin(), key.end(), hasMeaning, '?');
    return key;
}

/// Who may do what, in the language of the server's configuration file.
std::string accessList(const std::string& ownersPassword, const std::string& readersPassword,
                       const std::string& readersKey)
{
    // Whatever is in the password: nothing of it has a meaning there.
    const std::string login =
        readersPassword.empty() ? "nopass" : "\">" + escapedBytes(readersPassword) + "\"";
    const std::string rights =
        readersKey.empty()
            ? " ~* -@all"
            : " %R~* \"" + escapedBytes("%W~" + patternOf(readersKey)) + "\" -@all +set +mset";
    return std::string("user ") + PrivateServer::fOwner + " on >" + ownersPassword +
           " ~* &* +@all\n" + "user default on " + login + rights +
           " +@read +@connection -@dangerous\n";
}

/// A server that refuses its configuration quotes it: the lines of `text` that tell of no user, and
/// so of no password.
std::string withoutUsers(const std::string& text)
{
    std::istringstream lines(text);
    std::string rest;
    for (std::string line; std::getline(lines, line);)
        if (line.find("user") == std::string::npos)
            rest += line + "\n";
    return rest;
}

void writeFile(const std::string& path, const std::string& text)
{
    std::ofstream file(path);
    file << text << std::flush;
    if (!file)
        throw std::runtime_error("cannot write " + path);
}

[[noreturn]] void throwPortInUse(int port)
{
    const std::string address = "127.0.0.1:" + std::to_string(port);
    throw std::runtime_error("cannot listen on " + address +
                             ": it is in use, or not yours to use. Choose another --port, or "
                             "publish to the server there with --connect " +
                             address);
}

/// Whether the process `pid` listens at `name` in `folder`.
bool isListening(const kit::Descriptor& folder, const std::string& name, pid_t pid)
{
    // However long the folder's path is, this is short enough for an address.
    const std::string path = "/proc/self/fd/" + std::to_string(folder.get()) + "/" + name;
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    const kit::Descriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    ucred peer{};
    socklen_t size = sizeof peer;
    return ::connect(socket.get(), reinterpret_cast<sockaddr*>(&address), sizeof address) == 0 &&
           ::getsockopt(socket.get(), SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 &&
           peer.pid == pid;
}

} // namespace

PrivateServer::PrivateServer(int port, const std::string& readersPassword,
                             const std::function<int()>& findPort, const std::string& readersKey)
    : fPort(port), fPassword(randomPassword())
{
    if (port != 0 && !kit::isLoopbackPortFree(port))
        throwPortInUse(port);
    for (int attempt = 0; attempt < fFreePortAttempts; ++attempt) {
        fPort = port != 0 ? port : findPort();
        if (start(readersPassword, readersKey))
            return;
        if (log().find("in use") == std::string::npos)
            throw std::runtime_error("redis-server does not start: " + log());
    }
    throwPortInUse(fPort);
}

/// The server runs in an empty folder, so that it finds no stored data there. That is removed as
/// soon as the server listens: then it cannot write any either.
bool PrivateServer::start(const std::string& readersPassword, const std::string& readersKey)
{
    const kit::TemporaryFolder folder("tarvek-robot");
    const std::string configuration = folder.path() + "/redis.conf";
    writeFile(configuration, accessList(fPassword, readersPassword, readersKey));
    fLogFile = kit::Descriptor(::memfd_create("redis-server.log", MFD_CLOEXEC));
    const std::vector<std::string> words = {
        "redis-server", configuration, "--port",      std::to_string(fPort),
        "--bind",       "127.0.0.1",   "--save",      "",
        "--appendonly", "no",          "--daemonize", "no",
        "--loglevel",   "warning",     "--dir",       folder.path(),
        "--unixsocket", "socket"};
    fProcess = std::make_unique<kit::ChildProcess>(words, fLogFile.get());
    return waitUntilListening(folder.path());
}

/// Whoever answers at the port may be somebody else, who took it first. So the server is asked at
/// a place that only this user can reach, where it listens after it has got the port.
bool PrivateServer::waitUntilListening(const std::string& folderPath)
{
    const auto deadline = std::chrono::steady_clock::now() + startDeadline;
    const kit::Descriptor folder(::open(folderPath.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    while (isRunning()) {
        if (isListening(folder, "socket", fProcess->pid()))
            return true;
        if (std::chrono::steady_clock::now() > deadline)
            throw std::runtime_error("redis-server does not listen on port " +
                                     std::to_string(fPort) + ": " + log());
        ::poll(nullptr, 0, 5);
    }
    return false;
}

bool PrivateServer::isRunning()
{
    if (fProcess->isRunning())
        return true;
    if (fProcess->exitStatus() == kit::ChildProcess::fProgramMissing)
        throw std::runtime_error("the program redis-server is missing. Install it: "
                                 "apt-get install redis-server (as root), or publish to a "
                                 "server elsewhere with --connect HOST:PORT");
    return false;
}

std::string PrivateServer::log() const
{
    std::array<char, 2000> text{};
    const ssize_t size = ::pread(fLogFile.get(), text.data(), text.size(), 0);
    const std::string told =
        withoutUsers({text.data(), static_cast<std::size_t>(std::max<ssize_t>(size, 0))});
    return told.empty() ? "no reason given" : told;
}
