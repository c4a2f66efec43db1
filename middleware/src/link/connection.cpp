// SPDX-License-Identifier: MIT
#include "link/connection.h"

#include "link/link_machine.h"

#include <boost/asio/buffer.hpp>

namespace zo {

namespace asio = boost::asio;

namespace {

constexpr std::size_t readBufferSize = std::size_t{256} << 10;

} // namespace

Connection::Connection(asio::io_context& context, const std::shared_ptr<TlsContext>& tls,
                       const LinkSettings& settings, LinkMachine& machine,
                       const LinkAction::Connect& wanted)
    : fStream(context, tls, settings, wanted.node->host),
      fMachine(machine),
      fId(wanted.connection),
      fHasTls(tls != nullptr)
{
}

void Connection::open(const LinkAddress& address)
{
    fStream.connect(address, [self = shared_from_this()](const ErrorCode& error) {
        if (!self->isBroken(error))
            self->onOpened();
    });
}

void Connection::onOpened()
{
    fMachine.connected(SteadyClock::now(), fId);
    if (!fHasTls)
        beginToRead();
}

void Connection::startTls()
{
    fStream.startTls([self = shared_from_this()](const ErrorCode& error) {
        if (self->isBroken(error))
            return;
        self->fMachine.secured(SteadyClock::now(), self->fId);
        self->beginToRead();
    });
}

// The end of a connection is told by what is read, so that the server's last words are heard also
// when it hung up before it took ours.
void Connection::write(const LinkAction::Write& slice)
{
    const std::string_view bytes = slice.slice();
    fStream.write(
        asio::buffer(bytes.data(), bytes.size()),
        [self = shared_from_this(), kept = slice.bytes](const ErrorCode& error, std::size_t) {
            if (error)
                self->fStream.shutDown();
            else if (!self->fIsClosed)
                self->fMachine.written(SteadyClock::now(), self->fId);
        });
}

void Connection::beginToRead()
{
    fBuffer.resize(readBufferSize);
    read();
}

void Connection::read()
{
    fStream.readSome(asio::buffer(fBuffer), [self = shared_from_this()](const ErrorCode& error,
                                                                        std::size_t size) {
        if (self->isBroken(error))
            return;
        self->fMachine.received(SteadyClock::now(), self->fId, {self->fBuffer.data(), size});
        self->read();
    });
}

bool Connection::isBroken(const ErrorCode& error)
{
    if (!error || fIsClosed)
        return fIsClosed;
    const std::string problem = fStream.explain(error);
    const bool isRefusal = fStream.isRefusal(error);
    close();
    if (isRefusal)
        fMachine.refused(SteadyClock::now(), fId, problem);
    else
        fMachine.closed(SteadyClock::now(), fId, problem);
    return true;
}

void Connection::close()
{
    fIsClosed = true;
    fStream.close();
}

} // namespace zo
