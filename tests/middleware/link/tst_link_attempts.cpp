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

/// Lets the attempt under way fail, and returns how long the machine waits for the next.
nanoseconds waitAfterFailure(MachineBench& bench)
{
    bench.answerLookUp({}, "unknown host");
    const auto before = bench.now;
    bench.passToNextAttempt();
    return bench.now - before;
}

} // namespace

/// The attempts at a link: names, addresses, and the waits between them, in virtual time.
class TestLinkAttempts : public GuardedTest
{
    Q_OBJECT

private slots:
    void familiesTakeTurns();
    void theNextAddressStartsAfterAWhile();
    void theNextAddressStartsAtOnceWhenOneFails();
    void allAddressesHaveTheirTurnInAnAttempt();
    void theFirstConnectionWins();
    void anAttemptFailsWithItsLastAddress();
    void anAttemptEndsInTimeInEachStage();
    void aHugeListOfAddressesIsCut();
    void waitsAreRandomAndDouble();
    void theFirstWaitAfterALossIsRandomToo();
    void aLinkThatStoodBeginsTheWaitsAnew();
    void aServerThatGreetsAndHangsUpIsNotBesieged();
    void sinceTellsOfTheLossAndNotOfAttempts();
    void attemptsShareALookUpThatHangs();
    void aLookUpThatNeverEndsIsGivenUpOn();
    void theAnswerOfAnOlderLookUpIsUsedItsFailureIsNot();
    void anAnswerThatComesTooLateServesTheNextAttempt();
    void theSameEventsGiveTheSameActions();
};

void TestLinkAttempts::familiesTakeTurns()
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
    order.reserve(bench.connects.size());
    for (const auto& connect : bench.connects)
        order.push_back(connect.address.address().to_string());
    QCOMPARE(order,
             (std::vector<std::string>{"fd00::1", "10.0.0.1", "fd00::2", "10.0.0.2", "fd00::3"}));
}

void TestLinkAttempts::theNextAddressStartsAfterAWhile()
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

void TestLinkAttempts::theNextAddressStartsAtOnceWhenOneFails()
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

void TestLinkAttempts::allAddressesHaveTheirTurnInAnAttempt()
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

void TestLinkAttempts::theFirstConnectionWins()
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

void TestLinkAttempts::anAttemptFailsWithItsLastAddress()
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

void TestLinkAttempts::anAttemptEndsInTimeInEachStage()
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

void TestLinkAttempts::aHugeListOfAddressesIsCut()
{
    MachineBench bench;
    bench.start();
    bench.answerLookUp(std::vector<LinkAddress>(10000, MachineBench::address("10.0.0.1")));
    while (bench.told.empty())
        bench.close("refused");
    QCOMPARE(bench.connects.size(), std::size_t{16});
    QCOMPARE(bench.closes.size(), std::size_t{16});
}

void TestLinkAttempts::waitsAreRandomAndDouble()
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

void TestLinkAttempts::theFirstWaitAfterALossIsRandomToo()
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

void TestLinkAttempts::aLinkThatStoodBeginsTheWaitsAnew()
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

void TestLinkAttempts::aServerThatGreetsAndHangsUpIsNotBesieged()
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

void TestLinkAttempts::sinceTellsOfTheLossAndNotOfAttempts()
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

void TestLinkAttempts::attemptsShareALookUpThatHangs()
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

void TestLinkAttempts::aLookUpThatNeverEndsIsGivenUpOn()
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

void TestLinkAttempts::theAnswerOfAnOlderLookUpIsUsedItsFailureIsNot()
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

void TestLinkAttempts::anAnswerThatComesTooLateServesTheNextAttempt()
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

void TestLinkAttempts::theSameEventsGiveTheSameActions()
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

REGISTER_TEST(TestLinkAttempts, QCoreApplication)
#include "tst_link_attempts.moc"
