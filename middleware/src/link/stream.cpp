// SPDX-License-Identifier: MIT
#include "link/stream.h"

#include "link/host_name.h"
#include "link/link_settings.h"

#include <zo/broker_options.h>
#include <zo/error.h>

#include <boost/asio/error.hpp>
#include <boost/asio/ssl/host_name_verification.hpp>
#include <boost/asio/ssl/verify_context.hpp>

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <iterator>
#include <memory>
#include <openssl/bio.h>
#include <openssl/err.h>
#include <openssl/ssl.h>
#include <openssl/x509.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <utility>

namespace zo {

namespace {

namespace ssl = boost::asio::ssl;
using ErrorCode = boost::system::error_code;

void check(const ErrorCode& problem, const std::string& what)
{
    if (problem)
        throw ZoError("TLS: " + what + ": " + problem.message());
}

void loadAuthorities(ssl::context& context, const std::string& file)
{
    ErrorCode problem;
    if (file.empty())
        context.set_default_verify_paths(problem);
    else
        context.load_verify_file(file, problem);
    check(problem, "cannot use the authorities in " + (file.empty() ? "the system" : file));
}

void loadClientCertificate(ssl::context& context, const ZoBrokerOptions& options)
{
    if (options.tlsCertFile.empty() && options.tlsKeyFile.empty())
        return;
    if (options.tlsCertFile.empty() || options.tlsKeyFile.empty())
        throw ZoError("TLS: a client certificate needs both its certificate file and its key file");
    ErrorCode problem;
    context.use_certificate_chain_file(options.tlsCertFile, problem);
    check(problem, "cannot use the client certificate " + options.tlsCertFile);
    context.use_private_key_file(options.tlsKeyFile, ssl::context::pem, problem);
    check(problem, "cannot use the client key " + options.tlsKeyFile);
}

/// Checks that the certificate is made out to `host`, and keeps the reason when it is not.
class NameCheck
{
public:
    explicit NameCheck(const std::string& host) : fCheck(certifiedName(host)) {}

