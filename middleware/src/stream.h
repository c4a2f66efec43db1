#pragma once

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/ssl/context.hpp>
#include <boost/asio/ssl/stream.hpp>
#include <boost/asio/write.hpp>

#include <memory>
#include <optional>
#include <string>
#include <utility>

struct ZoBrokerOptions;

/// What all connections of a link share to speak TLS. Null when `options` want none. Throws
/// ZoError, naming the file, for one that is missing or no good.
std::unique_ptr<boost::asio::ssl::context> makeTlsContext(const ZoBrokerOptions& options);

/// A TCP connection, with TLS over it or not.
class Stream
{
public:
    using Socket = boost::asio::ip::tcp::socket;

    /// With `tls`, which must outlive this. `host` is whose certificate the server must have.
    Stream(boost::asio::io_context& context, boost::asio::ssl::context* tls,
           const std::string& host);

    Socket& socket() { return fSocket; }

    /// Once connected: sends what is written at once, and goes through the TLS handshake if any.
    template <class Handler>
    void start(Handler handler)
    {
        boost::system::error_code ignored;
        fSocket.set_option(boost::asio::ip::tcp::no_delay(true), ignored);
        if (fTls)
            fTls->async_handshake(boost::asio::ssl::stream_base::client, std::move(handler));
        else
            handler(boost::system::error_code());
    }

    template <class Handler>
    void readSome(boost::asio::mutable_buffer buffer, Handler handler)
    {
        if (fTls)
            fTls->async_read_some(buffer, std::move(handler));
        else
            fSocket.async_read_some(buffer, std::move(handler));
    }

    template <class Handler>
    void write(boost::asio::const_buffer buffer, Handler handler)
    {
        if (fTls)
            boost::asio::async_write(*fTls, buffer, std::move(handler));
        else
            boost::asio::async_write(fSocket, buffer, std::move(handler));
    }

    void close();

    /// The reason of `error`, with what the check of the certificate found.
    std::string explain(const boost::system::error_code& error);

private:
    Socket fSocket;
    std::optional<boost::asio::ssl::stream<Socket&>> fTls;
};
