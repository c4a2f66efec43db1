// SPDX-License-Identifier: MIT
#include "robots/saved_robots.h"
#include "support/guarded_test.h"
#include "support/host.h"
#include "support/register_test.h"

#include <QSettings>
#include <QtTest>

/// The robots that the user keeps, in the file of settings.
class TestSavedRobots : public GuardedTest
{
    Q_OBJECT

private slots:
    void init() { QSettings().clear(); }
    void keepsAllButThePassword();
    void aRobotWithoutANameHasThatOfItsAddress();
    void savingAgainReplacesAndKeepsThePlace();
    void renamesUnlessTheNameIsAnothers();
    void keepsTheOrderOfTheUser();
    void deletesOne();
    void knowsTheLastOne();
    void ofSeveralOfOneAddressItIsTheChosenOrTheMostAlike();
    void keepsWhatOnlyAnotherVersionKnows();
    void leavesOutWhatMakesNoSense();
    void boundsWhatAFileSays();
};

namespace {

SavedRobot robot(const QString& name, const std::string& address)
{
    SavedRobot made{name, {}};
    made.settings.address = ZoAddress::fromText(address);
    return made;
}

QStringList names()
{
    QStringList all;
    for (const SavedRobot& saved : savedRobots())
        all += saved.name;
    return all;
}

/// The group of the only robot.
QString onlyGroup()
{
    QSettings store;
    store.beginGroup("robots");
    return "robots/" + store.childGroups().value(0);
}

} // namespace

void TestSavedRobots::keepsAllButThePassword()
{
    SavedRobot saved = robot("Arm/7 \u00e9", "[::1]:7000");
    saved.settings.user = "me";
    saved.settings.password = "do-not-keep-this";
    saved.settings.tls = true;
    saved.settings.caFile = "/etc/ca.pem";
    saved.settings.certFile = "/etc/me.pem";
    saved.settings.keyFile = "/etc/me.key";
    saved.settings.timeout = 1500;
    saveRobot(saved);
    const QList<SavedRobot> list = savedRobots();
    QCOMPARE(list.size(), 1);
    QCOMPARE(list[0].name, saved.name);
    const ConnectionSettings& settings = list[0].settings;
    QCOMPARE(settings.addressText(), QString("[::1]:7000"));
    QCOMPARE(settings.user, QString("me"));
    QVERIFY(settings.tls && settings.password.empty());
    QCOMPARE(settings.caFile, QString("/etc/ca.pem"));
    QCOMPARE(settings.certFile, QString("/etc/me.pem"));
    QCOMPARE(settings.keyFile, QString("/etc/me.key"));
    QCOMPARE(settings.timeout, 1500);
    QSettings().sync();
    QFile file(QSettings().fileName());
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray content = file.readAll();
    QVERIFY(content.contains("7000") && !content.contains("do-not-keep-this"));
}

void TestSavedRobots::aRobotWithoutANameHasThatOfItsAddress()
{
    QCOMPARE(saveRobot(robot(" \n ", "a:1")), QString("a:1"));
    QCOMPARE(names(), QStringList{"a:1"});
}

void TestSavedRobots::savingAgainReplacesAndKeepsThePlace()
{
    saveRobot(robot("A", "a:1"));
    saveRobot(robot("B", "b:1"));
    saveRobot(robot(" A", "a:2"));
    QCOMPARE(names(), QStringList({"A", "B"}));
    QCOMPARE(savedRobots()[0].settings.addressText(), QString("a:2"));
}

void TestSavedRobots::renamesUnlessTheNameIsAnothers()
{
    saveRobot(robot("A", "a:1"));
    saveRobot(robot("B", "b:1"));
    QVERIFY(!renameRobot("A", "B"));
    QVERIFY(!renameRobot("A", " "));
    QVERIFY(!renameRobot("C", "D"));
    QVERIFY(renameRobot("A", "C"));
    QCOMPARE(names(), QStringList({"C", "B"}));
}

void TestSavedRobots::keepsTheOrderOfTheUser()
{
    for (const char* name : {"A", "B", "C"})
        saveRobot(robot(name, "a:1"));
    orderRobots({"C", "A", "unknown"});
    QCOMPARE(names(), QStringList({"C", "A", "B"}));
}

