// SPDX-License-Identifier: MIT
#include "support/alice.h"
#include "support/fake_robot.h"
#include "support/guarded_test.h"
#include "support/patience.h"
#include "support/redis_server.h"
#include "support/register_test.h"
#include "support/robot.h"

#include <QtTest>

#include <chrono>

namespace {

using std::chrono::milliseconds;
using Step = ZoLinkStatus::Step;

std::string problemAt(const std::string& host, int port, const ZoBrokerOptions& options)
{
    return errorOf([&] { ZoBroker::create("TestBroker", host, port, options); });
}

boost::shared_ptr<ZoBroker> begunAt(int port, const ZoBrokerOptions& options)
{
    return ZoBroker::begin("TestBroker", "127.0.0.1", port, options);
}

} // namespace

/// What a broker says that gets no link to its robot.
class TestLinkOpening : public GuardedTest
{
    Q_OBJECT

private slots:
    void aRefusedConnectionIsNamed();
    void anUnknownHostIsNamed();
    void aHostNameIsLookedUp();
    void whatIsNoAddressIsRefused();
    void aSilentServerIsGivenUpInTime();
    void anotherProtocolIsNamed();
    void aRefusedPasswordIsNeverShown();
    void aHostileServerCannotMakeUsShowThePassword();
    void aMissingPasswordIsNamed();
    void userAndPasswordOpenTheLink();
    void aPasswordAloneOpensTheLink();
    void aUserWithoutTheRightToPingHasALink();
    void aServerThatIsNotReadyIsNamed();
    void aServerWithTooManyClientsIsNamed();
    void aLinkThatIsBegunTellsWhenItIsUp();
    void aLinkThatIsBegunTellsWhyItIsNotUp();
    void aLinkThatIsBegunTellsWhatItIsAt_data();
    void aLinkThatIsBegunTellsWhatItIsAt();
    void aLinkThatIsDownIsBegunAnew();
    void aRobotBehindASocketNeedsNoAddress();
    void aSocketThatIsNotThereIsNamed();
    void anUnknownModuleIsNamed();
    void wildTimeoutsAreConfined();
};

void TestLinkOpening::aRefusedConnectionIsNamed()
{
    const DeafPort deaf;
    const std::string error = problemAt("127.0.0.1", deaf.port(), patientOptions());
    QVERIFY2(contains(error, "127.0.0.1:" + std::to_string(deaf.port())), error.c_str());
    QVERIFY2(contains(error, "refused"), error.c_str());
}

void TestLinkOpening::anUnknownHostIsNamed()
{
    const std::string error = problemAt("nowhere.invalid", 6379, patientOptions());
    QVERIFY2(contains(error, "nowhere.invalid:6379: unknown host"), error.c_str());
}

void TestLinkOpening::aHostNameIsLookedUp()
{
    const RedisServer server;
    const auto broker =
        ZoBroker::create("TestBroker", "localhost", server.port(), patientOptions());
    QVERIFY(broker->isConnected());
}

void TestLinkOpening::whatIsNoAddressIsRefused()
{
    QVERIFY(contains(problemAt("", 6379, {}), "neither an address nor a host name"));
    QVERIFY(contains(problemAt("a b", 6379, {}), "neither"));
    QVERIFY(contains(problemAt("[::1]", 6379, {}), "neither"));
    QVERIFY(contains(problemAt(std::string("a\0b", 3), 6379, {}), "neither"));
    QVERIFY(contains(problemAt("127.0.0.1", 0, {}), "port 0"));
    QVERIFY(contains(problemAt("127.0.0.1", 65536, {}), "port 65536"));
    const DeafPort deaf;
    QVERIFY(contains(problemAt("::1", deaf.port(), {}), "[::1]:"));
}

void TestLinkOpening::aSilentServerIsGivenUpInTime()
{
    const FakeRobot robot([](FakeConnection& connection) { connection.waitForEnd(); });
    ZoBrokerOptions options;
    options.connectTimeout = milliseconds(200);
    QElapsedTimer timer;
    timer.start();
    const std::string error = problemAt("127.0.0.1", robot.port(), options);
    QVERIFY2(contains(error, "no connection within 200 ms, while authenticating"), error.c_str());
    QVERIFY2(timer.elapsed() < patience, qPrintable(QString::number(timer.elapsed())));
}

void TestLinkOpening::anotherProtocolIsNamed()
{
    const FakeRobot robot([](FakeConnection& connection) {
        connection.send("HTTP/1.1 400 Bad Request\r\n\r\n");
        connection.waitForEnd();
    });
    const std::string error = problemAt("127.0.0.1", robot.port(), patientOptions());
    QVERIFY2(contains(error, "malformed reply"), error.c_str());
}

