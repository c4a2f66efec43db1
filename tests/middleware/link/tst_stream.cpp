// SPDX-License-Identifier: MIT
#include "support/fake_robot.h"
#include "support/guarded_test.h"
#include "support/patience.h"
#include "support/redis_server.h"
#include "support/register_test.h"
#include "support/robot.h"

#include <QFile>
#include <QtTest>

#include <future>
#include <memory>

/// Links over TLS.
class TestStream : public GuardedTest
{
    Q_OBJECT

private slots:
    void initTestCase();
    void aTrustedServerIsTalkedTo_data();
    void aTrustedServerIsTalkedTo();
    void manyValuesTravelThroughTls();
    void anUntrustedServerIsRefused();
    void aServerOfAnotherNameIsRefused();
    void theServersNameIsSentAndAnAddressIsNot();
    void aRefusedCertificateIsFinal();
    void theCheckCanBeSwitchedOff();
    void aServerMayAskForAClientCertificate();
    void badFilesAreNamed();
    void aServerWithoutTlsIsRefused();
    void aClientWithoutTlsIsRefused();
    void aLinkOverTlsComesBack();

private:
    ZoBrokerOptions trusting() const;
    std::string problem(const ZoBrokerOptions& options,
                        const std::string& host = "127.0.0.1") const;
    std::string helloTo(const std::string& host) const;

    std::unique_ptr<RedisServer> fServer;
};

void TestStream::initTestCase()
{
    GuardedTest::initTestCase();
    RedisServer::Options options;
    options.tls = true;
    fServer = std::make_unique<RedisServer>(options);
}

ZoBrokerOptions TestStream::trusting() const
{
    ZoBrokerOptions options = patientOptions();
    options.tls = true;
    options.tlsCaFile = fServer->caFile();
    return options;
}

std::string TestStream::problem(const ZoBrokerOptions& options, const std::string& host) const
{
    return errorOf([&] { ZoBroker::create("TestBroker", host, fServer->port(), options); });
}

void TestStream::aTrustedServerIsTalkedTo_data()
{
    QTest::addColumn<QString>("host");
    QTest::newRow("by address") << "127.0.0.1";
    QTest::newRow("by name") << "localhost";
}

void TestStream::aTrustedServerIsTalkedTo()
{
    QFETCH(QString, host);
    const auto broker =
        ZoBroker::create("TestBroker", host.toStdString(), fServer->port(), trusting());
    ZoMemoryProxy memory = memoryOf(broker);
    memory.setText("Arm", "0.5");
    QVERIFY(memory.getListData(requestFor({"Arm"}))[0] == ZoValue(0.5));
}

void TestStream::manyValuesTravelThroughTls()
{
    const auto broker = linkTo(fServer->port(), trusting());
    ZoMemoryProxy memory = memoryOf(broker);
    const std::string text(1 << 20, 'x');
    memory.setText("Arm", text);
    const ZoValue values = memory.getListData(requestFor(std::vector<std::string>(20, "Arm")));
    QCOMPARE(values.getSize(), 20);
    for (int i = 0; i < values.getSize(); ++i)
        QVERIFY(values[i].asString() == text);
}

void TestStream::anUntrustedServerIsRefused()
{
    ZoBrokerOptions options = trusting();
    options.tlsCaFile.clear();
    const std::string error = problem(options);
    QVERIFY2(contains(error, "certificate is not trusted"), error.c_str());
    QVERIFY2(contains(error, "127.0.0.1:" + std::to_string(fServer->port())), error.c_str());
}

void TestStream::aServerOfAnotherNameIsRefused()
{
    // The certificate is made out to 127.0.0.1 and localhost.
    const std::string error = problem(trusting(), "127.1");
    QVERIFY2(contains(error, "certificate is not trusted: hostname mismatch"), error.c_str());
}

/// What a server is sent first by somebody who calls it `host`.
std::string TestStream::helloTo(const std::string& host) const
{
    std::promise<std::string> hello;
    const FakeRobot robot([&hello](FakeConnection& connection) {
        const std::string head = connection.readBytes(5);
        const auto size =
            static_cast<unsigned char>(head[3]) * 256U + static_cast<unsigned char>(head[4]);
        const std::string body = connection.readBytes(size);
        if (connection.number() == 0)
            hello.set_value(body);
    });
    const std::string error =
        errorOf([&] { ZoBroker::create("TestBroker", host, robot.port(), trusting()); });
    auto received = hello.get_future();
    const bool isThere = received.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
    return isThere && contains(error, "closed the connection") ? received.get() : "none: " + error;
}

