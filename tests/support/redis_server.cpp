// SPDX-License-Identifier: MIT
#include "support/redis_server.h"

#include <wire/reply_reader.h>
#include <wire/request.h>

#include <arpa/inet.h>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <netinet/in.h>
#include <poll.h>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace zo;

namespace {

constexpr auto startDeadline = std::chrono::seconds(20);
constexpr char adminUser[] = "harness";
constexpr char adminPassword[] = "harness-only";

int freeLoopbackPort()
{
    const int fd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* generic = reinterpret_cast<sockaddr*>(&address);
    const bool bound =
        fd >= 0 && ::bind(fd, generic, size) == 0 && ::getsockname(fd, generic, &size) == 0;
    if (fd >= 0)
        ::close(fd);
    if (!bound)
        throw std::runtime_error("no free loopback port");
    return ntohs(address.sin_port);
}

/// Starts `words` with both outputs in `logFile`. The child dies with this thread.
pid_t spawn(const std::vector<std::string>& words, const std::string& logFile)
{
    std::vector<char*> arguments;
    arguments.reserve(words.size() + 1);
    for (const std::string& word : words)
        arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    const pid_t parent = ::getpid();
    const pid_t pid = ::fork();
    if (pid == 0) {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (::getppid() != parent)
            ::_exit(1);
        const int log = ::open(logFile.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
        ::dup2(log, STDOUT_FILENO);
        ::dup2(log, STDERR_FILENO);
        ::execvp(arguments[0], arguments.data());
        ::_exit(127);
    }
    if (pid < 0)
        throw std::runtime_error("cannot fork");
    return pid;
}

void run(const std::vector<std::string>& words, const std::string& logFile)
{
    int status = 0;
    ::waitpid(spawn(words, logFile), &status, 0);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
        throw std::runtime_error(words[0] + " failed: see " + logFile);
}

/// Keeps a reply as text: its own, and that of arrays is empty.
class TextSink : public ReplySink
{
public:
    std::string text;
    bool isError = false;

    bool take(const ReplyPlace& place, const ReplyPiece& piece) override
    {
        if (piece.kind == ReplyKind::TooLarge)
            return refuse("the reply is too large");
        if (place.depth > 0)
            return true;
        isError = piece.kind == ReplyKind::Error;
        text = piece.kind == ReplyKind::Integer ? std::to_string(piece.number)
                                                : std::string(piece.text);
        return true;
    }
    std::string nameOf(const ReplyPlace&) const override { return "the reply"; }
};

[[noreturn]] void failWithErrno(const std::string& what)
{
    throw std::runtime_error(what + ": " + std::strerror(errno));
}

/// A connection to a server's own socket.
class AdminConnection
{
public:
    explicit AdminConnection(const std::string& path)
        : fSocket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        path.copy(address.sun_path, sizeof address.sun_path - 1);
        if (::connect(fSocket, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0)
            return;
        const int problem = errno;
        ::close(fSocket);
        errno = problem;
        failWithErrno("cannot connect to " + path);
    }
    ~AdminConnection() { ::close(fSocket); }
    AdminConnection(const AdminConnection&) = delete;
    AdminConnection& operator=(const AdminConnection&) = delete;

    std::string run(const std::vector<std::string>& words)
    {
        send(encodeCommand({words.begin(), words.end()}));
        TextSink sink;
        fReader.expect(1, sink);
        while (!fReader.isComplete())
            receive();
        if (sink.isError)
            throw std::runtime_error(sink.text);
        return sink.text;
    }

private:
    void send(const std::string& bytes) const
    {
        for (std::size_t at = 0; at < bytes.size();) {
            const ssize_t sent =
                ::send(fSocket, bytes.data() + at, bytes.size() - at, MSG_NOSIGNAL);
            if (sent <= 0)
                failWithErrno("cannot send to the server");
            at += static_cast<std::size_t>(sent);
        }
    }

    void receive()
    {
        char block[65536];
        const ssize_t got = ::recv(fSocket, block, sizeof block, 0);
        if (got < 0)
            failWithErrno("cannot receive from the server");
        if (got == 0)
            throw std::runtime_error("the server closed the connection");
        fReader.read({block, static_cast<std::size_t>(got)});
        if (fReader.hasProblem())
            throw std::runtime_error(fReader.problem().text);
    }

    int fSocket;
    ReplyReader fReader;
};

} // namespace

RedisServer::RedisServer() : RedisServer(Options()) {}

RedisServer::RedisServer(const Options& options) : fOptions(options), fPort(freeLoopbackPort())
{
    std::string pattern = (std::filesystem::temp_directory_path() / "redis-XXXXXX").string();
    if (!::mkdtemp(pattern.data()))
        throw std::runtime_error("cannot make a folder for the server");
    fFolder = pattern;
    if (fOptions.tls)
        makeCertificates();
    writeConfiguration();
    start();
}

RedisServer::~RedisServer()
{
    kill();
    std::error_code ignored;
    std::filesystem::remove_all(fFolder, ignored);
}

void RedisServer::makeCertificates() const
{
    const std::string log = fFolder + "/openssl.log";
    const auto file = [this](const char* name) { return fFolder + "/" + name; };
    run({"openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "2", "-subj",
         "/CN=throw-away authority", "-keyout", file("ca.key"), "-out", file("ca.crt")},
        log);
    std::ofstream(file("server.ext")) << "subjectAltName=IP:127.0.0.1,IP:fe80::1,DNS:localhost\n";
    std::ofstream(file("client.ext")) << "extendedKeyUsage=clientAuth\n";
    for (const std::string name : {"server", "client"}) {
        const std::string base = fFolder + "/" + name;
        run({"openssl", "req", "-newkey", "rsa:2048", "-nodes", "-subj", "/CN=" + name, "-keyout",
             base + ".key", "-out", base + ".csr"},
            log);
        run({"openssl", "x509", "-req", "-days", "2", "-in", base + ".csr", "-CA", file("ca.crt"),
             "-CAkey", file("ca.key"), "-CAcreateserial", "-extfile", base + ".ext", "-out",
             base + ".crt"},
            log);
    }
}

void RedisServer::writeConfiguration() const
{
    std::ofstream out(fFolder + "/redis.conf");
    const std::string port = std::to_string(fPort);
    out << "bind 127.0.0.1\nsave \"\"\nappendonly no\ndaemonize no\n"
        << "dir " << fFolder << "\nunixsocket " << fFolder << "/admin.sock\n"
        << "user " << adminUser << " on >" << adminPassword << " ~* &* +@all\n";
    for (const std::string& user : fOptions.users)
        out << "user " << user << "\n";
    if (!fOptions.defaultPassword.empty())
        out << "requirepass " << fOptions.defaultPassword << "\n";
    if (fOptions.tls) {
        out << "port 0\ntls-port " << port << "\ntls-auth-clients optional\ntls-ca-cert-file "
            << fFolder << "/ca.crt\ntls-cert-file " << fFolder << "/server.crt\ntls-key-file "
            << fFolder << "/server.key\n";
    } else {
        out << "port " << port << "\n";
    }
}

void RedisServer::start()
{
    fPid = spawn({"redis-server", fFolder + "/redis.conf"}, fFolder + "/redis.log");
    waitUntilReady();
}

void RedisServer::waitUntilReady() const
{
    const auto deadline = std::chrono::steady_clock::now() + startDeadline;
    while (true) {
        try {
            command({"PING"});
            return;
        } catch (const std::runtime_error& error) {
            int status = 0;
            if (::waitpid(fPid, &status, WNOHANG) == fPid ||
                std::chrono::steady_clock::now() > deadline)
                throw std::runtime_error("redis-server did not start: " +
                                         std::string(error.what()));
        }
        ::poll(nullptr, 0, 5);
    }
}

std::string RedisServer::command(const std::vector<std::string>& words) const
{
    AdminConnection connection(fFolder + "/admin.sock");
    connection.run({"AUTH", adminUser, adminPassword});
    return connection.run(words);
}

void RedisServer::stop()
{
    ::kill(fPid, SIGSTOP);
}

void RedisServer::resume()
{
    ::kill(fPid, SIGCONT);
}

void RedisServer::kill()
{
    if (fPid <= 0)
        return;
    ::kill(fPid, SIGKILL);
    int status = 0;
    ::waitpid(fPid, &status, 0);
    fPid = -1;
}

void RedisServer::restart()
{
    kill();
    std::error_code ignored;
    std::filesystem::remove(fFolder + "/admin.sock", ignored);
    start();
}
