// SPDX-License-Identifier: MIT
#include "support/connect_dialog_bench.h"
#include "support/guarded_test.h"
#include "support/host.h"
#include "support/register_test.h"

#include <QSpinBox>
#include <QtTest>

namespace {

/// The places of what the addresses may lead to.
constexpr int server = 0;
constexpr int replica = 1;
constexpr int sentinels = 2;

ConnectionSettings nodesAt(const std::string& addresses)
{
    ConnectionSettings settings;
    settings.setAddresses(ZoAddress::listFromText(addresses));
    return settings;
}

} // namespace

/// Robots in a cluster, and those whose servers sentinels watch, in the connect dialog.
class TestNodesField : public GuardedTest, private ConnectDialogBench
{
    Q_OBJECT

private slots:
    void init() { setUp(); }
    void cleanup()
    {
        tearDown();
        GuardedTest::cleanup();
    }
    void takesSeveralAddresses();
    void showsWhatTheCommandLineSays();
    void showsAReplica();
    void asksForTheNameThatSentinelsHaveForAServer();
    void sentinelsNeedAName();
    void aNameAmongSentinelsWithoutAnAddressIsForAny();
    void anotherAddressIsAnotherRobot();
    void oneServerIsReachedByWayOfAHost();
    void aSavedRobotKeepsItsNodes();

private:
    void choose(int place);
    void pressConnect() { QTest::mouseClick(connectButton(), Qt::LeftButton); }
    QString kind() const { return field<QComboBox>("nodes")->currentText(); }
};

/// With the keyboard, what the addresses lead to.
void TestNodesField::choose(int place)
{
    auto* box = field<QComboBox>("nodes");
    box->setFocus();
    QTest::keyClick(box, Qt::Key_Home);
    for (int i = 0; i < place; ++i)
        QTest::keyClick(box, Qt::Key_Down);
}

void TestNodesField::takesSeveralAddresses()
{
    type("port", "7000");
    type("host", "Arm, leg:7001, [0::1]");
    pressConnect();
    QCOMPARE(asked().addressesText(), QString("arm:7000,leg:7001,[::1]:7000"));
    QVERIFY(!asked().other.replica && asked().other.sentinel.empty());
    QVERIFY(field<QSpinBox>("port")->isEnabled());
    type("host", "arm:1,leg:2");
    QVERIFY(!field<QSpinBox>("port")->isEnabled());
    pressConnect();
    QCOMPARE(asked().addressesText(), QString("arm:1,leg:2"));
}

void TestNodesField::showsWhatTheCommandLineSays()
{
    ConnectionSettings settings = nodesAt("arm:7000,[::1]:7001");
    settings.other.sentinel = "arms";
    open({}, settings);
    QCOMPARE(field<QComboBox>("host")->currentText(), QString("arm:7000,[::1]:7001"));
    QVERIFY(field<QLineEdit>("sentinel")->isVisible());
    QCOMPARE(field<QLineEdit>("sentinel")->text(), QString("arms"));
    pressConnect();
    QVERIFY(isSameAddress(asked(), settings));
}

void TestNodesField::showsAReplica()
{
    ConnectionSettings settings = nodesAt("arm:7000,leg:7000");
    settings.other.replica = true;
    open({}, settings);
    QVERIFY2(kind().startsWith("a replica"), qPrintable(kind()));
    pressConnect();
    QVERIFY(asked().other.replica);
    choose(server);
    pressConnect();
    QVERIFY(!asked().other.replica);
    choose(replica);
    pressConnect();
    QVERIFY(asked().other.replica);
}

void TestNodesField::asksForTheNameThatSentinelsHaveForAServer()
{
    QVERIFY(!field<QLineEdit>("sentinel")->isVisible());
    choose(sentinels);
    QVERIFY(field<QLineEdit>("sentinel")->isVisible());
    type("sentinel", " arms ");
    pressConnect();
    QCOMPARE(asked().other.sentinel, std::string("arms"));
    choose(server);
    QVERIFY(!field<QLineEdit>("sentinel")->isVisible());
    pressConnect();
    QVERIFY(asked().other.sentinel.empty());
}

void TestNodesField::sentinelsNeedAName()
{
    const QSignalSpy refused(fDialog.data(), &ConnectDialog::refused);
    choose(sentinels);
    pressConnect();
    QVERIFY(fRequests->isEmpty());
    QCOMPARE(refused.size(), 1);
    QVERIFY(refused.at(0).at(0).toString().startsWith("Sentinels watch several servers"));
}

void TestNodesField::aNameAmongSentinelsWithoutAnAddressIsForAny()
{
    ConnectionSettings settings;
    settings.other.sentinel = "arms";
    open({}, settings);
    type("host", "watch");
    pressConnect();
    QCOMPARE(asked().other.sentinel, std::string("arms"));
}

void TestNodesField::anotherAddressIsAnotherRobot()
{
    ConnectionSettings settings = nodesAt("arm:7000,leg:7000");
    settings.password = "secret";
    open({}, settings);
    pressConnect();
    QCOMPARE(asked().password, std::string("secret"));
    type("host", "arm:7000");
    pressConnect();
    QVERIFY(asked().other.furtherAddresses.empty());
    QVERIFY(asked().password.empty());
}

void TestNodesField::oneServerIsReachedByWayOfAHost()
{
    open({}, nodesAt("arm:7000,leg:7000"));
    const QSignalSpy refused(fDialog.data(), &ConnectDialog::refused);
    type("ssh", "gate");
    pressConnect();
    QVERIFY(fRequests->isEmpty());
    QCOMPARE(refused.size(), 1);
    QVERIFY(refused.at(0).at(0).toString().startsWith("ssh leads to one server"));
    type("host", "leg");
    pressConnect();
    QCOMPARE(asked().jumpHost, QString("gate"));
}

void TestNodesField::aSavedRobotKeepsItsNodes()
{
    ConnectionSettings settings = nodesAt("watch:26379,guard:26379");
    settings.other.sentinel = "arms";
    open({settings, nodesAt("one")});
    auto* box = field<QComboBox>("host");
    QCOMPARE(box->itemText(0), QString("arms at watch:26379,guard:26379"));
    box->setFocus();
    QTest::keyClick(box, Qt::Key_Down);
    pressConnect();
    QVERIFY(isSameAddress(asked(), settings));
    QTest::keyClick(box, Qt::Key_Down);
    QVERIFY(!field<QLineEdit>("sentinel")->isVisible());
    pressConnect();
    QCOMPARE(asked().addressesText(), QString("one:6379"));
}

REGISTER_TEST(TestNodesField, HostApplication)
#include "tst_nodes_field.moc"