    bool operator()(bool isTrusted, ssl::verify_context& context) const
    {
        const bool isOk = fCheck(isTrusted, context);
        if (isTrusted && !isOk)
            X509_STORE_CTX_set_error(context.native_handle(), X509_V_ERR_HOSTNAME_MISMATCH);
        return isOk;
    }

private:
    ssl::host_name_verification fCheck;
};

std::string subjectOf(const X509& certificate)
{
    const std::unique_ptr<BIO, decltype(&::BIO_free)> text(BIO_new(BIO_s_mem()), &::BIO_free);
    if (!text || X509_NAME_print_ex(text.get(), X509_get_subject_name(&certificate), 0,
                                    XN_FLAG_ONELINE & ~XN_FLAG_SPC_EQ) < 0)
        return {};
    char* bytes = nullptr;
    const long size = BIO_get_mem_data(text.get(), &bytes);
    return {bytes, static_cast<std::size_t>(size)};
}

std::string endOf(const X509& certificate)
{
    std::tm time{};
    char text[32] = "";
    if (ASN1_TIME_to_tm(X509_get0_notAfter(&certificate), &time) == 1)
        std::strftime(text, sizeof text, "%Y-%m-%d", &time);
    return text;
}

} // namespace

std::shared_ptr<TlsContext> makeTlsContext(const ZoBrokerOptions& options)
{
    if (!options.tls)
        return nullptr;
    auto context = std::make_shared<TlsContext>(ssl::context::tls_client);
    SSL_CTX_set_min_proto_version(context->native_handle(), TLS1_2_VERSION);
    // Without this a key file with a pass phrase would ask for it on the terminal, and wait.
    context->set_password_callback(
        [](std::size_t, ssl::context::password_purpose) { return std::string(); });
    context->set_verify_mode(options.tlsVerify ? ssl::verify_peer : ssl::verify_none);
    if (options.tlsVerify)
        loadAuthorities(*context, options.tlsCaFile);
    loadClientCertificate(*context, options);
    return context;
}

std::string certifiedName(const std::string& host)
{
    return isNumericHost(host) ? host.substr(0, host.find('%')) : host;
}

Stream::Stream(boost::asio::io_context& context, std::shared_ptr<TlsContext> tls,
               const LinkSettings& settings, const std::string& host)
    : fSocketPath(settings.options.socketPath), fSocket(context), fContext(std::move(tls))
{
    if (!fContext)
        return;
    fTls.emplace(fSocket, *fContext);
    fTls->set_verify_callback(NameCheck(host));
    if (!isNumericHost(host))
        SSL_ctrl(fTls->native_handle(), SSL_CTRL_SET_TLSEXT_HOSTNAME, TLSEXT_NAMETYPE_host_name,
                 const_cast<char*>(host.c_str()));
}

// Not by the socket's own operation, which leaves it open in programs that are started meanwhile.
Stream::ErrorCode Stream::open(const Endpoint& endpoint)
{
    const int handle = ::socket(endpoint.protocol().family(), SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (const ErrorCode problem = adopt(handle, endpoint.protocol()))
        return problem;
    // What is written goes out at once.
    ErrorCode ignored;
    fSocket.set_option(boost::asio::ip::tcp::no_delay(true), ignored);
    return {};
}

Stream::ErrorCode Stream::connectLocally()
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (fSocketPath.size() >= sizeof address.sun_path)
        return ErrorCode(ENAMETOOLONG, boost::system::system_category());
    fSocketPath.copy(address.sun_path, fSocketPath.size());
    const int handle = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (const ErrorCode problem = adopt(handle, boost::asio::ip::tcp::v4()))
        return problem;
    if (::connect(handle, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        return ErrorCode(errno, boost::system::system_category());
    return {};
}

Stream::ErrorCode Stream::adopt(int handle, const boost::asio::ip::tcp& protocol)
{
    if (handle < 0)
        return ErrorCode(errno, boost::system::system_category());
    ErrorCode problem;
    fSocket.assign(protocol, handle, problem);
    if (problem)
        ::close(handle);
    return problem;
}

TlsFacts Stream::tlsFacts()
{
    SSL* const tls = fTls->native_handle();
    TlsFacts facts;
    facts.version = SSL_get_version(tls);
    facts.isChecked = SSL_get_verify_mode(tls) != SSL_VERIFY_NONE;
    if (const X509* const certificate = SSL_get0_peer_certificate(tls)) {
        facts.subject = subjectOf(*certificate);
        facts.validUntil = endOf(*certificate);
    }
    return facts;
}

void Stream::shutDown()
{
    ErrorCode ignored;
    fSocket.shutdown(boost::asio::ip::tcp::socket::shutdown_both, ignored);
}

void Stream::close()
{
    ErrorCode ignored;
    fSocket.close(ignored);
}

long Stream::verdict()
{
    if (!fTls || SSL_get_verify_mode(fTls->native_handle()) == SSL_VERIFY_NONE)
        return X509_V_OK;
    return SSL_get_verify_result(fTls->native_handle());
}

std::string Stream::explain(const ErrorCode& error)
{
    if (error == boost::asio::error::eof || error == ssl::error::stream_truncated)
        return "the robot closed the connection";
    if (!fTls || error.category() != boost::asio::error::get_ssl_category())
        return error.message();
    if (verdict() != X509_V_OK)
        return std::string("the server's certificate is not trusted: ") +
               X509_verify_cert_error_string(verdict());
    return "TLS: " + error.message();
}

bool Stream::isRefusal(const ErrorCode& error)
{
    if (!fTls || error.category() != boost::asio::error::get_ssl_category())
        return false;
    constexpr int refusals[] = {SSL_R_TLSV13_ALERT_CERTIFICATE_REQUIRED,
                                SSL_R_SSLV3_ALERT_BAD_CERTIFICATE,
                                SSL_R_SSLV3_ALERT_UNSUPPORTED_CERTIFICATE,
                                SSL_R_SSLV3_ALERT_CERTIFICATE_REVOKED,
                                SSL_R_SSLV3_ALERT_CERTIFICATE_EXPIRED,
                                SSL_R_SSLV3_ALERT_CERTIFICATE_UNKNOWN,
                                SSL_R_TLSV1_ALERT_UNKNOWN_CA,
                                SSL_R_TLSV1_ALERT_ACCESS_DENIED};
    const int reason = ERR_GET_REASON(static_cast<unsigned long>(error.value()));
    const bool refusesOurs =
        std::find(std::begin(refusals), std::end(refusals), reason) != std::end(refusals);
    return refusesOurs || verdict() != X509_V_OK;
}

} // namespace zo
