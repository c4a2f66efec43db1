// SPDX-License-Identifier: MIT
#include "support/contains.h"
#include "support/guarded_test.h"
#include "support/machine_bench.h"
#include "support/register_test.h"

#include <QtTest>

#include <algorithm>
#include <chrono>

using namespace zo;

namespace {

using std::chrono::hours;
using std::chrono::milliseconds;
using std::chrono::seconds;

ZoBrokerOptions withPassword()
{
    ZoBrokerOptions options;
    options.user = "alice";
    options.password = "secret";
    return options;
}

ZoBrokerOptions overTls()
{
    ZoBrokerOptions options;
    options.tls = true;
    return options;
}

/// A machine whose connection has just greeted.
void greet(MachineBench& bench)
{
    bench.start();
    bench.answerLookUp();
    bench.connect();
    bench.finishWrite();
}

/// The ways into each state that a machine can be in, after `start`.
const std::vector<std::pair<const char*, void (*)(MachineBench&)>> ways = {
    {"looking up", [](MachineBench&) {}},
    {"connecting", [](MachineBench& bench) { bench.answerLookUp(); }},
    {"securing",
     [](MachineBench& bench) {
         bench.machine.reconnect(bench.now, MachineBench::settingsFor(overTls()));
         bench.settle();
         bench.answerLookUp();
         bench.connect();
     }},
    {"greeting",
     [](MachineBench& bench) {
         bench.answerLookUp();
         bench.connect();
     }},
    {"up", [](MachineBench& bench) { bench.goUp(); }},
    {"up and asking",
     [](MachineBench& bench) {
         bench.goUp();
         bench.call("GET");
         bench.call("SET");
     }},
    {"waiting", [](MachineBench& bench) { bench.answerLookUp({}, "unknown host"); }},
    {"refused",
     [](MachineBench& bench) {
         bench.answerLookUp();
         bench.connect();
         bench.receive("-NOAUTH who are you\r\n");
     }},
    {"closed",
     [](MachineBench& bench) {
         bench.machine.disconnect(bench.now);
         bench.settle();
     }},
};

void addWays(const std::vector<std::string>& without = {})
{
    QTest::addColumn<int>("way");
    for (std::size_t i = 0; i < ways.size(); ++i)
        if (std::find(without.begin(), without.end(), ways[i].first) == without.end())
            QTest::newRow(ways[i].first) << static_cast<int>(i);
}

} // namespace

/// How a link comes up, is lost, and comes back, in virtual time.
class TestLinkMachine : public GuardedTest
{
    Q_OBJECT

private slots:
    void itGreetsAndGoesUp();
    void itTellsWhatAnAttemptIsAt();
    void itLogsInBeforeAllElse();
    void aUserWithoutRightsToPingOrNamesHasALink();
    void aRefusedLoginIsFinal_data();
    void aRefusedLoginIsFinal();
    void aRefusedCertificateIsFinal();
    void aServerThatIsNotReadyIsTriedAgain_data();
    void aServerThatIsNotReadyIsTriedAgain();
    void aGreetingThatIsWrittenLateIsWaitedForBeforeACall();
    void reconnectingBeginsAnew_data();
    void reconnectingBeginsAnew();
    void disconnectingEndsEverythingUntilReconnecting_data();
    void disconnectingEndsEverythingUntilReconnecting();
    void whatComesLateIsIgnored();
    void itSleepsWhenThereIsNothingToDo();
    void stoppingEndsEverything_data();
    void stoppingEndsEverything();
    void aDriverThatFailsIsALoss_data();
    void aDriverThatFailsIsALoss();
    void aDriverThatFailsLeavesARefusalFinal();
    void aDriverThatFailsLeavesAClosedLinkClosed();
};

void TestLinkMachine::itGreetsAndGoesUp()
{
    MachineBench bench;
    bench.start();
    QCOMPARE(bench.lookUps, std::vector<int>{1});
    bench.answerLookUp();
    QCOMPARE(bench.connects.size(), std::size_t{1});
    QVERIFY(bench.writes.empty());
    bench.connect();
    QCOMPARE(bench.written(1), std::string("*1\r\n$4\r\nPING\r\n*3\r\n$6\r\nCLIENT\r\n"
                                           "$7\r\nSETNAME\r\n$10\r\nTestBroker\r\n"));
    bench.finishWrite();
    bench.receive("+PONG\r\n+O");
    QVERIFY(!bench.isUp() && bench.told.empty());
    bench.receive("K\r\n");
    QVERIFY(bench.isUp());
    QCOMPARE(bench.told.size(), std::size_t{1});
    QVERIFY(bench.told[0].isUp && bench.told[0].since == bench.now);
}

