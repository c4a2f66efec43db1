// SPDX-License-Identifier: MIT
#include "support/contains.h"
#include "support/guarded_test.h"
#include "support/machine_bench.h"
#include "support/register_test.h"

#include <QtTest>

#include <chrono>
#include <set>

using namespace zo;

namespace {

using std::chrono::hours;
using std::chrono::milliseconds;
using std::chrono::minutes;
using std::chrono::nanoseconds;
using std::chrono::seconds;

constexpr nanoseconds moment{1};

ZoBrokerOptions withPassword()
{
    ZoBrokerOptions options;
    options.user = "alice";
    options.password = "secret";
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

/// Lets the attempt under way fail, and returns how long the machine waits for the next.
nanoseconds waitAfterFailure(MachineBench& bench)
{
    bench.answerLookUp({}, "unknown host");
    const auto before = bench.now;
    bench.passToNextAttempt();
    return bench.now - before;
}

/// The ways into each state that a machine can be in, after `start`.
const std::vector<std::pair<const char*, void (*)(MachineBench&)>> ways = {
    {"looking up", [](MachineBench&) {}},
    {"connecting", [](MachineBench& bench) { bench.answerLookUp(); }},
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
};

void addWays()
{
    QTest::addColumn<int>("way");
    for (std::size_t i = 0; i < ways.size(); ++i)
        QTest::newRow(ways[i].first) << static_cast<int>(i);
}

} // namespace

/// How a link comes up, is lost, and comes back, in virtual time.
class TestLinkMachine : public GuardedTest
{
    Q_OBJECT

private slots:
    void itGreetsAndGoesUp();
    void itLogsInBeforeAllElse();
    void aUserWithoutRightsToPingOrNamesHasALink();
    void aRefusedLoginIsFinal_data();
    void aRefusedLoginIsFinal();
    void aRefusedCertificateIsFinal();
    void aServerThatIsNotReadyIsTriedAgain_data();
    void aServerThatIsNotReadyIsTriedAgain();
    void aGreetingThatIsWrittenLateEndsLate();
    void reconnectingBeginsAnew_data();
    void reconnectingBeginsAnew();
    void familiesTakeTurns();
    void theNextAddressStartsAfterAWhile();
    void theNextAddressStartsAtOnceWhenOneFails();
    void allAddressesHaveTheirTurnInAnAttempt();
    void theFirstConnectionWins();
    void anAttemptFailsWithItsLastAddress();
    void anAttemptEndsInTimeInEachStage();
    void aHugeListOfAddressesIsCut();
    void whatComesLateIsIgnored();
    void waitsAreRandomAndDouble();
    void theFirstWaitAfterALossIsRandomToo();
    void aLinkThatStoodBeginsTheWaitsAnew();
    void aServerThatGreetsAndHangsUpIsNotBesieged();
    void sinceTellsOfTheLossAndNotOfAttempts();
    void attemptsShareALookUpThatHangs();
    void aLookUpThatNeverEndsIsGivenUpOn();
    void theAnswerOfAnOlderLookUpIsUsedItsFailureIsNot();
    void anAnswerThatComesTooLateServesTheNextAttempt();
    void itSleepsWhenThereIsNothingToDo();
    void stoppingEndsEverything_data();
    void stoppingEndsEverything();
    void aDriverThatFailsIsALoss_data();
    void aDriverThatFailsIsALoss();
    void theSameEventsGiveTheSameActions();
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
    ZoBrokerOptions options;
    options.tls = true;
    MachineBench bench(options);
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

void TestLinkMachine::aGreetingThatIsWrittenLateEndsLate()
{
    MachineBench bench;
    bench.start();
    bench.answerLookUp();
    bench.connect();
    bench.receive("+PONG\r\n+OK\r\n");
    QVERIFY(!bench.isUp());
    bench.finishWrite();
    QVERIFY(bench.isUp());
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
    QVERIFY(contains(bench.cause(), "connecting anew"));
    QCOMPARE(bench.closes.size(), bench.connects.size());
    for (const auto& call : bench.problems)
        QVERIFY(call.second == std::vector<std::string>{bench.cause()});
    bench.answerLookUp();
    bench.connect();
    QVERIFY(contains(bench.written(bench.newest()), "secret"));
    bench.finishWrite();
    bench.receive("+OK\r\n+PONG\r\n+OK\r\n");
    QVERIFY(bench.isUp());
}

void TestLinkMachine::familiesTakeTurns()
{
    MachineBench bench;
    bench.start();
    const std::vector<const char*> texts = {"fd00::1", "fd00::2", "fd00::3", "10.0.0.1",
                                            "10.0.0.2"};
    std::vector<LinkAddress> addresses;
    addresses.reserve(texts.size());
    for (const char* text : texts)
        addresses.push_back(MachineBench::address(text));
    bench.answerLookUp(addresses);
    for (std::size_t i = 1; i < texts.size(); ++i)
        bench.close("refused");
    std::vector<std::string> order;
    for (const auto& connect : bench.connects)
        order.push_back(connect.address.address().to_string());
    QCOMPARE(order,
             (std::vector<std::string>{"fd00::1", "10.0.0.1", "fd00::2", "10.0.0.2", "fd00::3"}));
}

void TestLinkMachine::theNextAddressStartsAfterAWhile()
{
    MachineBench bench;
    bench.start();
    const auto address = MachineBench::address("10.0.0.1");
    bench.answerLookUp({address, address, address});
    QCOMPARE(bench.connects.size(), std::size_t{1});
    bench.pass(milliseconds(250) - moment);
    QCOMPARE(bench.connects.size(), std::size_t{1});
    bench.pass(moment);
    QCOMPARE(bench.connects.size(), std::size_t{2});
    bench.pass(milliseconds(250));
    QCOMPARE(bench.connects.size(), std::size_t{3});
    QVERIFY(bench.closes.empty());
}

void TestLinkMachine::theNextAddressStartsAtOnceWhenOneFails()
{
    MachineBench bench;
    bench.start();
    const auto address = MachineBench::address("10.0.0.1");
    bench.answerLookUp({address, address, address});
    bench.pass(milliseconds(100));
    bench.close("refused");
    QCOMPARE(bench.connects.size(), std::size_t{2});
    // That one has the course for itself as long as any.
    bench.pass(milliseconds(250) - moment);
    QCOMPARE(bench.connects.size(), std::size_t{2});
    bench.pass(moment);
    QCOMPARE(bench.connects.size(), std::size_t{3});
}

void TestLinkMachine::allAddressesHaveTheirTurnInAnAttempt()
{
    ZoBrokerOptions options;
    options.connectTimeout = milliseconds(200);
    MachineBench bench(options);
    bench.start();
    bench.pass(milliseconds(80));
    bench.answerLookUp(std::vector<LinkAddress>(4, MachineBench::address("10.0.0.1")));
    bench.pass(milliseconds(30) - moment);
    QCOMPARE(bench.connects.size(), std::size_t{1});
    bench.pass(milliseconds(90) - milliseconds(30) + moment);
    QCOMPARE(bench.connects.size(), std::size_t{4});
    QVERIFY2(bench.told.empty(), "the last one must have time of its own");
}

void TestLinkMachine::theFirstConnectionWins()
{
    MachineBench bench;
    bench.start();
    bench.answerLookUp({MachineBench::address("fd00::1"), MachineBench::address("10.0.0.1"),
                        MachineBench::address("10.0.0.2")});
    bench.pass(milliseconds(300));
    QCOMPARE(bench.connects.size(), std::size_t{2});
    bench.connect();
    QCOMPARE(bench.closes, std::vector<ConnectionId>{1});
    QVERIFY(bench.written(1).empty() && !bench.written(2).empty());
    bench.machine.connected(bench.now, 1);
    bench.machine.closed(bench.now, 1, "too late");
    bench.settle();
    bench.finishWrite();
    bench.receive("+PONG\r\n+OK\r\n");
    QVERIFY(bench.isUp());
    bench.pass(milliseconds(900));
    QCOMPARE(bench.connects.size(), std::size_t{2});
}

void TestLinkMachine::anAttemptFailsWithItsLastAddress()
{
    MachineBench bench;
    bench.start();
    bench.answerLookUp({MachineBench::address("fd00::1"), MachineBench::address("10.0.0.1")});
    bench.pass(milliseconds(300));
    bench.machine.closed(bench.now, 1, "unreachable");
    bench.settle();
    QVERIFY(bench.told.empty());
    bench.machine.closed(bench.now, 2, "refused");
    bench.settle();
    QCOMPARE(bench.cause(), std::string("robot at arm:6379: refused"));
    QVERIFY(bench.isClosed(1) && bench.isClosed(2));
}

void TestLinkMachine::anAttemptEndsInTimeInEachStage()
{
    ZoBrokerOptions options;
    options.tls = true;
    const std::vector<std::string> stages = {"looking up the host", "connecting", "setting up TLS",
                                             "authenticating"};
    for (std::size_t reached = 0; reached < stages.size(); ++reached) {
        MachineBench bench(options);
        bench.start();
        if (reached > 0)
            bench.answerLookUp();
        if (reached > 1)
            bench.connect();
        if (reached > 2) {
            bench.machine.secured(bench.now, 1);
            bench.settle();
        }
        bench.pass(seconds(1) - moment);
        QVERIFY(bench.told.empty());
        bench.pass(moment);
        QCOMPARE(bench.cause(),
                 "robot at arm:6379: no connection within 1000 ms, while " + stages[reached]);
        QCOMPARE(bench.closes.size(), bench.connects.size());
    }
}

void TestLinkMachine::aHugeListOfAddressesIsCut()
{
    MachineBench bench;
    bench.start();
    bench.answerLookUp(std::vector<LinkAddress>(10000, MachineBench::address("10.0.0.1")));
    while (bench.told.empty())
        bench.close("refused");
    QCOMPARE(bench.connects.size(), std::size_t{16});
    QCOMPARE(bench.closes.size(), std::size_t{16});
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

void TestLinkMachine::waitsAreRandomAndDouble()
{
    std::vector<nanoseconds> longest(8, nanoseconds(0));
    for (std::uint32_t seed = 0; seed < 500; ++seed) {
        MachineBench bench({}, seed);
        bench.start();
        milliseconds bound(100);
        for (auto& wait : longest) {
            const nanoseconds waited = waitAfterFailure(bench);
            QVERIFY(waited <= bound);
            wait = std::max(wait, waited);
            bound = std::min(2 * bound, milliseconds(3000));
        }
    }
    milliseconds bound(100);
    for (const nanoseconds wait : longest) {
        QVERIFY2(wait > bound * 9 / 10, qPrintable(QString::number(wait.count())));
        bound = std::min(2 * bound, milliseconds(3000));
    }
}

void TestLinkMachine::theFirstWaitAfterALossIsRandomToo()
{
    std::set<nanoseconds> waits;
    for (std::uint32_t seed = 0; seed < 100; ++seed) {
        MachineBench bench({}, seed);
        bench.startUp();
        bench.pass(milliseconds(900));
        bench.close("gone");
        const auto before = bench.now;
        bench.passToNextAttempt();
        waits.insert(bench.now - before);
    }
    QVERIFY(waits.size() > 90);
    QVERIFY(*waits.begin() < milliseconds(10));
    QVERIFY(*waits.rbegin() > milliseconds(90) && *waits.rbegin() <= milliseconds(100));
}

void TestLinkMachine::aLinkThatStoodBeginsTheWaitsAnew()
{
    for (const bool isSteady : {false, true}) {
        nanoseconds longest(0);
        for (std::uint32_t seed = 0; seed < 200; ++seed) {
            MachineBench bench({}, seed);
            bench.start();
            for (int i = 0; i < 6; ++i)
                waitAfterFailure(bench);
            bench.goUp();
            bench.pass(isSteady ? milliseconds(1000) : milliseconds(999));
            bench.close("gone");
            const auto before = bench.now;
            bench.passToNextAttempt();
            longest = std::max(longest, bench.now - before);
        }
        QVERIFY(isSteady ? longest <= milliseconds(100) : longest > milliseconds(2500));
    }
}

void TestLinkMachine::aServerThatGreetsAndHangsUpIsNotBesieged()
{
    MachineBench bench;
    bench.startUp();
    bench.pass(milliseconds(999));
    bench.finishWrite();
    const auto end = bench.now + minutes(10);
    while (bench.now < end) {
        bench.close("gone");
        bench.passToNextAttempt();
        bench.goUp();
    }
    // Waits of 1.5 s on average, after a few short ones: some 400 attempts.
    QVERIFY2(bench.lookUps.size() < 600, qPrintable(QString::number(bench.lookUps.size())));
    QVERIFY2(bench.lookUps.size() > 200, qPrintable(QString::number(bench.lookUps.size())));
}

void TestLinkMachine::sinceTellsOfTheLossAndNotOfAttempts()
{
    MachineBench bench;
    bench.startUp();
    const auto up = bench.now;
    bench.pass(milliseconds(500));
    QVERIFY(bench.machine.condition().since == up);
    bench.close("gone");
    const auto lost = bench.now;
    for (int i = 0; i < 5; ++i) {
        bench.passToNextAttempt();
        bench.answerLookUp({}, "unknown host " + std::to_string(i));
        QVERIFY(bench.told.back().since == lost);
        QVERIFY(contains(*bench.told.back().cause, std::to_string(i)));
    }
    bench.passToNextAttempt();
    bench.goUp();
    QVERIFY(bench.told.back().since == bench.now);
    QVERIFY(!bench.told.back().cause);
}

void TestLinkMachine::attemptsShareALookUpThatHangs()
{
    MachineBench bench;
    bench.start();
    bench.pass(milliseconds(9900));
    QCOMPARE(bench.lookUps.size(), std::size_t{1});
    QVERIFY2(bench.told.size() >= 3, "attempts must have ended meanwhile");
    while (contains(bench.cause(), "looking up") && bench.connects.empty()) {
        bench.answerLookUp(); // is of use when it comes during an attempt
        bench.pass(milliseconds(10));
    }
    QVERIFY(!bench.connects.empty());
}

void TestLinkMachine::aLookUpThatNeverEndsIsGivenUpOn()
{
    MachineBench bench;
    bench.start();
    bench.pass(seconds(20));
    QCOMPARE(bench.lookUps.size(), std::size_t{2});
    bench.pass(hours(1));
    // Longer and longer waits, up to ten minutes: 10, 20, ... s.
    QVERIFY(bench.lookUps.size() >= 10 && bench.lookUps.size() <= 14);
    bench.passToNextAttempt();
    bench.goUp();
    QVERIFY(bench.isUp());
}

void TestLinkMachine::theAnswerOfAnOlderLookUpIsUsedItsFailureIsNot()
{
    for (const bool isFound : {false, true}) {
        MachineBench bench;
        bench.start();
        bench.passToNextAttempt();
        QCOMPARE(bench.lookUps.size(), std::size_t{2});
        const std::size_t told = bench.told.size();
        if (isFound)
            bench.machine.lookedUp(bench.now, 1, {MachineBench::address("10.0.0.1")}, "");
        else
            bench.machine.lookedUp(bench.now, 1, {}, "unknown host");
        bench.settle();
        QCOMPARE(bench.connects.size(), std::size_t(isFound ? 1 : 0));
        QCOMPARE(bench.told.size(), told);
    }
}

void TestLinkMachine::anAnswerThatComesTooLateServesTheNextAttempt()
{
    MachineBench bench;
    bench.start();
    bench.pass(seconds(1));
    QVERIFY(contains(bench.cause(), "looking up"));
    bench.answerLookUp();
    QVERIFY(bench.connects.empty());
    bench.pass(milliseconds(100));
    QCOMPARE(bench.connects.size(), std::size_t{1});
    bench.close("refused");
    bench.passToNextAttempt(); // asks anew: addresses change
    QCOMPARE(bench.lookUps.size(), std::size_t{2});
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
    addWays();
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
    for (const auto& call : bench.problems)
        QCOMPARE(call.second.size(), std::size_t{1});
    const std::size_t connects = bench.connects.size();
    while (bench.connects.size() == connects) {
        bench.pass(milliseconds(10));
        bench.answerLookUp();
    }
    bench.connect();
    bench.finishWrite();
    bench.receive("+PONG\r\n+OK\r\n");
    QVERIFY(bench.isUp());
}

void TestLinkMachine::theSameEventsGiveTheSameActions()
{
    const auto trace = [](std::uint32_t seed) {
        MachineBench bench({}, seed);
        bench.start();
        std::vector<nanoseconds> waits;
        waits.reserve(20);
        for (int i = 0; i < 20; ++i)
            waits.push_back(waitAfterFailure(bench));
        return waits;
    };
    QVERIFY(trace(7) == trace(7));
    QVERIFY(trace(7) != trace(8));
}

REGISTER_TEST(TestLinkMachine, QCoreApplication)
#include "tst_link_machine.moc"
