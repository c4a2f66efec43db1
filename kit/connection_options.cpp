// SPDX-License-Identifier: MIT
#include <kit/connection_options.h>
#include <kit/password_file.h>
#include <kit/system_text.h>
#include <kit/usage_error.h>

#include <zo/error.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <system_error>
#include <unistd.h>

namespace kit {

namespace {

using Text = std::string;

/// To log in on the way, and for a user's answers to questions.
constexpr std::chrono::milliseconds timeForTunnel = std::chrono::minutes(1);

void storeAddress(Connection& connection, const Text& name, const Text& text)
{
    try {
        std::vector<ZoAddress> addresses = ZoAddress::listFromText(text);
        connection.address = addresses.front();
        addresses.erase(addresses.begin());
        connection.options.furtherAddresses = std::move(addresses);
        connection.isGiven = true;
    } catch (const ZoError& error) {
        throw UsageError(name + ": " + error.toString());
    }
}

void storePrefix(ZoBrokerOptions& options, const Text& name, const Text& text)
{
    try {
        ZoBrokerOptions::checkPrefix(text);
        options.prefix = text;
    } catch (const ZoError& error) {
        throw UsageError(name + ": " + error.toString());
    }
}

/// Why the file at `path` cannot be read; 0: it can.
int readingError(const Text& path)
{
    if (::access(path.c_str(), R_OK) != 0)
        return errno;
    std::error_code ignored;
    return std::filesystem::is_directory(path, ignored) ? EISDIR : 0;
}

void checkReadable(const Text& name, const Text& path)
{
    if (path.empty())
        return;
    if (const int error = readingError(path))
        throw UsageError(name + ": cannot read the file '" + path + "': " + messageOf(error));
}

void checkNodes(const ZoBrokerOptions& options)
{
    const bool areSeveral = !options.furtherAddresses.empty() || !options.sentinel.empty();
    if (areSeveral && !options.socketPath.empty())
        throw UsageError("--socket leads to one server: give one address, and no --sentinel");
    if (options.replica && !options.sentinel.empty())
        throw UsageError("--replica is for a cluster, and --sentinel for a server without one");
}

void checkTls(const ZoBrokerOptions& options)
{
    const bool certificates =
        !options.tlsCaFile.empty() || !options.tlsCertFile.empty() || !options.tlsKeyFile.empty();
    if (certificates && !options.tls)
        throw UsageError("--ca, --cert and --key need --tls: without it nothing is checked or "
                         "encrypted");
    if (options.tlsCertFile.empty() != options.tlsKeyFile.empty())
        throw UsageError("--cert and --key need each other");
    checkReadable("--ca", options.tlsCaFile);
    checkReadable("--cert", options.tlsCertFile);
    checkReadable("--key", options.tlsKeyFile);
}

} // namespace

Options connectionOptions(Connection& connection)
{
    ZoBrokerOptions& options = connection.options;
    return {
        {{"--connect"},
         "HOST[:PORT]",
         "where the robot's memory is (127.0.0.1:6379); put an IPv6 address in brackets: "
         "[::1]:6379; of nodes of a cluster, or of sentinels, several with commas between",
         [&connection](const Text& name, const Text& text) {
             storeAddress(connection, name, text);
         }},
        {{"--prefix"},
         "TEXT",
         "what the robot's keys begin with on a server of many, as robot7/; they are named without "
         "it",
         [&options](const Text& name, const Text& text) { storePrefix(options, name, text); }},
        textOption("--sentinel", "NAME",
                   "what sentinels, whose addresses are given, call the robot's server",
                   options.sentinel),
        flag("--replica", "read from a replica of a cluster's node; its values may be late",
             options.replica),
        textOption("--user", "NAME", "the robot's user; some need no password", options.user),
        textOption("--password-file", "FILE", "file whose first line is the password",
                   connection.passwordFile),
        flag("--tls", "connect by TLS and check the robot's certificate", options.tls),
        textOption("--ca", "FILE", "authorities to trust (PEM), in place of the system's",
                   options.tlsCaFile),
        textOption("--cert", "FILE", "certificate to show (PEM), with --key", options.tlsCertFile),
        textOption("--key", "FILE", "its key (PEM)", options.tlsKeyFile),
        {{"--timeout"},
         "MS",
         "longest wait for a connection (1000), for a robot that says nothing (250), for a call in "
         "all and for the list of keys (2000 each; each key adds 0.02 ms to these)",
         [&options](const Text& name, const Text& text) {
             setTimeouts(options,
                         std::chrono::milliseconds(numberFrom(name, text, 1, longestTime)));
         }},
    };
}

Options robotOptions(Connection& connection)
{
    return joined(connectionOptions(connection),
                  {textOption("--socket", "FILE",
                              "Unix socket of this machine that leads to that robot, as a tunnel's "
                              "does; connecting may take a minute then",
                              connection.options.socketPath)});
}

void setTunnel(ZoBrokerOptions& options, const std::string& path)
{
    options.socketPath = path;
    options.connectTimeout = std::max(options.connectTimeout, timeForTunnel);
}

void setTimeouts(ZoBrokerOptions& options, std::chrono::milliseconds time)
{
    options.connectTimeout = time;
    options.exchangeTimeout = time;
    options.callTimeout = time;
    options.keyListTimeout = time;
}

void completeConnection(Connection& connection)
{
    checkTls(connection.options);
    checkNodes(connection.options);
    if (!connection.options.socketPath.empty())
        setTunnel(connection.options, connection.options.socketPath);
    if (connection.passwordFile.empty())
        return;
    Password password = readPassword(connection.passwordFile);
    connection.options.password = std::move(password.text);
    connection.warning = password.warning;
    wipe(password.text);
}

} // namespace kit
