// SPDX-License-Identifier: MIT
#include "connection/connection_settings.h"
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <QtTest>

/// What becomes of what users say about a connection.
class TestConnectionSettings : public GuardedTest
{
    Q_OBJECT

private slots:
    void handsEverythingToTheLink();
    void aPasswordNeedNotBeUtf8();
    void anAddressHasOneForm_data();
    void anAddressHasOneForm();
};

void TestConnectionSettings::handsEverythingToTheLink()
{
    ConnectionSettings settings;
    settings.prefix = QString::fromUtf8("R\u00f6ntgen/");
    settings.user = QString::fromUtf8("J\u00fcrgen");
    settings.password = "secret";
    settings.tls = true;
    settings.caFile = QString::fromUtf8("/etc/\u673a\u5668.pem");
    const ZoBrokerOptions options = settings.brokerOptions();
    QCOMPARE(options.prefix, std::string("R\u00f6ntgen/"));
    QCOMPARE(ConnectionSettings(ZoAddress(), options).prefix, settings.prefix);
    QCOMPARE(options.user, std::string("J\u00fcrgen"));
    QCOMPARE(options.password, std::string("secret"));
    QVERIFY(options.tls);
    QVERIFY(options.tlsVerify);
    QCOMPARE(options.tlsCaFile, std::string("/etc/\u673a\u5668.pem"));
}

void TestConnectionSettings::aPasswordNeedNotBeUtf8()
{
    ZoBrokerOptions given;
    given.password = "\xe9t\xe9\xff";
    const ConnectionSettings settings(ZoAddress(), given);
    QCOMPARE(settings.brokerOptions().password, given.password);
}

void TestConnectionSettings::anAddressHasOneForm_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("shown");
    QTest::newRow("small letters") << "Robot.Lab:7000"
                                   << "robot.lab:7000";
    QTest::newRow("port of its own") << "robot"
                                     << "robot:6379";
    QTest::newRow("IPv4") << "10.0.0.12"
                          << "10.0.0.12:6379";
    QTest::newRow("zeros") << "[0:0:0:0:0:0:0:1]:6379"
                           << "[::1]:6379";
    QTest::newRow("IPv6 in capitals") << "[FE80:0::00Ab]"
                                      << "[fe80::ab]:6379";
    QTest::newRow("zone") << "[FE80::1%Eth0]"
                          << "[fe80::1%Eth0]:6379";
    QTest::newRow("beyond ASCII") << QString::fromUtf8("B\u00c4R")
                                  << QString::fromUtf8("b\u00c4r:6379");
}

void TestConnectionSettings::anAddressHasOneForm()
{
    QFETCH(QString, typed);
    QFETCH(QString, shown);
    const ZoAddress address = ZoAddress::fromText(typed.toStdString());
    const ConnectionSettings fromCommandLine(address, {});
    QCOMPARE(fromCommandLine.addressText(), shown);
    QCOMPARE(QString::fromStdString(inOneForm(fromCommandLine.address).toText()), shown);
    ConnectionSettings other;
    other.address = address;
    QVERIFY(isSameAddress(other, fromCommandLine));
    QCOMPARE(fromCommandLine.robotText(), shown);
    other.prefix = "robot7/";
    QVERIFY(!isSameAddress(other, fromCommandLine));
    QCOMPARE(other.robotText(), "robot7/ at " + QString::fromStdString(address.toText()));
    other.prefix.clear();
    other.address.port = 1;
    QVERIFY(!isSameAddress(other, fromCommandLine));
}

REGISTER_TEST(TestConnectionSettings, NoApplication)
#include "tst_connection_settings.moc"
