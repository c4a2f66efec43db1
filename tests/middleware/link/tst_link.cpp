// SPDX-License-Identifier: MIT
#include "support/alice.h"
#include "support/fake_robot.h"
#include "support/growth.h"
#include "support/guarded_test.h"
#include "support/patience.h"
#include "support/redis_server.h"
#include "support/register_test.h"
#include "support/robot.h"
#include "support/watched_thread.h"

#include <QDir>
#include <QFile>
#include <QtTest>

#include <atomic>
#include <future>

namespace {

using std::chrono::milliseconds;

/// Processor time of the threads but this one, in seconds.
double secondsOfOthers()
{
    return processorSeconds() - secondsOfThisThread();
}

uint threadCount()
{
    const QStringList threads =
        QDir("/proc/self/task").entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    return static_cast<uint>(threads.size());
}

/// The descriptors of this process that are sockets.
QStringList openSockets()
{
    QStringList sockets;
    for (const QString& name :
         QDir("/proc/self/fd").entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System)) {
        if (QFile::symLinkTarget("/proc/self/fd/" + name).contains("socket:"))
            sockets += name;
    }
    return sockets;
}

} // namespace

/// A link in the course of time: lost, found again, shared, and ended.
class TestLink : public GuardedTest
{
    Q_OBJECT

private slots:
    void aKilledServerFailsCallsAtOnceUntilItIsBack();
    void aStoppedServerFailsTheCallAtItsDeadline();
    void anIdleLinkNoticesAStoppedServer();
    void anIdleLinkNoticesAKilledServer();
    void waitersFailTogetherWhenTheLinkIsLost();
    void aServerThatClosesAtOnceIsNotBesieged();
    void failedAttemptsDoNotRenewTheTimeOfTheLoss();
    void anIdleLinkLeavesTheProcessorAlone();
    void aProxyOutlivesItsBroker();
    void itsThreadEndsWithTheLastProxy();
    void itEndsWhileAnotherThreadWaits();
    void itEndsWhileConnecting();
    void aRefusedLoginIsFinalUntilReconnected();
    void optionsThatCannotBeUsedLeaveTheLinkAsItIs();
    void theServerListsItByItsBrokersName();
    void noProgramThatIsStartedInheritsASocket();
    void itTellsHowItIsDoing();
    void itsStatusMayBeAskedForFromAnyThread();
};

void TestLink::aKilledServerFailsCallsAtOnceUntilItIsBack()
{
    RedisServer server;
    const auto broker = linkTo(server.port(), quietOptions());
    ZoMemoryProxy memory = memoryOf(broker);
    QVERIFY(broker->isConnected());
    QVERIFY(broker->linkStatus().cause.empty());
    server.kill();
    const ZoValue request = requestFor({"Arm"});
    const std::string first = errorOf([&] { memory.getListData(request); });
    const std::string where = "127.0.0.1:" + std::to_string(server.port());
    QVERIFY2(contains(first, where), first.c_str());
    QVERIFY(!broker->isConnected());

    qint64 quickest = std::numeric_limits<qint64>::max();
    for (int i = 0; i < 100; ++i) {
        QElapsedTimer timer;
        timer.start();
        const std::string error = errorOf([&] { memory.getListData(request); });
        quickest = std::min(quickest, timer.nsecsElapsed());
        QVERIFY2(contains(error, where) && contains(error, "no link since"), error.c_str());
    }
    QVERIFY2(quickest < 1000000, qPrintable(QString::number(quickest)));
    QVERIFY(contains(broker->linkStatus().cause, where));

    server.restart();
    TRY_VERIFY(broker->isConnected());
    QCOMPARE(memory.getListData(request).getSize(), 1);
}

void TestLink::aStoppedServerFailsTheCallAtItsDeadline()
{
    RedisServer server;
    ZoBrokerOptions options = quietOptions();
    options.exchangeTimeout = ZoBrokerOptions().exchangeTimeout;
    const auto broker = linkTo(server.port(), options);
    ZoMemoryProxy memory = memoryOf(broker);
    server.stop();
    QElapsedTimer timer;
    timer.start();
    const std::string error = errorOf([&] { memory.getListData(requestFor({"Arm"})); });
    const qint64 elapsed = timer.elapsed();
    QVERIFY2(contains(error, "no reply to MGET within 250 ms"), error.c_str());
    QVERIFY2(elapsed >= 250 && elapsed < patience, qPrintable(QString::number(elapsed)));
    TRY_VERIFY(!broker->isConnected());
    server.resume();
    TRY_VERIFY(broker->isConnected());
    TRY_VERIFY(errorOf([&] { memory.setText("Arm", "1"); }).empty());
}

