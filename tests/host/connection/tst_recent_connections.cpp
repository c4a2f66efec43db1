// SPDX-License-Identifier: MIT
#include "connection/recent_connections.h"
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <QSettings>
#include <QtTest>

/// The robots that the program remembers.
class TestRecentConnections : public GuardedTest
{
    Q_OBJECT

private slots:
    void init();
    void remembersNothingAtFirst();
    void remembersAllButThePassword();
    void theLatestComesFirstAndOnce();
    void keepsTenAtMost();
    void leavesOutWhatMakesNoSense();

private:
    QScopedPointer<QTemporaryDir> fFolder;
};

namespace {

ConnectionSettings robot(const std::string& address)
{
    ConnectionSettings settings;
    settings.address = ZoAddress::fromText(address);
    return settings;
}

QStringList addresses()
{
    QStringList texts;
    for (const ConnectionSettings& settings : recentConnections())
        texts += settings.addressText();
    return texts;
}

} // namespace

void TestRecentConnections::init()
{
    QCoreApplication::setOrganizationName("Tarvek");
    fFolder.reset(new QTemporaryDir);
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, fFolder->path());
}

void TestRecentConnections::remembersNothingAtFirst()
{
    QVERIFY(recentConnections().isEmpty());
}

void TestRecentConnections::remembersAllButThePassword()
{
    ConnectionSettings settings = robot("[::1]:7000");
    settings.user = "me";
    settings.password = "do-not-keep-this";
    settings.tls = true;
    settings.caFile = "/etc/ca.pem";
    rememberConnection(settings);

    const QList<ConnectionSettings> list = recentConnections();
    QCOMPARE(list.size(), 1);
    QCOMPARE(list[0].addressText(), QString("[::1]:7000"));
    QCOMPARE(list[0].user, QString("me"));
    QVERIFY(list[0].tls);
    QCOMPARE(list[0].caFile, QString("/etc/ca.pem"));
    QVERIFY(list[0].password.empty());
    QFile file(QSettings().fileName());
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray content = file.readAll();
    QVERIFY(content.contains("7000"));
    QVERIFY(!content.contains("do-not-keep-this"));
}

void TestRecentConnections::theLatestComesFirstAndOnce()
{
    rememberConnection(robot("a:1"));
    rememberConnection(robot("b:1"));
    rememberConnection(robot("a:1"));
    rememberConnection(robot("a:2"));
    QCOMPARE(addresses(), QStringList({"a:2", "a:1", "b:1"}));
}

void TestRecentConnections::keepsTenAtMost()
{
    for (int i = 1; i <= 12; ++i)
        rememberConnection(robot("a:" + std::to_string(i)));
    QCOMPARE(addresses().size(), 10);
    QCOMPARE(addresses().first(), QString("a:12"));
    QCOMPARE(addresses().last(), QString("a:3"));
    QCOMPARE(QSettings().beginReadArray("recentConnections"), 10);
}

void TestRecentConnections::leavesOutWhatMakesNoSense()
{
    rememberConnection(robot("a:1"));
    rememberConnection(robot("b:1"));
    {
        QSettings store;
        store.setValue("recentConnections/1/address", "no address at all:::");
        store.setValue("recentConnections/size", 1000000000);
    }
    QCOMPARE(addresses(), QStringList({"a:1"}));
}

REGISTER_TEST(TestRecentConnections, QCoreApplication)
#include "tst_recent_connections.moc"