void TestLinkMachine::itTellsWhatAnAttemptIsAt()
{
    using Step = ZoLinkStatus::Step;
    MachineBench bench(overTls());
    QVERIFY(bench.machine.step() == Step::None);
    bench.start();
    QVERIFY(bench.machine.step() == Step::LookUp);
    bench.answerLookUp();
    QVERIFY(bench.machine.step() == Step::Connection);
    bench.connect();
    QVERIFY(bench.machine.step() == Step::Tls);
    bench.machine.secured(bench.now, bench.newest());
    QVERIFY(bench.machine.step() == Step::Login);
    bench.settle();
    bench.finishWrite();
    bench.receive("+PONG\r\n+OK\r\n");
    QVERIFY(bench.isUp() && bench.machine.step() == Step::None);
    bench.close("gone");
    QVERIFY(bench.machine.step() == Step::None);
}

void TestLinkMachine::itLogsInBeforeAllElse()
{
    MachineBench bench(withPassword());
    greet(bench);
    QCOMPARE(bench.written(1).find("*3\r\n$4\r\nAUTH\r\n$5\r\nalice\r\n$6\r\nsecret\r\n*1"),
             std::size_t{0});
    bench.receive("+OK\r\n+PONG\r\n");
    QVERIFY(!bench.isUp());
    bench.receive("+OK\r\n");
    QVERIFY(bench.isUp());
}

void TestLinkMachine::aUserWithoutRightsToPingOrNamesHasALink()
{
    MachineBench bench;
    greet(bench);
    bench.receive("-NOPERM no ping for you\r\n-NOPERM no name for you\r\n");
    QVERIFY(bench.isUp());
}

void TestLinkMachine::aRefusedLoginIsFinal_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<QString>("cause");
    QTest::newRow("wrong") << QByteArray("-WRONGPASS no\r\n")
                           << "robot at arm:6379: user or password refused: WRONGPASS no";
    QTest::newRow("not needed") << QByteArray("-ERR AUTH called without any password\r\n")
                                << "user or password refused: ERR AUTH called";
    QTest::newRow("needed") << QByteArray("+OK\r\n-NOAUTH first log in\r\n")
                            << "login refused: NOAUTH first log in";
}

void TestLinkMachine::aRefusedLoginIsFinal()
{
    QFETCH(QByteArray, answer);
    QFETCH(QString, cause);
    MachineBench bench(withPassword());
    greet(bench);
    const std::size_t writes = bench.writes.size();
    bench.receive(answer.toStdString());
    QVERIFY(bench.machine.condition().isRefused);
    QVERIFY2(contains(bench.cause(), cause.toStdString()), bench.cause().c_str());
    QVERIFY(bench.isClosed(1));
    QCOMPARE(bench.told.size(), std::size_t{1});
    QVERIFY(bench.told[0].isRefused);

    bench.pass(hours(1));
    QCOMPARE(bench.wakeUps, 0);
    QCOMPARE(bench.lookUps.size(), std::size_t{1});
    QCOMPARE(bench.writes.size(), writes);
    QCOMPARE(bench.end(bench.call("GET")), bench.cause());
}

void TestLinkMachine::aRefusedCertificateIsFinal()
{
    MachineBench bench(overTls());
    bench.start();
    bench.answerLookUp();
    bench.connect();
    QCOMPARE(bench.handshakes, std::vector<ConnectionId>{1});
    QVERIFY(bench.writes.empty());
    bench.machine.refused(bench.now, 1, "not trusted");
    bench.settle();
    QVERIFY(bench.machine.condition().isRefused);
    QVERIFY(contains(bench.cause(), "not trusted"));
    QVERIFY(bench.isClosed(1));
    bench.pass(hours(1));
    QCOMPARE(bench.lookUps.size(), std::size_t{1});
}

void TestLinkMachine::aServerThatIsNotReadyIsTriedAgain_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::newRow("too many clients") << QByteArray("-ERR max number of clients reached\r\n");
    QTest::newRow("loading") << QByteArray("-LOADING the robot wakes up\r\n");
    QTest::newRow("loading at ping") << QByteArray("+OK\r\n-LOADING the robot wakes up\r\n");
    QTest::newRow("another word") << QByteArray("+OK\r\n+HELLO\r\n");
}