void TestSavedRobots::deletesOne()
{
    saveRobot(robot("A", "a:1"));
    saveRobot(robot("B", "b:1"));
    deleteRobot("A");
    deleteRobot("unknown");
    QCOMPARE(names(), QStringList{"B"});
}

void TestSavedRobots::knowsTheLastOne()
{
    QVERIFY(!lastRobot());
    saveRobot(robot("A", "a:1"));
    saveRobot(robot("B", "b:1"));
    rememberLastRobot(robot("", "b:1").settings);
    QCOMPARE(lastRobot()->name, QString("B"));
    QCOMPARE(savedNameOf(robot("", "a:1").settings), QString("A"));
    rememberLastRobot(robot("", "c:1").settings);
    QVERIFY(!lastRobot());
    ConnectionSettings other = robot("", "a:1").settings;
    other.user = "somebody";
    QVERIFY(savedNameOf(other).isEmpty());
}

void TestSavedRobots::ofSeveralOfOneAddressItIsTheChosenOrTheMostAlike()
{
    saveRobot(robot("A", "a:1"));
    SavedRobot encrypted = robot("B", "a:1");
    encrypted.settings.tls = true;
    saveRobot(encrypted);
    saveRobot(robot("C", "c:1"));
    const ConnectionSettings plain = robot("", "a:1").settings;
    QCOMPARE(savedNameOf(plain), QString("A"));
    QCOMPARE(savedNameOf(plain, "B"), QString("B"));
    QCOMPARE(savedNameOf(robot("", "A:1").settings), QString("A"));
    QCOMPARE(savedNameOf(plain, "C"), QString("A"));
    QCOMPARE(savedNameOf(encrypted.settings), QString("B"));
    ConnectionSettings patient = plain;
    patient.timeout = 7;
    QCOMPARE(savedNameOf(patient), QString("A"));
    rememberLastRobot(encrypted.settings);
    QCOMPARE(lastRobot()->name, QString("B"));
}

void TestSavedRobots::keepsWhatOnlyAnotherVersionKnows()
{
    saveRobot(robot("A", "a:1"));
    const QString group = onlyGroup();
    QSettings().setValue(group + "/colour", "green");
    QSettings().setValue("robots/newer/how", "by carrier pigeon");
    saveRobot(robot("A", "a:2"));
    renameRobot("A", "B");
    orderRobots({"B"});
    QCOMPARE(names(), QStringList{"B"});
    QCOMPARE(QSettings().value(group + "/colour").toString(), QString("green"));
    QCOMPARE(QSettings().value("robots/newer/how").toString(), QString("by carrier pigeon"));
    QVERIFY(QSettings().value("robots/order").toStringList().contains("newer"));
}

void TestSavedRobots::leavesOutWhatMakesNoSense()
{
    saveRobot(robot("A", "a:1"));
    QSettings store;
    store.setValue("robots/x/name", "No address");
    store.setValue("robots/y/address", "no address at all:::");
    store.setValue("robots/w/name", "By an option");
    store.setValue("robots/w/address", "w:1");
    store.setValue("robots/w/jumpHost", "ssh://-oProxyCommand=x");
    store.setValue("robots/z/name", "A"); // a second one of that name
    store.setValue("robots/z/address", "z:1");
    store.setValue("robots/order", QStringList({"../..", "x", "x", "y"}));
    store.setValue("robots/last", "../../x");
    QCOMPARE(names(), QStringList{"A"});
    QVERIFY(!lastRobot());
}

void TestSavedRobots::boundsWhatAFileSays()
{
    saveRobot(robot("A", "a:1"));
    const QString group = onlyGroup();
    QSettings store;
    store.setValue(group + "/address", "[0:0::1]:1");
    QCOMPARE(savedRobots()[0].settings.addressText(), QString("[::1]:1"));
    store.setValue(group + "/name", QString(5000, 'n') + "\nline");
    store.setValue(group + "/timeout", "99999999");
    store.setValue(group + "/caFile", "ca.pem");
    QCOMPARE(savedRobots()[0].name.size(), longestRobotName);
    QCOMPARE(savedRobots()[0].settings.timeout, 3600000);
    QVERIFY(savedRobots()[0].settings.caFile.isEmpty());
    store.setValue(group + "/timeout", "-7");
    QCOMPARE(savedRobots()[0].settings.timeout, 0);
}

REGISTER_TEST(TestSavedRobots, HostApplication)
#include "tst_saved_robots.moc"