void TestLink::anIdleLinkNoticesAStoppedServer()
{
    RedisServer server;
    ZoBrokerOptions options = patientOptions();
    options.exchangeTimeout = options.pingInterval = milliseconds(50);
    const auto broker = linkTo(server.port(), options);
    server.stop();
    TRY_VERIFY(!broker->isConnected());
    const ZoLinkStatus status = broker->linkStatus();
    QVERIFY2(contains(status.cause, "PING") || contains(status.cause, "authenticating"),
             status.cause.c_str());
    server.resume();
    TRY_VERIFY(broker->isConnected());
    QVERIFY(broker->linkStatus().since > status.since);
}

void TestLink::anIdleLinkNoticesAKilledServer()
{
    RedisServer server;
    const auto broker = linkTo(server.port(), quietOptions());
    server.kill();
    TRY_VERIFY(!broker->isConnected());
}

void TestLink::waitersFailTogetherWhenTheLinkIsLost()
{
    RedisServer server;
    const auto broker = linkTo(server.port(), quietOptions());
    server.stop();
    std::atomic<int> failed{0};
    std::vector<WatchedThread> threads;
    threads.reserve(20);
    for (int i = 0; i < 20; ++i) {
        threads.emplace_back([&failed, memory = memoryOf(broker)]() mutable {
            failed += !errorOf([&] { memory.getListData(requestFor({"Arm"})); }).empty();
        });
    }
    for (const WatchedThread& thread : threads)
        QVERIFY(thread.waits());
    QCOMPARE(failed.load(), 0);
    server.kill();
    for (const WatchedThread& thread : threads)
        QVERIFY(thread.ends());
    QCOMPARE(failed.load(), 20);
}

void TestLink::aServerThatClosesAtOnceIsNotBesieged()
{
    std::atomic<int> connections{0};
    const FakeRobot robot([&](FakeConnection& connection) {
        ++connections;
        connection.greet();
        if (connection.number() == 0)
            connection.readCommand();
    });
    ZoBrokerOptions options = quietOptions();
    options.reconnectWait = options.reconnectWaitMax = milliseconds(500);
    const auto broker = linkTo(robot.port(), options);
    QElapsedTimer timer;
    timer.start();
    errorOf([&] { memoryOf(broker).setText("Arm", "1"); });
    TRY_VERIFY(connections >= 7);
    // Six random waits of up to 500 ms: one time in ten million all together are shorter.
    QVERIFY2(timer.elapsed() >= 100, qPrintable(QString::number(timer.elapsed())));
}

void TestLink::failedAttemptsDoNotRenewTheTimeOfTheLoss()
{
    std::atomic<int> connections{0};
    const FakeRobot robot([&](FakeConnection& connection) {
        ++connections;
        if (connection.number() == 0)
            connection.greet();
        else
            connection.send("-LOADING\r\n");
        connection.readCommand();
    });
    ZoBrokerOptions options = quietOptions();
    options.reconnectWait = options.reconnectWaitMax = milliseconds(1);
    const auto broker = linkTo(robot.port(), options);
    errorOf([&] { memoryOf(broker).setText("Arm", "1"); });
    TRY_VERIFY(contains(broker->linkStatus().cause, "LOADING"));
    const auto since = broker->linkStatus().since;
    const int before = connections;
    TRY_VERIFY(connections >= before + 5);
    QVERIFY(broker->linkStatus().since == since);
}

void TestLink::anIdleLinkLeavesTheProcessorAlone()
{
    const RedisServer server;
    const auto broker = linkTo(server.port(), quietOptions());
    constexpr double ownWork = 0.3;
    const double before = secondsOfOthers();
    for (const double end = secondsOfThisThread() + ownWork; secondsOfThisThread() < end;)
        continue;
    // A link that spins would have got as much of the processors as this thread.
    const double used = secondsOfOthers() - before;
    QVERIFY2(used < 0.1 * ownWork, qPrintable(QString::number(used)));
    QVERIFY(broker->isConnected());
}

void TestLink::aProxyOutlivesItsBroker()
{
    RedisServer server;
    auto broker = linkTo(server.port(), quietOptions());
    ZoMemoryProxy memory = memoryOf(broker);
    const boost::weak_ptr<ZoBroker> watched(broker);
    broker.reset();
    QVERIFY(watched.expired());
    memory.setText("Arm", "1");
    QVERIFY(memory.getListData(requestFor({"Arm"}))[0] == ZoValue(1));
    server.restart();
    TRY_VERIFY(errorOf([&] { memory.setText("Arm", "2"); }).empty());
}