void TestLinkOpening::aRefusedPasswordIsNeverShown()
{
    RedisServer::Options access = withAlice();
    access.defaultPassword = "main-secret";
    const RedisServer server(access);
    ZoBrokerOptions options = patientOptions();
    options.password = "hunter22";
    for (const std::string user : {"", "alice", "mallory"}) {
        options.user = user;
        const std::string error = problemAt("127.0.0.1", server.port(), options);
        QVERIFY2(contains(error, "password refused: WRONGPASS"), error.c_str());
        QVERIFY2(!contains(error, options.password), error.c_str());
    }
}

void TestLinkOpening::aHostileServerCannotMakeUsShowThePassword()
{
    const FakeRobot robot([](FakeConnection& connection) {
        const auto words = connection.readCommand();
        connection.send("-ERR " + words.back() + words.back() + " is wrong\r\n");
        connection.readCommand();
        connection.send("-NOAUTH " + words.back() + "\r\n");
        connection.waitForEnd();
    });
    ZoBrokerOptions options = patientOptions();
    options.password = "hunter22";
    const std::string error = problemAt("127.0.0.1", robot.port(), options);
    QVERIFY2(contains(error, "is wrong") && !contains(error, "hunter22"), error.c_str());
}

void TestLinkOpening::aMissingPasswordIsNamed()
{
    RedisServer::Options access;
    access.defaultPassword = "main-secret";
    const RedisServer server(access);
    const std::string error = problemAt("127.0.0.1", server.port(), patientOptions());
    QVERIFY2(contains(error, "NOAUTH"), error.c_str());
}

void TestLinkOpening::userAndPasswordOpenTheLink()
{
    const RedisServer server(withAlice());
    const auto broker = linkTo(server.port(), asAlice());
    QVERIFY(contains(server.command({"CLIENT", "LIST"}), "user=alice"));
}

void TestLinkOpening::aPasswordAloneOpensTheLink()
{
    RedisServer::Options access;
    access.defaultPassword = "main-secret";
    const RedisServer server(access);
    ZoBrokerOptions options = patientOptions();
    options.password = "main-secret";
    QVERIFY(linkTo(server.port(), options)->isConnected());
}

void TestLinkOpening::aUserWithoutTheRightToPingHasALink()
{
    const RedisServer server(withAlice("~* +mget"));
    ZoBrokerOptions options = asAlice();
    options.pingInterval = milliseconds(20);
    const auto broker = linkTo(server.port(), options);
    const auto refusedPings = [&] {
        const QString statistics = QString::fromStdString(server.command({"INFO", "commandstats"}));
        const QString pings = statistics.section("cmdstat_ping:", 1).section("rejected_calls=", 1);
        return pings.section(',', 0, 0).toInt();
    };
    TRY_VERIFY(refusedPings() >= 3);
    QVERIFY(broker->isConnected());
    ZoMemoryProxy memory = memoryOf(broker);
    QCOMPARE(memory.getListData(requestFor({"a"})).getSize(), 1);
}

void TestLinkOpening::aServerThatIsNotReadyIsNamed()
{
    const FakeRobot robot([](FakeConnection& connection) {
        connection.readCommand();
        connection.send("-LOADING the robot wakes up\r\n");
        connection.waitForEnd();
    });
    const std::string error = problemAt("127.0.0.1", robot.port(), patientOptions());
    QVERIFY2(contains(error, "not ready: LOADING the robot wakes up"), error.c_str());
}

void TestLinkOpening::aServerWithTooManyClientsIsNamed()
{
    const RedisServer server;
    const auto first = linkTo(server.port(), patientOptions());
    // The server counts the connection that carries this command, too.
    server.command({"CONFIG", "SET", "maxclients", "1"});
    ZoBrokerOptions options = patientOptions();
    options.password = "hunter22"; // so that a login stands where the server says so
    for (int i = 0; i < 20; ++i) {
        const std::string error = problemAt("127.0.0.1", server.port(), options);
        QVERIFY2(contains(error, "not ready: ERR max number of clients reached"), error.c_str());
    }
}

void TestLinkOpening::aLinkThatIsBegunTellsWhenItIsUp()
{
    const RedisServer server;
    const auto broker = begunAt(server.port(), patientOptions());
    TRY_VERIFY(!broker->linkStatus().opening);
    QVERIFY(broker->isConnected());
    QVERIFY(broker->linkStatus().step == Step::None);
    ZoMemoryProxy memory = memoryOf(broker);
    QCOMPARE(memory.getListData(requestFor({"a"})).getSize(), 1);
}

