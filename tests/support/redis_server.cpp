// SPDX-License-Identifier: MIT
#include "support/redis_server.h"

#include <kit/child_process.h>
#include <kit/descriptor.h>
#include <kit/loopback_port.h>

#include <wire/reply_reader.h>
#include <wire/request.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

using namespace zo;

namespace {

constexpr auto startDeadline = std::chrono::seconds(20);
constexpr char adminUser[] = "harness";
constexpr char adminPassword[] = "harness-only";

kit::Descriptor openLog(const std::string& file)
{
    return kit::Descriptor(::open(file.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600));
}

void run(const std::vector<std::string>& words, const std::string& logFile)
{
    if (kit::ChildProcess(words, openLog(logFile).get()).wait() != 0)
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
        if (::connect(fSocket.get(), reinterpret_cast<sockaddr*>(&address), sizeof address) != 0)
            failWithErrno("cannot connect to " + path);
    }

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
                ::send(fSocket.get(), bytes.data() + at, bytes.size() - at, MSG_NOSIGNAL);
            if (sent <= 0)
                failWithErrno("cannot send to the server");
            at += static_cast<std::size_t>(sent);
        }
    }

    void receive()
    {
        char block[65536];
        const ssize_t got = ::recv(fSocket.get(), block, sizeof block, 0);
        if (got < 0)
            failWithErrno("cannot receive from the server");
        if (got == 0)
            throw std::runtime_error("the server closed the connection");
        fReader.read({block, static_cast<std::size_t>(got)});
        if (fReader.hasProblem())
            throw std::runtime_error(fReader.problem().text);
    }

    kit::Descriptor fSocket;
    ReplyReader fReader;
};

} // namespace

RedisServer::RedisServer() : RedisServer(Options()) {}

RedisServer::RedisServer(const Options& options)
    : fOptions(options),
      fTemporary("redis"),
      fFolder(fTemporary.path()),
      fPort(kit::freeLoopbackPort())
{
    if (fOptions.tls)
        makeCertificates();
    writeConfiguration();
    start();
}

RedisServer::~RedisServer() = default;

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
    for (const std::string& line : fOptions.configuration)
        out << line << "\n";
}

void RedisServer::start()
{
    std::vector<std::string> words = {"redis-server", fFolder + "/redis.conf"};
    if (fOptions.isSentinel)
        words.emplace_back("--sentinel");
    fProcess = std::make_unique<kit::ChildProcess>(words, openLog(fFolder + "/redis.log").get());
    waitUntilReady();
}

void RedisServer::waitUntilReady()
{
    const auto deadline = std::chrono::steady_clock::now() + startDeadline;
    while (true) {
        try {
            command({"PING"});
            return;
        } catch (const std::runtime_error& error) {
            if (!fProcess->isRunning() || std::chrono::steady_clock::now() > deadline)
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

int RedisServer::clients() const
{
    const std::string list = command({"CLIENT", "LIST"});
    return static_cast<int>(std::count(list.begin(), list.end(), '\n')) - 1;
}

pid_t RedisServer::pid() const
{
    return fProcess ? fProcess->pid() : -1;
}

void RedisServer::stop()
{
    fProcess->signal(SIGSTOP);
}

void RedisServer::resume()
{
    fProcess->signal(SIGCONT);
}

void RedisServer::kill()
{
    fProcess.reset();
}

void RedisServer::restart()
{
    kill();
    std::error_code ignored;
    std::filesystem::remove(fFolder + "/admin.sock", ignored);
    start();
}

void RedisServer::restartWithPassword(const std::string& password)
{
    fOptions.defaultPassword = password;
    writeConfiguration();
    restart();
}

void RedisServer::restartAsAnother()
{
    makeCertificates();
    restart();
}