void TestLink::itsThreadEndsWithTheLastProxy()
{
    const RedisServer server;
    const uint before = threadCount();
    {
        auto broker = linkTo(server.port(), quietOptions());
        const ZoMemoryProxy memory = memoryOf(broker);
        const ZoMemoryProxy another = memoryOf(broker);
        QCOMPARE(threadCount(), before + 1);
        broker.reset();
        QCOMPARE(threadCount(), before + 1);
    }
    TRY_COMPARE(threadCount(), before);
}

void TestLink::itEndsWhileAnotherThreadWaits()
{
    std::promise<void> isAsked;
    const FakeRobot robot([&](FakeConnection& connection) {
        connection.greet();
        connection.readCommand();
        isAsked.set_value();
        connection.waitForEnd();
    });
    auto broker = linkTo(robot.port(), quietOptions(milliseconds(500)));
    std::string error;
    WatchedThread waiting([&error, memory = memoryOf(broker)]() mutable {
        error = errorOf([&] { memory.setText("Arm", "1"); });
    });
    QVERIFY(isReady(isAsked.get_future()));
    broker.reset(); // the last link but the waiting thread's
    waiting.join();
    QVERIFY2(contains(error, "no reply to SET"), error.c_str());
}

void TestLink::itEndsWhileConnecting()
{
    std::promise<void> isTryingAgain;
    const FakeRobot robot([&](FakeConnection& connection) {
        if (connection.number() == 0) {
            connection.greet();
            connection.readCommand();
            return;
        }
        connection.readCommand();
        isTryingAgain.set_value();
        connection.waitForEnd();
    });
    ZoBrokerOptions options = quietOptions();
    options.connectTimeout = std::chrono::minutes(10);
    auto broker = linkTo(robot.port(), options);
    errorOf([&] { memoryOf(broker).setText("Arm", "1"); });
    QVERIFY(isReady(isTryingAgain.get_future()));
    QElapsedTimer timer;
    timer.start();
    broker.reset();
    QVERIFY2(timer.elapsed() < patience, qPrintable(QString::number(timer.elapsed())));
}

void TestLink::aRefusedLoginIsFinalUntilReconnected()
{
    std::atomic<int> vainAttempts{0};
    const FakeRobot hasty([&](FakeConnection& connection) {
        if (connection.number() > 0) {
            ++vainAttempts;
            return;
        }
        connection.greet();
        connection.waitForEnd();
    });
    RedisServer server(withAlice());
    ZoBrokerOptions options = asAlice(quietOptions());
    options.reconnectWaitMax = milliseconds(1);
    const auto broker = linkTo(server.port(), options);
    ZoMemoryProxy memory = memoryOf(broker);
    server.command({"ACL", "SETUSER", "alice", "resetpass", ">other"});
    server.command({"CLIENT", "KILL", "USER", "alice"});
    TRY_VERIFY(broker->linkStatus().refused);
    const std::string refusal = errorOf([&] { memory.setText("Arm", "1"); });
    QVERIFY2(contains(refusal, "user or password refused: WRONGPASS"), refusal.c_str());
    // That it makes no attempt has no signal to wait for: another link makes many meanwhile.
    ZoBrokerOptions tireless = quietOptions();
    tireless.reconnectWaitMax = milliseconds(1);
    const auto other = linkTo(hasty.port(), tireless);
    other->reconnect(tireless);
    TRY_VERIFY(vainAttempts >= 100);
    const QString statistics = QString::fromStdString(server.command({"INFO", "commandstats"}));
    const QString logins = statistics.section("cmdstat_auth:", 1).section("\r\n", 0, 0);
    QVERIFY2(logins.endsWith("failed_calls=1"), qPrintable(logins));

    options.password = "other";
    broker->reconnect(options);
    QVERIFY(!broker->linkStatus().refused);
    TRY_VERIFY(broker->isConnected());
    memory.setText("Arm", "1");
}

void TestLink::optionsThatCannotBeUsedLeaveTheLinkAsItIs()
{
    const RedisServer server;
    const auto broker = linkTo(server.port(), quietOptions());
    ZoBrokerOptions options = quietOptions();
    options.tls = true;
    options.tlsCaFile = "/missing.pem";
    const std::string error = errorOf([&] { broker->reconnect(options); });
    QVERIFY2(contains(error, "/missing.pem"), error.c_str());
    QVERIFY(broker->isConnected());
    memoryOf(broker).setText("Arm", "1");
}

