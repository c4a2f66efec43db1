// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/patience.h"
#include "support/redis_server.h"
#include "support/register_test.h"

#include <link/link_settings.h>
#include <link/stream.h>

#include <zo/broker.h>

#include <QtTest>

using namespace zo;

namespace {

/// What becomes of the handshake with `server`, which we call `host`, however it is reached.
std::string handshake(const RedisServer& server, const std::string& host)
{
    ZoBrokerOptions options;
    options.tls = true;
    options.tlsCaFile = server.caFile();
    boost::asio::io_context context;
    const LinkSettings settings(host, server.port(), options, "test");
    Stream stream(context, makeTlsContext(options), settings, host);
    std::string outcome = "nothing happened";
    const auto port = static_cast<unsigned short>(server.port());
    stream.connect({boost::asio::ip::make_address("127.0.0.1"), port},
                   [&](const Stream::ErrorCode& refusal) {
                       if (refusal)
                           outcome = stream.explain(refusal);
                       else
                           stream.startTls([&](const Stream::ErrorCode& error) {
                               outcome = error ? stream.explain(error) : "trusted";
                           });
                   });
    context.run_for(std::chrono::milliseconds(patience));
    return outcome;
}

} // namespace

/// Whose certificate a robot must have.
class TestCertifiedName : public GuardedTest
{
    Q_OBJECT

private slots:
    void anInterfaceIsNoPartOfTheName();
    void theCertificateOfAScopedAddressIsTrusted();
};

void TestCertifiedName::anInterfaceIsNoPartOfTheName()
{
    QCOMPARE(certifiedName("fe80::1%eth0"), std::string("fe80::1"));
    QCOMPARE(certifiedName("fe80::1%3"), std::string("fe80::1"));
    QCOMPARE(certifiedName("::1"), std::string("::1"));
    QCOMPARE(certifiedName("10.0.0.7"), std::string("10.0.0.7"));
    QCOMPARE(certifiedName("arm-7"), std::string("arm-7"));
    QCOMPARE(certifiedName("arm%7"), std::string("arm%7"));
}

void TestCertifiedName::theCertificateOfAScopedAddressIsTrusted()
{
    RedisServer::Options options;
    options.tls = true;
    const RedisServer server(options);
    QCOMPARE(handshake(server, "127.0.0.1"), std::string("trusted"));
    QCOMPARE(handshake(server, "fe80::1"), std::string("trusted"));
    QCOMPARE(handshake(server, "fe80::1%lo"), std::string("trusted"));
    QCOMPARE(handshake(server, "fe80::2%lo"),
             std::string("the server's certificate is not trusted: hostname mismatch"));
}

REGISTER_TEST(TestCertifiedName, QCoreApplication)
#include "tst_certified_name.moc"
