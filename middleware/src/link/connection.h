// SPDX-License-Identifier: MIT
#pragma once

#include "link/link_actions.h"
#include "link/stream.h"

#include <boost/asio/io_context.hpp>

#include <memory>
#include <string>
#include <vector>

namespace zo {

class LinkMachine;

/// One connection to the robot: does what the machine of the link wants of it, and reports to the
/// machine what happens. Lives on the I/O thread. After `close` it does and reports nothing more.
class Connection : public std::enable_shared_from_this<Connection>
{
public:
    /// With `tls` or null. The handlers of `context` run no longer than `machine` lives.
    Connection(boost::asio::io_context& context, const std::shared_ptr<TlsContext>& tls,
               const LinkSettings& settings, LinkMachine& machine,
               const LinkAction::Connect& wanted);

    void open(const LinkAddress& address);
    void startTls();
    void write(const LinkAction::Write& slice);
    void close();

private:
    using ErrorCode = boost::system::error_code;

    void onOpened();
    void beginToRead();
    void read();
    bool isBroken(const ErrorCode& error);

    Stream fStream;
    LinkMachine& fMachine;
    const ConnectionId fId;
    const bool fHasTls;
    std::vector<char> fBuffer;
    bool fIsClosed = false;
};

} // namespace zo
