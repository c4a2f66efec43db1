// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <kit/connection_options.h>
#include <kit/usage_error.h>

#include <QTemporaryFile>
#include <QtTest>

using Texts = std::vector<std::string>;

Q_DECLARE_METATYPE(Texts)

/// How a command line tells programs where the robot is.
class TestConnectionOptions : public GuardedTest
{
    Q_OBJECT

private slots:
    void withoutOptionsItIsThisMachine();
    void everyOptionIsTaken();
    void theLastOfEqualOptionsCounts();
    void severalAddressesAreTaken();
    void oneTimeoutIsForEveryWait();
    void aTunnelMayTakeItsTime();
    void mistakesAreNamed_data();
    void mistakesAreNamed();

private:
    std::string write(const char* text);

    QTemporaryFile fFile;
};

namespace {

kit::Connection connectionOf(const Texts& texts)
{
    kit::Connection connection;
    kit::Words words(texts);
    kit::readOptions(words, kit::robotOptions(connection));
    kit::completeConnection(connection);
    return connection;
}

} // namespace

std::string TestConnectionOptions::write(const char* text)
{
    fFile.open();
    fFile.resize(0);
    fFile.write(text);
    fFile.close();
    return fFile.fileName().toStdString();
}

void TestConnectionOptions::withoutOptionsItIsThisMachine()
{
    const kit::Connection connection = connectionOf({});
    QVERIFY(!connection.isGiven);
    QCOMPARE(connection.address.toText(), std::string("127.0.0.1:6379"));
    QVERIFY(connection.options.user.empty() && connection.options.password.empty());
    QVERIFY(!connection.options.tls);
}

void TestConnectionOptions::everyOptionIsTaken()
{
    const std::string path = write("secret\n");
    const kit::Connection connection =
        connectionOf({"--connect", "[::1]:7000", "--user", "alice", "--password-file", path,
                      "--tls", "--ca=" + path, "--cert", path, "--key", path, "--prefix", "a[*]/"});
    QVERIFY(connection.isGiven);
    QCOMPARE(connection.address.toText(), std::string("[::1]:7000"));
    QCOMPARE(connection.options.user, std::string("alice"));
    QCOMPARE(connection.options.password, std::string("secret"));
    QVERIFY(connection.options.tls && connection.options.tlsVerify);
    QCOMPARE(connection.options.tlsCaFile, path);
    QCOMPARE(connection.options.tlsCertFile, path);
    QCOMPARE(connection.options.tlsKeyFile, path);
    QCOMPARE(connection.options.prefix, std::string("a[*]/"));
}

void TestConnectionOptions::theLastOfEqualOptionsCounts()
{
    const kit::Connection connection =
        connectionOf({"--connect", "a:1", "--connect=b", "--password-file", "/nowhere",
                      "--password-file", write("other"), "--user", "me", "--user", "--tls"});
    QCOMPARE(connection.address.toText(), std::string("b:6379"));
    QCOMPARE(connection.options.password, std::string("other"));
    QCOMPARE(connection.options.user, std::string("--tls"));
    QVERIFY(!connection.options.tls);
}

void TestConnectionOptions::severalAddressesAreTaken()
{
    const kit::Connection connection =
        connectionOf({"--connect", "arm:1,leg:2,tail", "--sentinel", "robots"});
    QCOMPARE(connection.address.toText(), std::string("arm:1"));
    QCOMPARE(connection.options.furtherAddresses.size(), std::size_t{2});
    QCOMPARE(connection.options.furtherAddresses[1].toText(), std::string("tail:6379"));
    QCOMPARE(connection.options.sentinel, std::string("robots"));
    QVERIFY(!connection.options.replica && connectionOf({"--replica"}).options.replica);
}

void TestConnectionOptions::oneTimeoutIsForEveryWait()
{
    const ZoBrokerOptions options = connectionOf({"--timeout", "300"}).options;
    QCOMPARE(options.connectTimeout.count(), 300);
    QCOMPARE(options.exchangeTimeout.count(), 300);
    QCOMPARE(options.callTimeout.count(), 300);
    QCOMPARE(options.keyListTimeout.count(), 300);
}

