#include "stream.h"

#include "look_up.h"

#include <zo/broker.h>
#include <zo/error.h>

#include <boost/asio/error.hpp>
#include <boost/asio/ssl/host_name_verification.hpp>
#include <boost/asio/ssl/verify_context.hpp>

#include <openssl/ssl.h>
#include <openssl/x509.h>

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
    explicit NameCheck(const std::string& host) : fCheck(host) {}

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

} // namespace

std::unique_ptr<ssl::context> makeTlsContext(const ZoBrokerOptions& options)
{
    if (!options.tls)
        return nullptr;
    auto context = std::make_unique<ssl::context>(ssl::context::tls_client);
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

Stream::Stream(boost::asio::io_context& context, ssl::context* tls, const std::string& host)
    : fSocket(context)
{
    if (!tls)
        return;
    fTls.emplace(fSocket, *tls);
    fTls->set_verify_callback(NameCheck(host));
    if (!isNumericHost(host))
        SSL_ctrl(fTls->native_handle(), SSL_CTRL_SET_TLSEXT_HOSTNAME, TLSEXT_NAMETYPE_host_name,
                 const_cast<char*>(host.c_str()));
}

void Stream::close()
{
    ErrorCode ignored;
    fSocket.close(ignored);
}

std::string Stream::explain(const ErrorCode& error)
{
    if (error == boost::asio::error::eof || error == ssl::error::stream_truncated)
        return "the robot closed the connection";
    if (!fTls || error.category() != boost::asio::error::get_ssl_category())
        return error.message();
    const bool wasChecked = SSL_get_verify_mode(fTls->native_handle()) != SSL_VERIFY_NONE;
    const long verdict = SSL_get_verify_result(fTls->native_handle());
    if (wasChecked && verdict != X509_V_OK)
        return std::string("the server's certificate is not trusted: ") +
               X509_verify_cert_error_string(verdict);
    return "TLS: " + error.message();
}
