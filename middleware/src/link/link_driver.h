// SPDX-License-Identifier: MIT
#pragma once

#include "link/connection.h"
#include "link/link_companion.h"
#include "link/link_machine.h"
#include "link/link_pulse.h"
#include "link/link_settings.h"
#include "link/link_state.h"
#include "link/stream.h"

#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/io_context.hpp>

#include <memory>
#include <unordered_map>

namespace zo {

/// The I/O thread of a link: does what its machine wants, with sockets, TLS, look-ups and a
/// clock, and tells the machine what happens. It decides nothing.
class LinkDriver
{
public:
    using Time = SteadyClock::time_point;

    /// Throws what the system throws that allows no further files.
    /// `companion` may be null.
    LinkDriver(const std::shared_ptr<const LinkSettings>& settings, std::shared_ptr<TlsContext> tls,
               LinkState& state, LinkPulse& pulse, LinkCompanion* companion);

    /// The body of the I/O thread, until `stop`.
    void run();

    // From any thread:
    void stop();
    void submit(const std::shared_ptr<Exchange>& exchange);
    /// Its companion may have something to send.
    void nudge();
    void abandon(const std::shared_ptr<Exchange>& exchange);
    /// Begins anew. When it returns, the state tells so.
    void reconnect(const std::shared_ptr<const LinkSettings>& settings,
                   const std::shared_ptr<TlsContext>& tls);
    /// Goes down until `reconnect`. When it returns, the state tells so.
    void disconnect();

private:
    template <class Step>
    void decide(Step step);
    void attend();
    void sendDue();
    Time wakeAt() const;
    void poll();
    void act();

    void execute(const LinkAction::LookUp& action);
    void execute(const LinkAction::Connect& action);
    void execute(const LinkAction::StartTls& action);
    void execute(const LinkAction::Write& action);
    void execute(const LinkAction::Close& action);
    void execute(const LinkAction::End& action);
    void execute(const LinkAction::Tell& action);

    std::shared_ptr<const LinkSettings> fSettings;
    std::shared_ptr<TlsContext> fTls;
    LinkState& fState;
    LinkPulse& fPulse;
    LinkCompanion* const fCompanion;
    LinkMachine fMachine;
    std::unordered_map<ConnectionId, std::shared_ptr<Connection>> fConnections;

    // Also held by look-ups that outlive the link.
    std::shared_ptr<boost::asio::io_context> fContext;
    boost::asio::executor_work_guard<boost::asio::io_context::executor_type> fKeepRunning;
};

} // namespace zo