void TestStream::theServersNameIsSentAndAnAddressIsNot()
{
    // Extension 0 of 14 bytes: a list of 12 bytes, in it a host's name (0) of 9 bytes.
    const std::string name("\0\0\0\x0e\0\x0c\0\0\x09localhost", 18);
    QVERIFY(contains(helloTo("localhost"), name));
    const std::string byAddress = helloTo("127.0.0.1");
    QVERIFY2(byAddress.size() > 100 && !contains(byAddress, "127.0.0.1"), byAddress.c_str());
}

void TestStream::aRefusedCertificateIsFinal()
{
    const auto broker = linkTo(fServer->port(), trusting());
    ZoBrokerOptions options = trusting();
    options.tlsCaFile.clear();
    broker->reconnect(options);
    TRY_VERIFY(broker->linkStatus().refused);
    QVERIFY(contains(broker->linkStatus().cause, "certificate is not trusted"));

    fServer->command({"CONFIG", "SET", "tls-auth-clients", "yes"});
    broker->reconnect(trusting());
    TRY_VERIFY(broker->linkStatus().refused);
    QVERIFY(contains(broker->linkStatus().cause, "certificate required"));
    fServer->command({"CONFIG", "SET", "tls-auth-clients", "optional"});
    broker->reconnect(trusting());
    TRY_VERIFY(broker->isConnected());
}

void TestStream::theCheckCanBeSwitchedOff()
{
    ZoBrokerOptions options = trusting();
    options.tlsCaFile.clear();
    options.tlsVerify = false;
    QCOMPARE(problem(options), std::string());
}

void TestStream::aServerMayAskForAClientCertificate()
{
    fServer->command({"CONFIG", "SET", "tls-auth-clients", "yes"});
    const std::string without = problem(trusting());
    ZoBrokerOptions options = trusting();
    options.tlsCertFile = fServer->clientCertFile();
    options.tlsKeyFile = fServer->clientKeyFile();
    const std::string with = problem(options);
    fServer->command({"CONFIG", "SET", "tls-auth-clients", "optional"});
    QVERIFY2(contains(without, "certificate required"), without.c_str());
    QCOMPARE(with, std::string());
}

void TestStream::badFilesAreNamed()
{
    const std::string missing = fServer->folder() + "/missing.pem";
    const std::string empty = fServer->folder() + "/empty.pem";
    QVERIFY(QFile(QString::fromStdString(empty)).open(QIODevice::WriteOnly));
    for (const std::string& file : {missing, empty}) {
        ZoBrokerOptions options = trusting();
        options.tlsCaFile = file;
        QVERIFY2(contains(problem(options), file), problem(options).c_str());
        options = trusting();
        options.tlsCertFile = file;
        options.tlsKeyFile = fServer->clientKeyFile();
        QVERIFY2(contains(problem(options), file), problem(options).c_str());
        options.tlsCertFile = fServer->clientCertFile();
        options.tlsKeyFile = file;
        QVERIFY2(contains(problem(options), file), problem(options).c_str());
    }
    ZoBrokerOptions options = trusting();
    options.tlsCertFile = fServer->clientCertFile();
    QVERIFY(contains(problem(options), "needs both"));
}

void TestStream::aServerWithoutTlsIsRefused()
{
    const RedisServer plain;
    ZoBrokerOptions options = trusting();
    options.connectTimeout = std::chrono::milliseconds(500); // it waits for more, silently
    const std::string error = errorOf([&] { linkTo(plain.port(), options); });
    QVERIFY2(contains(error, "127.0.0.1:" + std::to_string(plain.port())), error.c_str());
    QVERIFY2(contains(error, "while setting up TLS"), error.c_str());
}

void TestStream::aClientWithoutTlsIsRefused()
{
    const std::string error = problem(patientOptions());
    const std::string where = "127.0.0.1:" + std::to_string(fServer->port());
    // Whether the server's end or what it left unread comes first is the system's choice.
    QVERIFY2(contains(error, where + ": Connection reset") ||
                 contains(error, where + ": the robot closed the connection"),
             error.c_str());
}

void TestStream::aLinkOverTlsComesBack()
{
    const auto broker = linkTo(fServer->port(), trusting());
    fServer->restart();
    ZoMemoryProxy memory = memoryOf(broker);
    TRY_VERIFY(errorOf([&] { memory.setText("Arm", "1"); }).empty());
}

REGISTER_TEST(TestStream, QCoreApplication)
#include "tst_stream.moc"