void TestLink::theServerListsItByItsBrokersName()
{
    const RedisServer server;
    auto plain = linkTo(server.port(), quietOptions());
    QVERIFY(contains(server.command({"CLIENT", "LIST"}), " name=TestBroker "));
    plain.reset(); // with it, the next one would share its link and name
    const auto odd =
        ZoBroker::create("an \xC3\xA9norme\n", "127.0.0.1", server.port(), quietOptions());
    QVERIFY(contains(server.command({"CLIENT", "LIST"}), " name=an---norme- "));
}

void TestLink::noProgramThatIsStartedInheritsASocket()
{
    const RedisServer server;
    // Whoever runs the test may have left it some.
    const QStringList others = openSockets();
    const auto broker = linkTo(server.port(), quietOptions());
    constexpr uint closedInPrograms = 02000000; // O_CLOEXEC, as the kernel writes it
    int sockets = 0;
    for (const QString& name : openSockets()) {
        QFile info("/proc/self/fdinfo/" + name);
        if (others.contains(name) || !info.open(QIODevice::ReadOnly))
            continue;
        ++sockets;
        const QString flags = QString(info.readAll()).section("flags:", 1).section('\n', 0, 0);
        QVERIFY2(flags.trimmed().toUInt(nullptr, 8) & closedInPrograms, qPrintable(name));
    }
    QVERIFY(sockets >= 1);
}

void TestLink::itTellsHowItIsDoing()
{
    FakeRobot robot([](FakeConnection& connection) {
        connection.greet();
        for (;;) {
            const std::string word = connection.readCommand().at(0);
            if (word == "MGET")
                connection.send("*1\r\n$1000\r\n" + std::string(1000, '7') + "\r\n");
            else
                connection.send(word == "SET" ? "+OK\r\n" : "*2\r\n$1\r\n0\r\n*0\r\n");
        }
    });
    const auto broker = linkTo(robot.port(), quietOptions());
    const ZoLinkStatus before = broker->linkStatus();
    QVERIFY(before.roundTrip && before.roundTrip->count() > 0); // of the greeting
    QVERIFY(!before.answerAge);
    QCOMPARE(before.answersPerSecond, 0.0);
    QVERIFY(before.following == ZoLinkStatus::Following::None);

    ZoMemoryProxy memory = memoryOf(broker);
    memory.setData("Arm", 1);
    memory.getDataListName();
    QVERIFY(!broker->linkStatus().answerAge); // which are no lists of values
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < 10; ++i)
        memory.getListData(requestFor({"Arm"}));
    const ZoLinkStatus status = broker->linkStatus();
    const auto time = std::chrono::steady_clock::now() - start;
    QVERIFY(status.answerAge && *status.answerAge <= std::chrono::ceil<milliseconds>(time));
    if (time < milliseconds(2000)) { // else some of it may be forgotten already
        QVERIFY(status.answersPerSecond >= 10 / 2.25 && status.answersPerSecond <= 10 / 2.0);
        QVERIFY(status.bytesReceivedPerSecond >= 10 * 1000 / 2.25);
        QVERIFY(status.bytesSentPerSecond >= 10 * 20 / 2.25);
        QVERIFY(status.bytesSentPerSecond < 1000);
    }
    TRY_COMPARE(broker->linkStatus().bytesReceivedPerSecond, 0.0);
    QCOMPARE(broker->linkStatus().answersPerSecond, 0.0);
    QVERIFY(*broker->linkStatus().answerAge >= milliseconds(2000));
}

void TestLink::itsStatusMayBeAskedForFromAnyThread()
{
    const RedisServer server;
    const auto broker = linkTo(server.port(), patientOptions());
    std::atomic<bool> isOver{false};
    auto asking = std::async(std::launch::async, [&] {
        bool isWhole = true;
        while (!isOver) {
            const ZoLinkStatus status = broker->linkStatus();
            isWhole = isWhole && status.connected && status.answersPerSecond >= 0 &&
                      (!status.answerAge || status.answerAge->count() >= 0);
        }
        return isWhole;
    });
    ZoMemoryProxy memory = memoryOf(broker);
    for (int i = 0; i < 500; ++i)
        QCOMPARE(memory.getListData(requestFor({"Arm"})).getSize(), 1);
    isOver = true;
    QVERIFY(asking.get());
}

REGISTER_TEST(TestLink, QCoreApplication)
#include "tst_link.moc"