void TestLinkMachine::aServerThatIsNotReadyIsTriedAgain()
{
    QFETCH(QByteArray, answer);
    MachineBench bench(withPassword());
    greet(bench);
    bench.receive(answer.toStdString());
    QVERIFY2(contains(bench.cause(), "not ready: "), bench.cause().c_str());
    const QByteArray words = answer.mid(answer.indexOf('-') + 1).split('\r').first();
    QVERIFY2(contains(bench.cause(), words.contains("OK") ? "HELLO" : words.constData()),
             bench.cause().c_str());
    QVERIFY(!bench.machine.condition().isRefused);
    QVERIFY(bench.isClosed(1));
    bench.passToNextAttempt();
    QCOMPARE(bench.lookUps.size(), std::size_t{2});
}

void TestLinkMachine::aGreetingThatIsWrittenLateIsWaitedForBeforeACall()
{
    MachineBench bench;
    bench.start();
    bench.answerLookUp();
    bench.connect();
    bench.receive("+PONG\r\n+OK\r\n");
    QVERIFY(bench.isUp());
    bench.call("GET");
    QVERIFY(!contains(bench.written(1), "GET"));
    bench.finishWrite();
    QVERIFY(contains(bench.written(1), "GET"));
}

void TestLinkMachine::reconnectingBeginsAnew_data()
{
    addWays();
}

void TestLinkMachine::reconnectingBeginsAnew()
{
    QFETCH(int, way);
    MachineBench bench;
    bench.start();
    ways[way].second(bench);
    bench.machine.reconnect(bench.now, MachineBench::settingsFor(withPassword()));
    bench.settle();
    QVERIFY(!bench.isUp() && !bench.machine.condition().isRefused);
    QVERIFY(!bench.machine.condition().isClosed);
    QVERIFY(contains(bench.cause(), "connecting anew"));
    QCOMPARE(bench.closes.size(), bench.connects.size());
    QCOMPARE(bench.problems.size(), bench.sinks.size());
    for (const auto& call : bench.problems)
        QVERIFY(call.second == std::vector<std::string>{bench.cause()});
    bench.answerLookUp();
    bench.connect();
    QVERIFY(contains(bench.written(bench.newest()), "secret"));
    bench.finishWrite();
    bench.receive("+OK\r\n+PONG\r\n+OK\r\n");
    QVERIFY(bench.isUp());
}

void TestLinkMachine::disconnectingEndsEverythingUntilReconnecting_data()
{
    addWays();
}

void TestLinkMachine::disconnectingEndsEverythingUntilReconnecting()
{
    QFETCH(int, way);
    MachineBench bench;
    bench.start();
    ways[way].second(bench);
    bench.machine.disconnect(bench.now);
    bench.settle();
    QVERIFY(!bench.isUp() && bench.machine.condition().isClosed);
    QVERIFY(!bench.machine.condition().isRefused && !bench.machine.condition().isOpening);
    QVERIFY(contains(bench.cause(), "disconnected on request"));
    QCOMPARE(bench.closes.size(), bench.connects.size());
    QCOMPARE(bench.problems.size(), bench.sinks.size());
    QVERIFY(bench.machine.wakeAt() == MachineBench::Time::max());
    QCOMPARE(bench.ends(bench.call("GET")), 1);

    const std::size_t lookUps = bench.lookUps.size();
    bench.answerLookUp();
    bench.machine.woken(bench.now + hours(1));
    bench.settle();
    QCOMPARE(bench.lookUps.size(), lookUps);
    QCOMPARE(bench.closes.size(), bench.connects.size());
    bench.now += hours(1);
    bench.machine.reconnect(bench.now, MachineBench::settingsFor({}));
    bench.settle();
    bench.goUp();
    QVERIFY(bench.isUp() && !bench.machine.condition().isClosed);
}

void TestLinkMachine::whatComesLateIsIgnored()
{
    MachineBench bench;
    bench.startUp();
    bench.close("gone");
    bench.passToNextAttempt();
    bench.goUp();
    const auto call = bench.call("GET");
    for (const ConnectionId connection : {ConnectionId{0}, ConnectionId{1}, ConnectionId{77}}) {
        bench.machine.connected(bench.now, connection);
        bench.machine.secured(bench.now, connection);
        bench.machine.received(bench.now, connection, "+WRONG\r\n");
        bench.machine.written(bench.now, connection);
        bench.machine.closed(bench.now, connection, "late");
        bench.machine.refused(bench.now, connection, "late");
    }
    bench.machine.lookedUp(bench.now, 1, {}, "late");
    bench.machine.lookedUp(bench.now, 2, {MachineBench::address("10.0.0.9")}, "");
    bench.settle();
    QVERIFY(bench.isUp());
    QCOMPARE(bench.connects.size(), std::size_t{2});
    bench.finishWrite();
    bench.receive("+RIGHT\r\n");
    QCOMPARE(bench.answer(call), std::string("RIGHT"));
}

