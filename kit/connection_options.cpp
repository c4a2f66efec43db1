// SPDX-License-Identifier: MIT
#include <kit/connection_options.h>
#include <kit/password_file.h>
#include <kit/usage_error.h>

#include <zo/error.h>

#include <cerrno>
#include <filesystem>
#include <system_error>
#include <unistd.h>

namespace kit {

namespace {

using Text = std::string;

void storeAddress(Connection& connection, const Text& name, const Text& text)
{
    try {
        connection.address = ZoAddress::fromText(text);
        connection.isGiven = true;
    } catch (const ZoError& error) {
        throw UsageError(name + ": " + error.toString());
    }
}

void storeTimeout(ZoBrokerOptions& options, const Text& name, const Text& text)
{
    const std::chrono::milliseconds time(numberFrom(name, text, 1, longestTime));
    options.connectTimeout = time;
    options.exchangeTimeout = time;
    options.callTimeout = time;
    options.keyListTimeout = time;
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
        throw UsageError(name + ": cannot read the file '" + path +
                         "': " + std::generic_category().message(error));
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
         "[::1]:6379",
         [&connection](const Text& name, const Text& text) {
             storeAddress(connection, name, text);
         }},
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
         [&options](const Text& name, const Text& text) { storeTimeout(options, name, text); }},
    };
}

void completeConnection(Connection& connection)
{
    checkTls(connection.options);
    if (connection.passwordFile.empty())
        return;
    Password password = readPassword(connection.passwordFile);
    connection.options.password = std::move(password.text);
    connection.warning = password.warning;
    wipe(password.text);
}

} // namespace kit
