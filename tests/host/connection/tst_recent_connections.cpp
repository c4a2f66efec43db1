// SPDX-License-Identifier: MIT
#include "connection/recent_connections.h"
#include "robots/keyring.h"
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
    void anotherUserOrWayIsAnotherRobot();
    void robotsOfTheSameSentinelsAreTwo();
    void nodesComeBackIfTheyMakeSense();
    void keepsTenAtMost();
    void leavesOutWhatMakesNoSense();
    void whatOnlyAnotherVersionKnowsStays();

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

void TestRecentConnections::anotherUserOrWayIsAnotherRobot()
{
    ConnectionSettings settings = robot("a:1");
    for (const char* user : {"me", "you", "me"}) {
        settings.user = user;
        rememberConnection(settings);
    }
    settings.jumpHost = "gate";
    rememberConnection(settings);
    settings.prefix = "robot7/";
    rememberConnection(settings);
    QStringList told;
    for (const ConnectionSettings& known : recentConnections())
        told += known.user + '@' + known.wayText();
    QCOMPARE(told, QStringList({"me@robot7/ at a:1 by way of gate", "me@a:1 by way of gate",
                                "me@a:1", "you@a:1"}));
}

void TestRecentConnections::robotsOfTheSameSentinelsAreTwo()
{
    ConnectionSettings settings = robot("watch:26379");
    for (const char* name : {"arms", "legs"}) {
        settings.other.sentinel = name;
        rememberConnection(settings);
    }
    const QList<ConnectionSettings> list = recentConnections();
    QCOMPARE(list.size(), 2);
    QCOMPARE(list[0].robotText(), QString("legs at watch:26379"));
    QCOMPARE(list[1].robotText(), QString("arms at watch:26379"));
    QVERIFY(keyringName(list[0]) != keyringName(list[1]));
}

void TestRecentConnections::nodesComeBackIfTheyMakeSense()
{
    ConnectionSettings settings = robot("arm:7001");
    settings.other.furtherAddresses = {ZoAddress::fromText("[::1]:7002"),
                                       ZoAddress::fromText("leg:7003")};
    settings.other.replica = true;
    rememberConnection(settings);
    const QList<ConnectionSettings> list = recentConnections();
    QCOMPARE(list.size(), 1);
    QVERIFY(isSameRobot(list[0], settings) && !isSameRobot(list[0], robot("arm:7001")));
    QVERIFY(keyringName(list[0]) != keyringName(robot("arm:7001")));
    QVERIFY(list[0].other.replica);
    for (const QString& wrong : {QString("arms"), QString(257, 'x'), QString("a\nb")}) {
        QSettings store; // the first goes with no replica
        store.setValue("recentConnections/1/sentinel", wrong);
        store.setValue("recentConnections/1/replica", wrong == "arms");
        store.sync();
        QVERIFY2(recentConnections().isEmpty(), qPrintable(wrong));
    }
    QSettings().remove("recentConnections/1/sentinel");
    QCOMPARE(recentConnections().size(), 1);
    QSettings().setValue("recentConnections/1/address", QString(2500, 'a').replace("a", "a,"));
    QVERIFY(recentConnections().isEmpty());
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

void TestRecentConnections::whatOnlyAnotherVersionKnowsStays()
{
    rememberConnection(robot("one"));
    rememberConnection(robot("two"));
    {
        QSettings store; // as a newer version leaves it
        store.setValue("recentConnections/2/colour", "red");
        store.setValue("recentConnections/2/more/depth", 7);
        store.setValue("recentConnections/3/serialPort", "/dev/ttyS0");
        store.setValue("recentConnections/size", 3);
    }
    rememberConnection(robot("one"));
    QCOMPARE(QSettings().value("recentConnections/1/colour").toString(), QString("red"));
    QCOMPARE(QSettings().value("recentConnections/1/more/depth").toInt(), 7);
    for (int i = 0; i < mostRecentConnections; ++i)
        rememberConnection(robot("other" + std::to_string(i)));
    QCOMPARE(recentConnections().size(), mostRecentConnections);
    QSettings store;
    QStringList ports;
    const int size = store.beginReadArray("recentConnections");
    for (int i = 0; i < size; ++i) {
        store.setArrayIndex(i);
        ports += store.value("serialPort").toString();
    }
    ports.removeAll(QString());
    QCOMPARE(ports, QStringList("/dev/ttyS0"));
}

REGISTER_TEST(TestRecentConnections, QCoreApplication)
#include "tst_recent_connections.moc"