void TestLinkMachine::itSleepsWhenThereIsNothingToDo()
{
    MachineBench idle;
    idle.startUp();
    idle.wakeUps = 0;
    for (int second = 0; second < 3600; ++second) {
        idle.pass(seconds(1));
        idle.finishWrite();
        idle.receive("+PONG\r\n");
    }
    QVERIFY(idle.isUp());
    QVERIFY2(idle.wakeUps <= 3600, qPrintable(QString::number(idle.wakeUps)));
    QVERIFY2(idle.wakeUps >= 3500, qPrintable(QString::number(idle.wakeUps)));

    MachineBench dead;
    dead.start();
    for (const auto end = dead.now + hours(1); dead.now < end; dead.pass(milliseconds(1))) {
        if (!dead.lookUps.empty())
            dead.answerLookUp();
        dead.lookUps.clear();
    }
    // Two for each attempt, which takes 1 s and a wait of 1.5 s on average.
    QVERIFY2(dead.wakeUps <= 3600, qPrintable(QString::number(dead.wakeUps)));
}

void TestLinkMachine::stoppingEndsEverything_data()
{
    addWays();
}

void TestLinkMachine::stoppingEndsEverything()
{
    QFETCH(int, way);
    MachineBench bench;
    bench.start();
    ways[way].second(bench);
    bench.machine.stop(bench.now);
    bench.settle();
    QCOMPARE(bench.closes.size(), bench.connects.size());
    QCOMPARE(bench.problems.size(), bench.sinks.size());
    for (const auto& call : bench.problems)
        QCOMPARE(call.second.size(), std::size_t{1});
    QVERIFY(bench.machine.wakeAt() == MachineBench::Time::max());
    QCOMPARE(bench.ends(bench.call("GET")), 1);

    const std::size_t lookUps = bench.lookUps.size();
    const std::size_t writes = bench.writes.size();
    bench.answerLookUp();
    if (!bench.connects.empty()) {
        bench.connect();
        bench.receive("+PONG\r\n+OK\r\n");
        bench.close("gone");
    }
    bench.machine.reconnect(bench.now, MachineBench::settingsFor({}));
    bench.machine.failed(bench.now);
    bench.machine.woken(bench.now + hours(1));
    bench.settle();
    QCOMPARE(bench.lookUps.size(), lookUps);
    QCOMPARE(bench.writes.size(), writes);
    QCOMPARE(bench.closes.size(), bench.connects.size());
}

void TestLinkMachine::aDriverThatFailsIsALoss_data()
{
    addWays({"refused", "closed"}); // which nothing ends but reconnecting
}

void TestLinkMachine::aDriverThatFailsIsALoss()
{
    QFETCH(int, way);
    MachineBench bench;
    bench.start();
    ways[way].second(bench);
    bench.machine.failed(bench.now);
    bench.settle();
    QVERIFY(!bench.isUp());
    QVERIFY(contains(bench.cause(), "out of memory"));
    QCOMPARE(bench.closes.size(), bench.connects.size());
    QCOMPARE(bench.problems.size(), bench.sinks.size());
    for (const auto& call : bench.problems)
        QCOMPARE(call.second.size(), std::size_t{1});
    const std::size_t connects = bench.connects.size();
    while (bench.connects.size() == connects) {
        bench.pass(milliseconds(10));
        bench.answerLookUp();
    }
    bench.comeUp();
    QVERIFY(bench.isUp());
}

void TestLinkMachine::aDriverThatFailsLeavesARefusalFinal()
{
    MachineBench bench(withPassword());
    greet(bench);
    bench.receive("-WRONGPASS no\r\n");
    const std::string cause = bench.cause();
    bench.machine.failed(bench.now);
    bench.settle();
    QVERIFY(bench.machine.condition().isRefused);
    QCOMPARE(bench.cause(), cause);
    QCOMPARE(bench.closes.size(), std::size_t{1});
    bench.pass(hours(1));
    QCOMPARE(bench.lookUps.size(), std::size_t{1});

    bench.machine.reconnect(bench.now, MachineBench::settingsFor({}));
    bench.settle();
    bench.goUp();
    QVERIFY(bench.isUp());
}

void TestLinkMachine::aDriverThatFailsLeavesAClosedLinkClosed()
{
    MachineBench bench;
    bench.startUp();
    bench.machine.disconnect(bench.now);
    bench.machine.failed(bench.now);
    bench.settle();
    QVERIFY(bench.machine.condition().isClosed);
    QVERIFY(contains(bench.cause(), "disconnected on request"));
    QVERIFY(bench.machine.wakeAt() == MachineBench::Time::max());
}

REGISTER_TEST(TestLinkMachine, QCoreApplication)
#include "tst_link_machine.moc"
