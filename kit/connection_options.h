// SPDX-License-Identifier: MIT
#pragma once

#include <kit/option_words.h>

#include <zo/address.h>
#include <zo/broker_options.h>

namespace kit {

/// How to reach a robot's memory, as a command line says.
struct Connection
{
    bool isGiven = false; ///< --connect was there
    ZoAddress address;
    ZoBrokerOptions options;
    std::string passwordFile; ///< empty: none
    std::string warning;      ///< of completeConnection; empty: none
};

/// The options that fill `connection`, which must outlive them.
Options connectionOptions(Connection& connection);

/// The same, with --socket, for programs that others lead through a tunnel.
Options robotOptions(Connection& connection);

/// What --socket sets: `options` lead through the Unix socket at `path`, however long its other end
/// takes to answer, within a minute.
void setTunnel(ZoBrokerOptions& options, const std::string& path);

/// What --timeout sets.
void setTimeouts(ZoBrokerOptions& options, std::chrono::milliseconds time);

/// To be called when they are read: reads the password file. Throws UsageError for what does not
/// go together and for files that cannot be read.
void completeConnection(Connection& connection);

} // namespace kit