void TestLinkOpening::aLinkThatIsBegunTellsWhyItIsNotUp()
{
    const DeafPort deaf;
    const auto broker = begunAt(deaf.port(), patientOptions());
    TRY_VERIFY(!broker->linkStatus().opening);
    const ZoLinkStatus status = broker->linkStatus();
    QVERIFY(!status.connected);
    QVERIFY2(contains(status.cause, "refused"), status.cause.c_str());
    QVERIFY(contains(errorOf([] { begunAt(0, {}); }), "port 0"));
}

void TestLinkOpening::aLinkThatIsBegunTellsWhatItIsAt_data()
{
    QTest::addColumn<bool>("tls");
    QTest::addColumn<int>("step");
    QTest::newRow("plain") << false << int(Step::Login);
    QTest::newRow("TLS") << true << int(Step::Tls);
}

// Of a server that says nothing; the test's end is the end of a link that is waiting for it.
void TestLinkOpening::aLinkThatIsBegunTellsWhatItIsAt()
{
    QFETCH(bool, tls);
    QFETCH(int, step);
    const FakeRobot robot([](FakeConnection& connection) { connection.waitForEnd(); });
    ZoBrokerOptions options;
    options.tls = tls;
    options.connectTimeout = std::chrono::hours(1);
    const auto broker = begunAt(robot.port(), options);
    TRY_COMPARE(int(broker->linkStatus().step), step);
    QVERIFY(broker->linkStatus().opening);
}

void TestLinkOpening::aLinkThatIsDownIsBegunAnew()
{
    RedisServer server;
    ZoBrokerOptions options = patientOptions();
    options.reconnectWait = std::chrono::hours(1);
    options.reconnectWaitMax = std::chrono::hours(1);
    const auto broker = linkTo(server.port(), options);
    server.kill();
    TRY_VERIFY(!broker->isConnected());
    server.restart();
    const auto other = begunAt(server.port(), options);
    TRY_VERIFY(other->isConnected());
    QVERIFY(broker->isConnected());
}

void TestLinkOpening::aRobotBehindASocketNeedsNoAddress()
{
    RedisServer server;
    ZoBrokerOptions options = patientOptions();
    options.socketPath = server.socketPath();
    const auto broker = ZoBroker::create("TestBroker", "nowhere.invalid", 1, options);
    ZoMemoryProxy memory = memoryOf(broker);
    memory.setText("Arm", "1");
    QVERIFY(memory.getListData(requestFor({"Arm"}))[0] == ZoValue(1));
    QStringList found;
    QVERIFY(ZoCheck::run({"nowhere.invalid", 1}, options, [&](const ZoCheck::Step& step) {
        found += QString::fromStdString(step.text);
    }));
    QCOMPARE(found[0], QString("left to the other end of the tunnel"));
    QCOMPARE(found[1], QString("the tunnel is there"));
    server.kill();
    TRY_VERIFY(contains(broker->linkStatus().cause, "nowhere.invalid:1"));
    server.restart();
    TRY_VERIFY(broker->isConnected());
}

void TestLinkOpening::aSocketThatIsNotThereIsNamed()
{
    ZoBrokerOptions options = patientOptions();
    options.socketPath = "/nowhere/at/all";
    QVERIFY(contains(problemAt("arm", 6379, options), "arm:6379: No such file"));
    options.socketPath = std::string(200, 'x');
    QVERIFY(contains(problemAt("arm", 6379, options), "too long"));
}

void TestLinkOpening::anUnknownModuleIsNamed()
{
    const RedisServer server;
    const auto broker = linkTo(server.port(), patientOptions());
    QVERIFY(contains(errorOf([&] { broker->getProxy("ZoMotion", 0); }), "ZoMotion"));
    QVERIFY(broker->getProxy("ZoMemory", 0) != broker->getLocalMemory());
}

void TestLinkOpening::wildTimeoutsAreConfined()
{
    const RedisServer server;
    ZoBrokerOptions options;
    options.connectTimeout = milliseconds::max();
    options.exchangeTimeout = milliseconds::max();
    options.keyListTimeout = milliseconds::max();
    options.timeoutPerKey = std::chrono::microseconds::max();
    options.pingInterval = milliseconds::max();
    options.reconnectWait = milliseconds::min();
    const auto broker = linkTo(server.port(), options);
    ZoMemoryProxy memory = memoryOf(broker);
    memory.setText("Arm", "1");
    QVERIFY(memory.getListData(requestFor({"Arm"}))[0] == ZoValue(1));
}

REGISTER_TEST(TestLinkOpening, QCoreApplication)
#include "tst_link_opening.moc"