void TestConnectionOptions::aTunnelMayTakeItsTime()
{
    using std::chrono::milliseconds;
    const kit::Connection given = connectionOf({"--socket", "/a", "--timeout", "700"});
    QCOMPARE(given.options.socketPath, std::string("/a"));
    QVERIFY(given.options.connectTimeout == milliseconds(60000));
    QVERIFY(given.options.exchangeTimeout == milliseconds(700));
    const kit::Connection patient = connectionOf({"--socket", "/a", "--timeout", "90000"});
    QVERIFY(patient.options.connectTimeout == milliseconds(90000));
}

void TestConnectionOptions::mistakesAreNamed_data()
{
    QTest::addColumn<Texts>("words");
    QTest::addColumn<QString>("mistake");
    const auto row = [](const Texts& words, const char* mistake) {
        std::string name;
        for (const std::string& word : words)
            name += word + " ";
        QTest::newRow(name.c_str()) << words << mistake;
    };
    row({"--connect"}, "--connect needs a value");
    row({"--connect", ":6379"}, "--connect: robot address ':6379': there is no host");
    row({"--connect", "arm:"}, "the port must be a number");
    row({"--connect", "arm:0"}, "from 1 to 65535");
    row({"--connect", "arm:65536"}, "from 1 to 65535");
    row({"--connect", "arm:http"}, "from 1 to 65535");
    row({"--connect", "::1"}, "in brackets");
    row({"--connect", "arm,,leg"}, "there is nothing before or behind a comma");
    row({"--connect", "arm,leg", "--socket", "/run/arm"}, "--socket leads to one server");
    row({"--sentinel", "arms", "--socket", "/run/arm"}, "--socket leads to one server");
    row({"--sentinel", "arms", "--replica"}, "--replica is for a cluster");
    row({"--prefix", "robot 7/"}, "--prefix: prefix \"robot 7/\": there is a blank in it");
    row({"--prefix", "a\nb"}, "prefix \"a?b\": there is a control character in it");
    row({"--prefix", "a\xC2\x85"}, "there is a control character in it");
    row({"--prefix", "robot\xE9/"}, "prefix \"robot?/\": it is no UTF-8");
    row({"--prefix", std::string(257, 'a')}, "it is longer than 256 bytes");
    row({"--timeout", "0"}, "--timeout must be a whole number from 1 to 3600000, not '0'");
    row({"--timeout", "-5"}, "'-5'");
    row({"--timeout", "1.5"}, "'1.5'");
    row({"--timeout", "99999999999999999999"}, "whole number");
    row({"--ca", "/dev/null"}, "--ca, --cert and --key need --tls");
    row({"--cert", "/dev/null", "--key", "/dev/null"}, "need --tls");
    row({"--key", "/dev/null"}, "need --tls");
    row({"--tls", "--cert", "/dev/null"}, "--cert and --key need each other");
    row({"--tls", "--key", "/dev/null"}, "need each other");
    row({"--tls", "--ca", "/nowhere"},
        "--ca: cannot read the file '/nowhere': No such file or directory");
    row({"--tls", "--ca", "/"}, "--ca: cannot read the file '/': Is a directory");
    row({"--tls", "--cert", "/nowhere", "--key", "/dev/null"}, "--cert: cannot read");
    row({"--tls", "--cert", "/dev/null", "--key", "/nowhere"}, "--key: cannot read");
    row({"--password-file", "/nowhere"}, "'/nowhere': No such file or directory");
}

void TestConnectionOptions::mistakesAreNamed()
{
    QFETCH(Texts, words);
    QFETCH(QString, mistake);
    try {
        connectionOf(words);
        QFAIL("accepted");
    } catch (const kit::UsageError& error) {
        QVERIFY2(QString(error.what()).contains(mistake), error.what());
    }
}

REGISTER_TEST(TestConnectionOptions, NoApplication)
#include "tst_connection_options.moc"
