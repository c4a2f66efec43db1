// SPDX-License-Identifier: MIT
#include "support/alice.h"
#include "support/fake_robot.h"
#include "support/guarded_test.h"
#include "support/redis_server.h"
#include "support/register_test.h"
#include "support/robot.h"
#include "support/watched_thread.h"

#include <QtTest>

#include <atomic>
#include <future>
#include <vector>

Q_DECLARE_METATYPE(ZoBrokerOptions)

namespace {

/// Options of a link that does not try again by itself while a test runs.
ZoBrokerOptions withoutAttempts(ZoBrokerOptions options)
{
    options.reconnectWait = std::chrono::hours(20);
    options.reconnectWaitMax = std::chrono::hours(20);
    return options;
}

} // namespace

/// Brokers of one process with the same robot and options: they share one link.
class TestSharedLink : public GuardedTest
{
    Q_OBJECT

private slots:
    void oneConnectionServesThemAll();
    void whatLeadsElsewhereOrOtherwiseHasItsOwn_data();
    void whatLeadsElsewhereOrOtherwiseHasItsOwn();
    void itLastsUntilTheLastBrokerAndProxyIsGone();
    void aNewBrokerTriesALinkThatIsDownAtOnce();
    void aNewBrokerTriesARefusedLoginAnew();
    void aNewBrokerIsToldWhyALinkStaysDown();
    void allGoAlongWhenOneReconnects();
    void oneAttemptServesAllThatReconnect();
    void aLinkThatIsDisconnectedStaysDownForAll();
    void aNewBrokerOpensALinkThatWasDisconnected();
    void brokersTellWhetherTheyShareALink();
    void brokersMadeAtTheSameTimeWaitForOneAttempt();
    void nobodyWaitsForAnotherRobotsLink();
};

void TestSharedLink::oneConnectionServesThemAll()
{
    const RedisServer server;
    const auto one = linkTo(server.port(), quietOptions());
    const auto other = ZoBroker::create("Other", "127.0.0.1", server.port(), quietOptions());
    QCOMPARE(server.clients(), 1);
    memoryOf(one).setText("Arm", "1");
    QVERIFY(memoryOf(other).getListData(requestFor({"Arm"}))[0] == ZoValue(1));
    QCOMPARE(other->getName(), std::string("Other"));
    QVERIFY(contains(server.command({"CLIENT", "LIST"}), " name=TestBroker "));
}

void TestSharedLink::whatLeadsElsewhereOrOtherwiseHasItsOwn_data()
{
    QTest::addColumn<QString>("host");
    QTest::addColumn<ZoBrokerOptions>("options");
    ZoBrokerOptions options = quietOptions();
    QTest::newRow("another name of the host") << "localhost" << options;
    options.follow = true;
    QTest::newRow("following") << "127.0.0.1" << options;
    options = quietOptions();
    options.notices = false;
    QTest::newRow("no notices") << "127.0.0.1" << options;
    QTest::newRow("another user") << "127.0.0.1" << asAlice(quietOptions());
    options = quietOptions();
    options.prefix = "robot7/";
    QTest::newRow("another prefix") << "127.0.0.1" << options;
    options = quietOptions();
    options.connectTimeout += std::chrono::milliseconds(1);
    QTest::newRow("another limit") << "127.0.0.1" << options;
    options = quietOptions();
    options.timeoutPerKey += std::chrono::microseconds(1);
    QTest::newRow("another limit for each key") << "127.0.0.1" << options;
}

void TestSharedLink::whatLeadsElsewhereOrOtherwiseHasItsOwn()
{
    QFETCH(const QString, host);
    QFETCH(const ZoBrokerOptions, options);
    const RedisServer server(withAlice());
    const auto one = linkTo(server.port(), quietOptions());
    const auto other = ZoBroker::create("TestBroker", host.toStdString(), server.port(), options);
    QCOMPARE(server.clients(), 2);
}

void TestSharedLink::itLastsUntilTheLastBrokerAndProxyIsGone()
{
    const RedisServer server;
    auto one = linkTo(server.port(), quietOptions());
    auto other = linkTo(server.port(), quietOptions());
    auto proxy = other->getProxy("ZoMemory", 0);
    one.reset();
    other.reset();
    QVERIFY(proxy->call("getDataListName", ZoValue()).getSize() == 0);
    const auto late = linkTo(server.port(), quietOptions());
    QCOMPARE(server.clients(), 1);
    proxy.reset();
    QVERIFY(late->isConnected());
    QCOMPARE(server.clients(), 1);
}

void TestSharedLink::aNewBrokerTriesALinkThatIsDownAtOnce()
{
    RedisServer server;
    const ZoBrokerOptions options = withoutAttempts(quietOptions());
    const auto one = linkTo(server.port(), options);
    server.restart();
    TRY_VERIFY(!one->isConnected());
    const auto other = linkTo(server.port(), options);
    QVERIFY(one->isConnected());
    QCOMPARE(server.clients(), 1);
}

void TestSharedLink::aNewBrokerTriesARefusedLoginAnew()
{
    const RedisServer server(withAlice());
    const ZoBrokerOptions options = asAlice(quietOptions());
    const auto one = linkTo(server.port(), options);
    server.command({"ACL", "SETUSER", "alice", "resetpass", ">other"});
    server.command({"CLIENT", "KILL", "USER", "alice"});
    TRY_VERIFY(one->linkStatus().refused);
    QVERIFY(contains(errorOf([&] { linkTo(server.port(), options); }), "WRONGPASS"));
    server.command({"ACL", "SETUSER", "alice", "resetpass", ">secret"});
    const auto other = linkTo(server.port(), options);
    QVERIFY(one->isConnected());
}

