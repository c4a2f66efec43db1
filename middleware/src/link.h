#pragma once

#include "exchange.h"
#include "link_state.h"
#include "peer.h"

#include <zo/broker.h>

#include <memory>
#include <string>
#include <thread>

class LinkIo;

/// The connection to a robot, with its one I/O thread. The broker and the proxies to the robot's
/// modules share it; the thread ends with the last of them. May be used from any thread.
class Link
{
public:
    /// Waits for the first connection. Throws ZoError when it fails.
    Link(const std::string& host, int port, const ZoBrokerOptions& options);
    ~Link();
    Link(const Link&) = delete;
    Link& operator=(const Link&) = delete;

    const Peer& peer() const { return fPeer; }
    const ZoBrokerOptions& options() const { return fOptions; }
    ZoLinkStatus status() const { return fState.status(); }

    /// When an exchange about `keys` keys that begins now must be over.
    Deadline deadlineFor(int keys) const;

    /// What is thrown when the server answers `command` with the error `text`.
    ZoError refusal(const std::string& command, const std::string& text) const;

    /// Sends `exchange` and waits for its end. Throws ZoError when it fails, at its deadline, and
    /// at once while the link is down. One exchange is under way at a time; others wait their
    /// turn. One that was sent and missed its deadline takes the link down.
    void run(const std::shared_ptr<Exchange>& exchange);

private:
    void end();

    const Peer fPeer;
    const ZoBrokerOptions fOptions;
    LinkState fState;
    std::unique_ptr<LinkIo> fIo;
    std::thread fThread; // its handlers live in fIo, which goes after the thread has ended
};
