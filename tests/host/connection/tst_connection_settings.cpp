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
};

void TestConnectionSettings::handsEverythingToTheLink()
{
    ConnectionSettings settings;
    settings.user = QString::fromUtf8("J\u00fcrgen");
    settings.password = "secret";
    settings.tls = true;
    settings.caFile = QString::fromUtf8("/etc/\u673a\u5668.pem");
    const ZoBrokerOptions options = settings.brokerOptions();
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

REGISTER_TEST(TestConnectionSettings, NoApplication)
#include "tst_connection_settings.moc"