void TestSharedLink::aNewBrokerIsToldWhyALinkStaysDown()
{
    RedisServer server;
    const ZoBrokerOptions options = withoutAttempts(quietOptions());
    const auto one = linkTo(server.port(), options);
    server.kill();
    TRY_VERIFY(!one->isConnected());
    const std::string error = errorOf([&] { linkTo(server.port(), options); });
    QVERIFY2(contains(error, "Connection refused"), error.c_str());
}

void TestSharedLink::allGoAlongWhenOneReconnects()
{
    const RedisServer server(withAlice());
    const auto one = linkTo(server.port(), quietOptions());
    const auto other = linkTo(server.port(), quietOptions());
    one->reconnect(asAlice(quietOptions()));
    TRY_VERIFY(other->isConnected());
    TRY_COMPARE(server.clients(), 1);
    QVERIFY(contains(server.command({"CLIENT", "LIST"}), "user=alice"));
    const auto asItIsNow = linkTo(server.port(), asAlice(quietOptions()));
    QCOMPARE(server.clients(), 1);
    const auto asItWas = linkTo(server.port(), quietOptions());
    QCOMPARE(server.clients(), 2);
}

void TestSharedLink::oneAttemptServesAllThatReconnect()
{
    std::promise<void> answer;
    std::atomic<int> connections{0};
    const FakeRobot robot([&](FakeConnection& connection) {
        if (++connections == 2)
            answer.get_future().wait();
        connection.greet();
        connection.waitForEnd();
    });
    std::vector<boost::shared_ptr<ZoBroker>> brokers;
    brokers.reserve(20);
    for (int i = 0; i < 20; ++i)
        brokers.push_back(linkTo(robot.port(), quietOptions()));
    for (const auto& broker : brokers)
        broker->reconnect(quietOptions());
    answer.set_value();
    TRY_VERIFY(brokers[0]->isConnected());
    QCOMPARE(connections.load(), 2);
}

void TestSharedLink::aLinkThatIsDisconnectedStaysDownForAll()
{
    const RedisServer server;
    const auto one = linkTo(server.port(), quietOptions());
    const auto other = linkTo(server.port(), quietOptions());
    const auto proxy = other->getProxy("ZoMemory", 0);
    one->disconnect();
    QVERIFY(one->linkStatus().closed && other->linkStatus().closed);
    QVERIFY(!other->isConnected() && !other->linkStatus().refused);
    QVERIFY(contains(other->linkStatus().cause, "disconnected on request"));
    QVERIFY(contains(errorOf([&] { proxy->call("getDataListName", ZoValue()); }),
                     "disconnected on request"));
    TRY_COMPARE(server.clients(), 0);
    other->reconnect(quietOptions());
    QVERIFY(!one->linkStatus().closed);
    TRY_VERIFY(one->isConnected());
    QCOMPARE(server.clients(), 1);
}

void TestSharedLink::aNewBrokerOpensALinkThatWasDisconnected()
{
    const RedisServer server;
    const auto one = linkTo(server.port(), quietOptions());
    one->disconnect();
    const auto other = linkTo(server.port(), quietOptions());
    QVERIFY(one->isConnected());
    QVERIFY(!one->linkStatus().closed);
    QCOMPARE(server.clients(), 1);
}

void TestSharedLink::brokersTellWhetherTheyShareALink()
{
    const RedisServer server;
    const auto one = linkTo(server.port(), quietOptions());
    const auto other = linkTo(server.port(), quietOptions());
    ZoBrokerOptions options = quietOptions();
    options.follow = !options.follow;
    const auto apart = linkTo(server.port(), options);
    QVERIFY(one->linkIdentity());
    QVERIFY(one->linkIdentity() == other->linkIdentity());
    QVERIFY(one->linkIdentity() != apart->linkIdentity());
    QVERIFY(!ZoBroker::create("hub")->linkIdentity());
    ZoBroker::create("hub")->disconnect(); // nothing to be closed
}

void TestSharedLink::brokersMadeAtTheSameTimeWaitForOneAttempt()
{
    std::promise<void> greet;
    std::atomic<int> connections{0};
    const FakeRobot robot([&](FakeConnection& connection) {
        ++connections;
        greet.get_future().wait();
        connection.greet();
        connection.waitForEnd();
    });
    std::vector<WatchedThread> threads;
    threads.reserve(3);
    for (int i = 0; i < 3; ++i)
        threads.emplace_back([&] { linkTo(robot.port(), quietOptions()); });
    for (const WatchedThread& thread : threads)
        QVERIFY(thread.waits());
    greet.set_value();
    for (WatchedThread& thread : threads)
        thread.join();
    QCOMPARE(connections.load(), 1);
}

void TestSharedLink::nobodyWaitsForAnotherRobotsLink()
{
    std::promise<void> greet;
    const FakeRobot slow([&](FakeConnection& connection) {
        greet.get_future().wait();
        connection.greet();
        connection.waitForEnd();
    });
    WatchedThread waiter([&] { linkTo(slow.port(), quietOptions()); });
    QVERIFY(waiter.waits());
    const RedisServer server;
    QVERIFY(linkTo(server.port(), quietOptions())->isConnected());
    QVERIFY(waiter.waits());
    greet.set_value();
    waiter.join();
}

REGISTER_TEST(TestSharedLink, QCoreApplication)
#include "tst_shared_link.moc"
