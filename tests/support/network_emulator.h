// SPDX-License-Identifier: MIT
#pragma once

#include "support/network_line.h"

#include <cstdint>
#include <memory>

/// A slow or broken network between clients and a server, both on 127.0.0.1: clients connect to
/// `port()`, and what they and the server send passes as the two ways say. Any number of
/// connections, each with lines of its own: one does not wait for another.
///
/// Opening a connection takes no time; a server that is not there shows as one that hangs up.
/// The end of one side's bytes passes like a byte behind them, a reset at once.
///
/// One thread of its own does all the carrying. Every operation may be called from any other
/// thread, and waits for that one where it changes something. The destructor cuts all connections.
/// When no socket can be had the constructor throws boost::system::system_error; later that ends
/// the program, which is a test's or a benchmark's.
class NetworkEmulator
{
public:
    /// `up`: from the clients to the server; `down`: back. Pauses are counted from now on.
    NetworkEmulator(int serverPort, const NetworkWay& up, const NetworkWay& down);
    /// Both ways alike.
    NetworkEmulator(int serverPort, const NetworkWay& ways);
    ~NetworkEmulator();
    NetworkEmulator(const NetworkEmulator&) = delete;
    NetworkEmulator& operator=(const NetworkEmulator&) = delete;

    int port() const;

    /// From now on the ways are like this, also for connections that are open (see
    /// NetworkLine::change).
    void change(const NetworkWay& up, const NetworkWay& down);
    /// Closes both ends of all connections. What was under way is lost.
    void cut();

    // What has been handed on since the beginning, in bytes.
    std::uint64_t bytesUp() const;
    std::uint64_t bytesDown() const;

private:
    class Carrier;
    const std::unique_ptr<Carrier> fCarrier;
};
