// SPDX-License-Identifier: MIT
#pragma once

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/ssl/context.hpp>
#include <boost/asio/ssl/stream.hpp>
#include <boost/asio/write.hpp>

#include <memory>
#include <optional>
#include <string>
#include <utility>

struct ZoBrokerOptions;

namespace zo {

struct LinkSettings;

using TlsContext = boost::asio::ssl::context;

/// What all connections of a link share to speak TLS. Null when `options` want none. Throws
/// ZoError, naming the file, for one that is missing or no good.
std::shared_ptr<TlsContext> makeTlsContext(const ZoBrokerOptions& options);

/// Whose certificate the server at `host` must have: an IPv6 address is in it without the
/// interface that leads there, "fe80::1" and not "fe80::1%eth0".
std::string certifiedName(const std::string& host);

/// What both sides of an encrypted connection agreed upon.
struct TlsFacts
{
    std::string version;    ///< of the protocol: "TLSv1.3"
    std::string subject;    ///< whom the server's certificate names: "CN=arm-7"; as it came
    std::string validUntil; ///< "2027-01-31"
    bool isChecked = false; ///< whether the certificate is
};

/// A TCP connection, with TLS over it or not.
class Stream
{
public:
    using ErrorCode = boost::system::error_code;
    using Endpoint = boost::asio::ip::tcp::endpoint;

    /// To `host`, with `tls` or null.
    Stream(boost::asio::io_context& context, std::shared_ptr<TlsContext> tls,
           const LinkSettings& settings, const std::string& host);

    template <class Handler>
    void connect(const Endpoint& endpoint, Handler handler)
    {
        if (!fSocketPath.empty()) // which takes no time
            return boost::asio::post(
                fSocket.get_executor(),
                [handler = std::move(handler), problem = connectLocally()] { handler(problem); });
        if (const ErrorCode problem = open(endpoint))
            return handler(problem);
        fSocket.async_connect(endpoint, std::move(handler));
    }

    /// Once connected.
    template <class Handler>
    void startTls(Handler handler)
    {
        fTls->async_handshake(boost::asio::ssl::stream_base::client, std::move(handler));
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

    /// Once TLS is started.
    TlsFacts tlsFacts();

    /// Ends the talk. What has arrived can still be read, and then the end.
    void shutDown();
    void close();

    /// The reason of `error`, with what the check of the certificate found.
    std::string explain(const ErrorCode& error);
    /// Whether `error` means that a certificate was refused, the server's or ours.
    bool isRefusal(const ErrorCode& error);

private:
    ErrorCode open(const Endpoint& endpoint);
    ErrorCode connectLocally();
    ErrorCode adopt(int handle, const boost::asio::ip::tcp& protocol);
    /// What the check found wrong with the server's certificate; X509_V_OK: nothing.
    long verdict();

    const std::string fSocketPath;
    boost::asio::ip::tcp::socket fSocket; ///< for the system, that of `fSocketPath` is like any
    const std::shared_ptr<TlsContext> fContext;
    std::optional<boost::asio::ssl::stream<boost::asio::ip::tcp::socket&>> fTls;
};

} // namespace zo
