// SPDX-License-Identifier: MIT
#pragma once

#include <kit/temporary_folder.h>

#include <memory>
#include <string>
#include <sys/types.h>
#include <vector>

namespace kit {
class ChildProcess;
}

/// A private Redis server on a free loopback port, without persistence, for one test or
/// benchmark. It ends with the object, and with the process that made it, however that ends.
/// Use it from the thread that made it; a server that does not start throws std::runtime_error.
class RedisServer
{
public:
    struct Options
    {
        bool tls = false; ///< TLS only, with a throw-away certificate authority
        /// Rules of the access list, one user a line: "alice on >secret ~Arm/* +@all".
        std::vector<std::string> users;
        std::string defaultPassword;            ///< empty: the default user needs none
        std::vector<std::string> configuration; ///< further lines of it
        bool isSentinel = false;                ///< it watches servers, and is none itself
    };

    RedisServer();
    explicit RedisServer(const Options& options);
    ~RedisServer();
    RedisServer(const RedisServer&) = delete;
    RedisServer& operator=(const RedisServer&) = delete;

    int port() const { return fPort; }
    pid_t pid() const;

    /// PEM files in the server's own folder; with Options::tls only. The client pair is signed by
    /// the same authority as the server's.
    std::string caFile() const { return fFolder + "/ca.crt"; }
    std::string clientCertFile() const { return fFolder + "/client.crt"; }
    std::string clientKeyFile() const { return fFolder + "/client.key"; }
    const std::string& folder() const { return fFolder; }

    /// Where it listens, too, without TLS.
    std::string socketPath() const { return fFolder + "/admin.sock"; }

    /// Runs one command as an administrator, beside the link under test; returns the reply as
    /// text. Throws std::runtime_error when the server refuses it.
    std::string command(const std::vector<std::string>& words) const;

    /// How many are connected, but the one that asks.
    int clients() const;

    void stop();    ///< SIGSTOP: the process is there and answers nothing
    void resume();  ///< SIGCONT
    void kill();    ///< SIGKILL, and waits for its end
    void restart(); ///< starts it again, empty, on the same port; kills it first if it runs
    /// The same with new certificates of a new authority; with Options::tls only.
    void restartAsAnother();
    /// The same with another password of the default user.
    void restartWithPassword(const std::string& password);

private:
    void makeCertificates() const;
    void writeConfiguration() const;
    void start();
    void waitUntilReady();

    Options fOptions;
    kit::TemporaryFolder fTemporary;
    const std::string fFolder;
    int fPort = 0;
    std::unique_ptr<kit::ChildProcess> fProcess;
};
