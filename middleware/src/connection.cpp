#include "connection.h"

#include <boost/asio/buffer.hpp>
#include <boost/asio/connect.hpp>

#include <utility>

namespace asio = boost::asio;

namespace {

constexpr std::size_t readBufferSize = std::size_t{256} << 10;

} // namespace

Connection::Connection(asio::io_context& context, asio::ssl::context* tls, const std::string& host,
                       Listener listener)
    : fStream(context, tls, host), fListener(std::move(listener)), fBuffer(readBufferSize)
{
}

void Connection::open(const std::vector<asio::ip::tcp::endpoint>& endpoints)
{
    const auto self = shared_from_this();
    asio::async_connect(fStream.socket(), endpoints,
                        [self](const ErrorCode& error, const asio::ip::tcp::endpoint&) {
                            if (!self->isBroken(error))
                                self->startStream();
                        });
}

void Connection::startStream()
{
    fStage = "setting up TLS";
    fStream.start([self = shared_from_this()](const ErrorCode& error) {
        if (self->isBroken(error))
            return;
        self->fStage = "authenticating";
        self->read();
        self->fListener.opened();
    });
}

void Connection::send(std::shared_ptr<Exchange> exchange)
{
    fExchange = std::move(exchange);
    fReader.expect(fExchange->replies(), fExchange->sink());
    fIsWriting = true;
    const auto bytes = fExchange->bytes();
    fStream.write(asio::buffer(*bytes),
                  [self = shared_from_this(), bytes](const ErrorCode& error, std::size_t) {
                      if (self->isBroken(error))
                          return;
                      self->fIsWriting = false;
                      self->endExchangeIfWhole();
                  });
}

void Connection::read()
{
    fStream.readSome(asio::buffer(fBuffer),
                     [self = shared_from_this()](const ErrorCode& error, std::size_t size) {
                         if (!self->isBroken(error))
                             self->takeBytes(size);
                     });
}

void Connection::takeBytes(std::size_t size)
{
    const std::string_view rest = fReader.read({fBuffer.data(), size});
    if (fReader.hasProblem())
        return lose(fReader.problem());
    if (!rest.empty())
        return lose({"malformed reply: more than was asked for", std::string(rest)});
    read();
    endExchangeIfWhole();
}

// A server may answer before it has read the whole request; the next one waits for both.
void Connection::endExchangeIfWhole()
{
    if (!fExchange || fIsWriting || !fReader.isComplete())
        return;
    const auto whole = std::move(fExchange);
    fExchange.reset();
    whole->finish();
    fListener.exchanged();
}

bool Connection::isBroken(const ErrorCode& error)
{
    if (error && !fIsClosed)
        lose({fStream.explain(error), {}});
    return fIsClosed;
}

void Connection::lose(const ReplyProblem& cause)
{
    fStream.close();
    fIsClosed = true;
    const Listener listener = std::move(fListener);
    fListener = {};
    listener.lost(cause);
}

void Connection::close()
{
    fStream.close();
    fIsClosed = true;
    fListener = {};
}
