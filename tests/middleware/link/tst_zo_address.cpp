// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <zo/address.h>
#include <zo/error.h>

#include <QtTest>

/// How people write where a robot is.
class TestZoAddress : public GuardedTest
{
    Q_OBJECT

private slots:
    void itDefaultsToThisMachine();
    void hostAndPortAreRead_data();
    void hostAndPortAreRead();
    void itsTextReadsBack();
    void mistakesAreNamed_data();
    void mistakesAreNamed();
    void severalAreReadInTheirOrder();
    void mistakesInAListAreNamed_data();
    void mistakesInAListAreNamed();
};

void TestZoAddress::itDefaultsToThisMachine()
{
    QCOMPARE(ZoAddress().toText(), std::string("127.0.0.1:6379"));
}

void TestZoAddress::hostAndPortAreRead_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("host");
    QTest::addColumn<int>("port");
    QTest::newRow("name") << "arm-7.lab"
                          << "arm-7.lab" << 6379;
    QTest::newRow("name and port") << "arm_7:1"
                                   << "arm_7" << 1;
    QTest::newRow("IPv4") << "10.0.0.7:65535"
                          << "10.0.0.7" << 65535;
    QTest::newRow("IPv6") << "[::1]"
                          << "::1" << 6379;
    QTest::newRow("IPv6 and port") << "[2001:db8::7]:6380"
                                   << "2001:db8::7" << 6380;
    QTest::newRow("IPv6 and zone") << "[fe80::1%eth0]:6380"
                                   << "fe80::1%eth0" << 6380;
}

void TestZoAddress::hostAndPortAreRead()
{
    QFETCH(QString, text);
    QFETCH(QString, host);
    QFETCH(int, port);
    const ZoAddress address = ZoAddress::fromText(text.toStdString());
    QCOMPARE(QString::fromStdString(address.host), host);
    QCOMPARE(address.port, port);
}

void TestZoAddress::itsTextReadsBack()
{
    for (const std::string text : {"arm-7:6379", "10.0.0.7:1", "[fe80::1%eth0]:6380"})
        QCOMPARE(ZoAddress::fromText(text).toText(), text);
}

void TestZoAddress::mistakesAreNamed_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("cause");
    QTest::newRow("nothing") << ""
                             << "there is no host";
    QTest::newRow("only a port") << ":6379"
                                 << "there is no host";
    QTest::newRow("blank") << " arm"
                           << "no host name";
    QTest::newRow("line break") << "arm\n:6379"
                                << "no host name";
    QTest::newRow("a URL") << "redis//arm"
                           << "no host name";
    QTest::newRow("a user") << "me@arm"
                            << "no host name";
    QTest::newRow("several") << "arm,leg"
                             << "no host name";
    QTest::newRow("bare IPv6") << "::1"
                               << "in brackets";
    QTest::newRow("bare IPv6 and port") << "fe80::1:6379"
                                        << "in brackets";
    QTest::newRow("open bracket") << "[::1"
                                  << "']' is missing";
    QTest::newRow("empty brackets") << "[]:6379"
                                    << "no IPv6 address";
    QTest::newRow("name in brackets") << "[arm]:6379"
                                      << "no IPv6 address";
    QTest::newRow("zone with a blank") << "[::1%a b]"
                                       << "no IPv6 address";
    QTest::newRow("text behind brackets") << "[::1]6379"
                                          << "only a port";
    for (const char* port :
         {"", "0", "65536", "-1", "+1", " 1", "1 ", "1x", "0x10", "1.0", "99999999999999999999"})
        QTest::newRow(port) << QString("arm:") + port << "from 1 to 65535";
}

void TestZoAddress::mistakesAreNamed()
{
    QFETCH(QString, text);
    QFETCH(QString, cause);
    try {
        ZoAddress::fromText(text.toStdString());
        QFAIL("no error");
    } catch (const ZoError& error) {
        const QString message = QString::fromStdString(error.toString());
        QVERIFY2(message.contains(cause), error.what());
        QVERIFY2(message.contains("'" + text + "'"), error.what());
    }
}

void TestZoAddress::severalAreReadInTheirOrder()
{
    const auto addresses = ZoAddress::listFromText("10.0.0.8:7001,arm-7,[::1]:7002,10.0.0.8:7001");
    std::string texts;
    for (const ZoAddress& address : addresses)
        texts += address.toText() + " ";
    QCOMPARE(texts, std::string("10.0.0.8:7001 arm-7:6379 [::1]:7002 "));
    QCOMPARE(ZoAddress::listFromText("arm").size(), std::size_t{1});
}

void TestZoAddress::mistakesInAListAreNamed_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("cause");
    QTest::newRow("nothing") << ""
                             << "there is no host";
    QTest::newRow("begins with a comma") << ",arm"
                                         << "nothing before or behind a comma";
    QTest::newRow("ends with a comma") << "arm,"
                                       << "nothing before or behind a comma";
    QTest::newRow("a blank") << "arm, leg"
                             << "' leg': this is no host name";
    QTest::newRow("a bad port") << "arm:1,leg:x"
                                << "'leg:x': the port must be";
    QString many;
    for (int port = 1; port <= ZoAddress::fMostAddresses + 1; ++port)
        many += QString("arm:%1,").arg(port);
    QTest::newRow("too many") << many.chopped(1) << "more than 16 addresses";
}

void TestZoAddress::mistakesInAListAreNamed()
{
    QFETCH(QString, text);
    QFETCH(QString, cause);
    try {
        ZoAddress::listFromText(text.toStdString());
        QFAIL("no error");
    } catch (const ZoError& error) {
        QVERIFY2(QString::fromStdString(error.toString()).contains(cause), error.what());
    }
}

REGISTER_TEST(TestZoAddress, NoApplication)
#include "tst_zo_address.moc"
