// SPDX-License-Identifier: MIT
#include "support/contains.h"
#include "support/guarded_test.h"
#include "support/machine_bench.h"
#include "support/register_test.h"

#include <link/hash_slot.h>

#include <QtTest>

using namespace zo;

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

const std::string greeted = "+PONG\r\n+OK\r\n";
const std::string wantsLogin = "-NOAUTH Authentication required.\r\n";
const std::string served = "*1\r\n$-1\r\n";
const std::string noCluster = "-ERR This instance has cluster support disabled\r\n";

ZoBrokerOptions behind(const std::string& prefix, const std::string& further = {})
{
    ZoBrokerOptions options;
    options.prefix = prefix;
    if (!further.empty())
        options.furtherAddresses = ZoAddress::listFromText(further);
    return options;
}

ZoBrokerOptions behindSentinel()
{
    ZoBrokerOptions options;
    options.sentinel = "arms";
    options.password = "secret";
    return options;
}

std::string text(const std::string& word)
{
    return "$" + std::to_string(word.size()) + "\r\n" + word + "\r\n";
}

/// The reply to CLUSTER SLOTS of a cluster in which `nodes` have all slots.
std::string table(const std::string& nodes)
{
    std::string list;
    int count = 0;
    for (const ZoAddress& node : ZoAddress::listFromText(nodes)) {
        list +=
            "*4\r\n" + text(node.host) + ":" + std::to_string(node.port) + "\r\n$2\r\nid\r\n*0\r\n";
        ++count;
    }
    return "*1\r\n*" + std::to_string(2 + count) + "\r\n:0\r\n:16383\r\n" + list;
}

std::string moved(const std::string& node)
{
    return "-MOVED 14010 " + node + "\r\n";
}

/// A machine that follows owners, on the bench.
struct SearchBench : MachineBench
{
    using MachineBench::MachineBench;

    /// The node of the newest connection.
    std::string at() const { return connects.back().node->toText(); }
    void say(const std::string& bytes)
    {
        finishWrite();
        receive(bytes);
    }
    /// The newest connection is made, and says so.
    void greetAndSay(const std::string& bytes)
    {
        connect();
        say(greeted + bytes);
    }
    /// From a look-up that is under way to a node that is the owner.
    void comeUpAtOwner(const std::string& nodes = "arm:6379,leg:7001")
    {
        answerLookUp();
        greetAndSay(served + table(nodes));
    }
};

} // namespace

/// How a link finds the node that has its robot's keys, in virtual time.
class TestOwnerSearch : public GuardedTest
{
    Q_OBJECT

private slots:
    void aServerWithoutAClusterIsTakenAsItIs();
    void withoutATagItIsAskedWhetherThereAreOtherNodes();
    void withoutATagANodeOfAClusterIsRefusedAtOnce();
    void itGoesToTheNodeThatANodeNames();
    void aNodeNamesTheHostItIsAtByNone();
    void aNodeThatIsNamedAndCannotBeOneIsSaid_data();
    void aNodeThatIsNamedAndCannotBeOneIsSaid();
    void eachNodeHasItsOwnTime();
    void nodesThatSendEachOtherAroundAreNotBesieged();
    void aCallThatFindsTheKeysMovedLeadsThereAtOnce();
    void oneThatIsSentAwayAgainAndAgainWaits();
    void keysThatAreJustMovingAreTheirCallersAffair_data();
    void keysThatAreJustMovingAreTheirCallersAffair();
    void aNodeOfAClusterWithoutATagIsRefused_data();
    void aNodeOfAClusterWithoutATagIsRefused();
    void aClusterThatIsDownIsAskedElsewhere();
    void whenTheOwnerIsGoneTheOthersAreAsked();
    void theWaitsAreShortWhileOthersAnswer();
    void deadAddressesAreSkipped();
    void aNameThatIsNotFoundIsSkipped();
    void allDeadIsSaidOfTheLastOne();
    void whenANodeRefusesTheOthersAreAsked_data();
    void whenANodeRefusesTheOthersAreAsked();
    void whenAllRefuseThatIsTheEnd();
    void oneThatRefusesIsTheEndWhenTheOthersAreDead();
    void oneThatRefusesIsNotTheEndWhenAnotherIsNotReady();
    void anOwnerThatRefusesAloneIsTriedAgain();
    void aServerThatASentinelNamesMayRefuse();
    void aBadTableEndsTheAttempt_data();
    void aBadTableEndsTheAttempt();
    void odderNodesOfATableAreSkipped();
    void aReplicaIsReadWhereThereIsOne();
    void theOwnerIsReadWhenAReplicaIsNotThere();
    void aSentinelIsAskedAgainAfterEachLoss();
    void whatASentinelSaysIsChecked_data();
    void whatASentinelSaysIsChecked();
    void aServerThatHasLostItsPlaceIsLeft();
    void aServerThatLosesItsPlaceIsLeft();
    void aNodeThatFellSilentIsAskedLast();
    void aNodeThatFellSilentHasATurnAllTheSame();
    void aClusterThatStaysDownIsAskedLessAndLess();
    void soManyLookUpsAreUnderWayAtMost();
    void oneHostWithManyAddressesLeavesOthersTheirTurn();
};

void TestOwnerSearch::aServerWithoutAClusterIsTakenAsItIs()
{
    SearchBench bench(behind("{robot7}/"));
    bench.start();
    bench.answerLookUp();
    bench.connect();
    QVERIFY(contains(bench.written(1), "MGET\r\n$9\r\n{robot7}/\r\n"));
    bench.say(greeted + served);
    QVERIFY2(!bench.isUp(), "the answer is not all there");
    bench.receive(noCluster);
    QVERIFY(bench.isUp());
    QVERIFY(!bench.told.back().isInCluster);
}

void TestOwnerSearch::withoutATagItIsAskedWhetherThereAreOtherNodes()
{
    SearchBench bench(behind("robot7/"));
    bench.start();
    bench.answerLookUp();
    bench.connect();
    QVERIFY(contains(bench.written(1), "KEYSLOT\r\n$7\r\nrobot7/\r\n"));
    QVERIFY(!contains(bench.written(1), "MGET"));
    bench.say(greeted + noCluster);
    QVERIFY(bench.isUp());
}

void TestOwnerSearch::withoutATagANodeOfAClusterIsRefusedAtOnce()
{
    SearchBench bench(behind("robot7/", "leg:7001"));
    bench.start();
    bench.answerLookUps();
    bench.greetAndSay(":" + std::to_string(hashSlotOf("robot7/")) + "\r\n");
    QVERIFY(bench.told.back().isRefused);
    QCOMPARE(bench.cause(),
             std::string("robot at arm:6379: this is a node of a cluster: a robot's keys stay "
                         "together there when their prefix has a tag in braces; write it as "
                         "--prefix '{robot7}/'"));
    bench.pass(std::chrono::hours(1));
    QCOMPARE(bench.connects.size(), std::size_t{1});
}

void TestOwnerSearch::itGoesToTheNodeThatANodeNames()
{
    SearchBench bench(behind("{robot7}/"));
    bench.start();
    bench.answerLookUp();
    bench.greetAndSay(moved("10.0.0.9:7002") + table("10.0.0.9:7002"));
    QVERIFY(bench.isClosed(1) && !bench.isUp());
    QVERIFY2(bench.told.empty(), "it is one attempt");
    QCOMPARE(bench.lookUpNodes.back()->toText(), std::string("10.0.0.9:7002"));
    bench.answerLookUp({MachineBench::address("10.0.0.9")});
    QCOMPARE(bench.at(), std::string("10.0.0.9:7002"));
    bench.greetAndSay(served + table("10.0.0.9:7002"));
    QVERIFY(bench.isUp() && bench.told.back().isInCluster);
    QCOMPARE(bench.told.back().node->toText(), std::string("10.0.0.9:7002"));
    bench.close("gone");
    QCOMPARE(bench.cause(), std::string("robot at arm:6379: node 10.0.0.9:7002: gone"));
}

void TestOwnerSearch::aNodeNamesTheHostItIsAtByNone()
{
    SearchBench bench(behind("{robot7}/"));
    bench.start();
    bench.answerLookUp();
    bench.greetAndSay(moved(":7002") + noCluster);
    QCOMPARE(bench.lookUpNodes.back()->toText(), std::string("arm:7002"));
}

void TestOwnerSearch::aNodeThatIsNamedAndCannotBeOneIsSaid_data()
{
    QTest::addColumn<QByteArray>("node");
    QTest::newRow("one that is not known") << QByteArray("?:7001");
    QTest::newRow("no port") << QByteArray("leg");
    QTest::newRow("a port that is none") << QByteArray("leg:0");
    QTest::newRow("no ASCII") << QByteArray("caf\xc3\xa9:7001");
    QTest::newRow("an escape") << QByteArray("\x1b[2J:7001");
}

void TestOwnerSearch::aNodeThatIsNamedAndCannotBeOneIsSaid()
{
    QFETCH(QByteArray, node);
    SearchBench bench(behind("{robot7}/"));
    bench.start();
    bench.answerLookUp();
    bench.greetAndSay(moved(node.toStdString()) + noCluster);
    QVERIFY(!bench.isUp());
    QVERIFY2(contains(bench.cause(), "it names no node that could be one: MOVED"),
             bench.cause().c_str());
    QCOMPARE(bench.lookUps.size(), std::size_t{1});
}

void TestOwnerSearch::eachNodeHasItsOwnTime()
{
    SearchBench bench(behind("{robot7}/"));
    bench.start();
    bench.pass(milliseconds(900));
    bench.answerLookUp();
    bench.greetAndSay(moved("10.0.0.9:7002") + noCluster);
    bench.pass(milliseconds(900));
    QVERIFY(bench.told.empty());
    bench.pass(milliseconds(100));
    QCOMPARE(bench.cause(),
             std::string("robot at arm:6379: node 10.0.0.9:7002: no connection within "
                         "1000 ms, while looking up the host"));
}

void TestOwnerSearch::nodesThatSendEachOtherAroundAreNotBesieged()
{
    SearchBench bench(behind("{robot7}/"));
    bench.start();
    const auto end = bench.now + seconds(60);
    while (bench.now < end) {
        bench.answerLookUp();
        bench.greetAndSay(moved(bench.at() == "leg:1" ? "arm:6379" : "leg:1") + noCluster);
        if (!bench.told.empty())
            QVERIFY2(contains(bench.cause(), "send each other around: 5 were asked"),
                     bench.cause().c_str());
        if (bench.machine.step() == ZoLinkStatus::Step::None)
            bench.passToNextAttempt();
    }
    // Attempts of five, with waits of a quarter of a second on average between.
    QVERIFY2(bench.connects.size() < 5 * 400, qPrintable(QString::number(bench.connects.size())));
}

void TestOwnerSearch::aCallThatFindsTheKeysMovedLeadsThereAtOnce()
{
    SearchBench bench(behind("{robot7}/"));
    bench.start();
    bench.comeUpAtOwner();
    const auto first = bench.call("GET");
    const auto second = bench.call("SET");
    bench.say("+fine\r\n" + moved("10.0.0.9:7002"));
    QVERIFY(!bench.isUp());
    QVERIFY2(contains(bench.end(second), "keys are elsewhere: MOVED"), bench.end(second).c_str());
    QCOMPARE(bench.end(first), std::string("answered")); // by the one that had the keys then
    QCOMPARE(bench.answer(first), std::string("fine"));
    const auto before = bench.now;
    bench.passToNextAttempt();
    QVERIFY(bench.now - before <= std::chrono::nanoseconds(1));
    QCOMPARE(bench.lookUpNodes[1]->toText(), std::string("10.0.0.9:7002"));
}

void TestOwnerSearch::oneThatIsSentAwayAgainAndAgainWaits()
{
    SearchBench bench(behind("{robot7}/"));
    bench.start();
    const auto end = bench.now + seconds(60);
    while (bench.now < end) {
        bench.comeUpAtOwner("arm:6379");
        bench.call("GET");
        bench.say(moved("arm:6379"));
        bench.passToNextAttempt();
    }
    QVERIFY2(bench.connects.size() < 400, qPrintable(QString::number(bench.connects.size())));
    QVERIFY2(bench.connects.size() > 60, "it gives up as little as it insists");
}

void TestOwnerSearch::keysThatAreJustMovingAreTheirCallersAffair_data()
{
    QTest::addColumn<QByteArray>("error");
    QTest::newRow("ask") << QByteArray("-ASK 14010 10.0.0.9:7002\r\n");
    QTest::newRow("try again") << QByteArray("-TRYAGAIN Multiple keys request\r\n");
    QTest::newRow("no slot in common") << QByteArray("-CROSSSLOT Keys in request\r\n");
    QTest::newRow("a replica") << QByteArray("-READONLY You can't write here\r\n");
}

void TestOwnerSearch::keysThatAreJustMovingAreTheirCallersAffair()
{
    QFETCH(QByteArray, error);
    SearchBench bench(behind("{robot7}/"));
    bench.start();
    bench.comeUpAtOwner();
    const auto call = bench.call("GET");
    bench.say(error.toStdString());
    QVERIFY(bench.isUp());
    QCOMPARE(bench.end(call), std::string("answered"));
    QVERIFY(contains(bench.answer(call), error.mid(1, 4).toStdString()));
}

void TestOwnerSearch::aNodeOfAClusterWithoutATagIsRefused_data()
{
    QTest::addColumn<QString>("prefix");
    QTest::addColumn<QByteArray>("error");
    QTest::addColumn<QString>("advice");
    QTest::newRow("no prefix") << "" << QByteArray("-MOVED 1 10.0.0.9:1\r\n")
                               << "--prefix '{robot7}/'";
    QTest::newRow("no tag") << "arm/" << QByteArray("-CROSSSLOT Keys in request\r\n")
                            << "--prefix '{arm}/'";
}

void TestOwnerSearch::aNodeOfAClusterWithoutATagIsRefused()
{
    QFETCH(QString, prefix);
    QFETCH(QByteArray, error);
    QFETCH(QString, advice);
    SearchBench bench(behind(prefix.toStdString()));
    bench.start();
    bench.answerLookUp();
    bench.greetAndSay(prefix.isEmpty() ? "" : "-NOPERM this user has no permissions\r\n");
    bench.call("GET");
    bench.say(error.toStdString());
    QVERIFY(bench.told.back().isRefused);
    QVERIFY2(contains(bench.cause(), advice.toStdString()), bench.cause().c_str());
    bench.pass(std::chrono::hours(1));
    QCOMPARE(bench.connects.size(), std::size_t{1});
}

void TestOwnerSearch::aClusterThatIsDownIsAskedElsewhere()
{
    SearchBench bench(behind("{robot7}/"));
    bench.start();
    bench.comeUpAtOwner("arm:6379,leg:7001");
    bench.call("GET");
    bench.say("-CLUSTERDOWN The cluster is down\r\n");
    QVERIFY(!bench.isUp() && !bench.machine.condition().isRefused);
    bool isAskedElsewhere = false;
    for (int i = 0; i < 4; ++i) {
        bench.passToNextAttempt();
        bench.answerLookUps();
        isAskedElsewhere = isAskedElsewhere || bench.at() == "leg:7001";
        bench.greetAndSay("-CLUSTERDOWN The cluster is down\r\n" + noCluster);
        QVERIFY2(contains(bench.cause(), "not ready: CLUSTERDOWN"), bench.cause().c_str());
    }
    QVERIFY(isAskedElsewhere);
}

void TestOwnerSearch::whenTheOwnerIsGoneTheOthersAreAsked()
{
    SearchBench bench(behind("{robot7}/"));
    bench.start();
    bench.comeUpAtOwner("arm:6379,leg:7001");
    bench.close("gone");
    bench.passToNextAttempt();
    bench.answerLookUps();
    QCOMPARE(bench.at(), std::string("arm:6379"));
    bench.close("refused");
    QCOMPARE(bench.at(), std::string("leg:7001"));
    bench.greetAndSay(served + table("leg:7001,arm:6379"));
    QVERIFY(bench.isUp());
    QCOMPARE(bench.told.back().node->toText(), std::string("leg:7001"));
}

void TestOwnerSearch::theWaitsAreShortWhileOthersAnswer()
{
    SearchBench bench(behind("{robot7}/", "leg:7001"));
    bench.start();
    for (int i = 0; i < 50; ++i) {
        bench.answerLookUps();
        bench.greetAndSay(moved("10.0.0.9:1") + table("10.0.0.9:1,leg:7001"));
        bench.answerLookUp({MachineBench::address("10.0.0.9")});
        bench.close("refused");
        const auto before = bench.now;
        bench.passToNextAttempt();
        QVERIFY(bench.now - before <= milliseconds(500));
    }
}

void TestOwnerSearch::deadAddressesAreSkipped()
{
    SearchBench bench(behind("", "leg:7001,tail:7002"));
    bench.start();
    QCOMPARE(bench.lookUps.size(), std::size_t{3});
    bench.answerLookUps();
    QCOMPARE(bench.at(), std::string("arm:6379"));
    bench.pass(milliseconds(250));
    QCOMPARE(bench.at(), std::string("leg:7001"));
    bench.close("refused");
    QCOMPARE(bench.at(), std::string("tail:7002"));
    bench.comeUp();
    QVERIFY(bench.isUp() && bench.isClosed(1));
}

void TestOwnerSearch::aNameThatIsNotFoundIsSkipped()
{
    SearchBench bench(behind("", "leg:7001"));
    bench.start();
    bench.machine.lookedUp(bench.now, bench.lookUps[0], {}, "unknown host");
    bench.settle();
    QVERIFY(bench.told.empty());
    bench.machine.lookedUp(bench.now, bench.lookUps[1], {MachineBench::address("10.0.0.8")}, "");
    bench.settle();
    bench.comeUp();
    QVERIFY(bench.isUp());
}

void TestOwnerSearch::allDeadIsSaidOfTheLastOne()
{
    SearchBench bench(behind("", "leg:7001"));
    bench.start();
    bench.answerLookUps();
    bench.close("refused");
    QVERIFY(bench.told.empty());
    bench.close("refused, too");
    QCOMPARE(bench.cause(), std::string("robot at arm:6379: node leg:7001: refused, too"));
}

void TestOwnerSearch::whenANodeRefusesTheOthersAreAsked_data()
{
    QTest::addColumn<bool>("isCertificate");
    QTest::newRow("the login") << false;
    QTest::newRow("the certificate") << true;
}

void TestOwnerSearch::whenANodeRefusesTheOthersAreAsked()
{
    QFETCH(bool, isCertificate);
    ZoBrokerOptions wanted = behind("", "leg:7001");
    wanted.tls = isCertificate;
    SearchBench bench(wanted);
    bench.start();
    bench.answerLookUps();
    QCOMPARE(bench.at(), std::string("arm:6379"));
    bench.connect();
    if (isCertificate) {
        bench.machine.refused(bench.now, bench.newest(), "expired");
        bench.settle();
    } else {
        bench.say(wantsLogin);
    }
    QVERIFY2(bench.isClosed(1) && bench.told.empty(), "it is one attempt");
    bench.answerLookUps();
    QCOMPARE(bench.at(), std::string("leg:7001"));
    bench.comeUp();
    QVERIFY(bench.isUp());
    bench.close("gone");
    QVERIFY2(!bench.machine.condition().isRefused, "that is long ago");
}

void TestOwnerSearch::whenAllRefuseThatIsTheEnd()
{
    SearchBench bench(behind("{robot7}/", "leg:7001,tail:7002"));
    bench.start();
    for (int node = 0; node < 3; ++node) {
        QVERIFY(bench.told.empty());
        bench.answerLookUps();
        bench.connect();
        bench.say(wantsLogin);
    }
    QVERIFY(bench.told.back().isRefused);
    QCOMPARE(bench.cause(),
             std::string("robot at arm:6379: login refused: NOAUTH Authentication required."));
    bench.pass(std::chrono::hours(1));
    QCOMPARE(bench.connects.size(), std::size_t{3});
}

void TestOwnerSearch::oneThatRefusesIsTheEndWhenTheOthersAreDead()
{
    SearchBench bench(behind("", "leg:7001"));
    bench.start();
    bench.answerLookUps();
    bench.connect();
    bench.say(wantsLogin);
    bench.answerLookUps();
    bench.close("dead");
    QVERIFY(bench.told.back().isRefused);
    QVERIFY2(contains(bench.cause(), "login refused"), bench.cause().c_str());
}

void TestOwnerSearch::oneThatRefusesIsNotTheEndWhenAnotherIsNotReady()
{
    SearchBench bench(behind("", "leg:7001"));
    bench.start();
    bench.answerLookUps();
    bench.connect();
    bench.say(wantsLogin);
    bench.answerLookUps();
    bench.connect();
    bench.say("-LOADING its memory\r\n+OK\r\n");
    QVERIFY(!bench.isUp() && !bench.told.back().isRefused);
    QVERIFY2(contains(bench.cause(), "node leg:7001: not ready"), bench.cause().c_str());
    bench.passToNextAttempt();
    bench.answerLookUps();
    bench.comeUp();
    QVERIFY(bench.isUp());
}

void TestOwnerSearch::anOwnerThatRefusesAloneIsTriedAgain()
{
    SearchBench bench(behind("{robot7}/"));
    bench.start();
    bench.answerLookUp();
    bench.greetAndSay(moved("leg:7001") + table("leg:7001,arm:6379"));
    bench.answerLookUp();
    bench.connect();
    bench.say(wantsLogin);
    QVERIFY(!bench.isUp() && !bench.told.back().isRefused);
    QVERIFY2(contains(bench.cause(), "node leg:7001: login refused"), bench.cause().c_str());
    bench.passToNextAttempt();
    QCOMPARE(bench.lookUpNodes.size(), std::size_t{4});
}

void TestOwnerSearch::aServerThatASentinelNamesMayRefuse()
{
    SearchBench bench(behindSentinel());
    bench.start();
    bench.answerLookUp();
    bench.greetAndSay("*2\r\n" + text("10.0.0.8") + text("6380"));
    bench.answerLookUp();
    bench.connect();
    bench.say("-WRONGPASS invalid password\r\n");
    QVERIFY(bench.told.back().isRefused);
    QVERIFY2(contains(bench.cause(), "node 10.0.0.8:6380: user or password refused"),
             bench.cause().c_str());
}

void TestOwnerSearch::aBadTableEndsTheAttempt_data()
{
    QTest::addColumn<QByteArray>("reply");
    QTest::newRow("a number") << QByteArray(":1\r\n");
    QTest::newRow("a range that is none") << QByteArray("*1\r\n:1\r\n");
    QTest::newRow("text for a slot") << QByteArray("*1\r\n*3\r\n$1\r\n0\r\n");
    QTest::newRow("a slot too high") << QByteArray("*1\r\n*3\r\n:0\r\n:16384\r\n");
    QTest::newRow("a slot below none") << QByteArray("*1\r\n*3\r\n:-1\r\n:7\r\n");
    QTest::newRow("the end before the begin") << QByteArray("*1\r\n*3\r\n:7\r\n:6\r\n");
    QTest::newRow("a node that is none") << QByteArray("*1\r\n*3\r\n:0\r\n:9\r\n+no\r\n");
    QTest::newRow("a port that is none")
        << QByteArray("*1\r\n*3\r\n:0\r\n:9\r\n*2\r\n$1\r\na\r\n$1\r\nb\r\n");
}

void TestOwnerSearch::aBadTableEndsTheAttempt()
{
    QFETCH(QByteArray, reply);
    SearchBench bench(behind("{robot7}/"));
    bench.start();
    bench.answerLookUp();
    bench.greetAndSay(served + reply.toStdString());
    QVERIFY(!bench.isUp() && !bench.machine.condition().isRefused);
    QVERIFY2(contains(bench.cause(), "malformed reply to CLUSTER SLOTS"), bench.cause().c_str());
}

void TestOwnerSearch::odderNodesOfATableAreSkipped()
{
    SearchBench bench(behind("{robot7}/"));
    bench.start();
    bench.answerLookUp();
    std::string nodes;
    for (const std::string& host :
         {text("?"), text("a b"), text("caf\xc3\xa9"), text(std::string(300, 'a')),
          std::string("$-1\r\n"), text("leg")})
        nodes += "*2\r\n" + host + ":7001\r\n";
    nodes += "*2\r\n" + text("tail") + ":70000\r\n";
    bench.greetAndSay(served + "*1\r\n*9\r\n:0\r\n:16383\r\n" + nodes);
    QVERIFY(bench.isUp());
    bench.close("gone");
    bench.passToNextAttempt();
    std::string asked;
    for (std::size_t i = 1; i < bench.lookUpNodes.size(); ++i)
        asked += bench.lookUpNodes[i]->toText() + " ";
    QCOMPARE(asked, std::string("arm:6379 leg:7001 arm:7001 "));
}

void TestOwnerSearch::aReplicaIsReadWhereThereIsOne()
{
    ZoBrokerOptions wanted = behind("{robot7}/");
    wanted.replica = true;
    SearchBench bench(wanted);
    bench.start();
    bench.answerLookUp();
    bench.greetAndSay("+OK\r\n" + served + table("arm:6379,leg:7001"));
    QVERIFY(contains(bench.written(1), "READONLY"));
    bench.answerLookUp();
    QCOMPARE(bench.at(), std::string("leg:7001"));
    bench.greetAndSay("+OK\r\n" + served + table("arm:6379,leg:7001"));
    QVERIFY(bench.isUp());
}

void TestOwnerSearch::theOwnerIsReadWhenAReplicaIsNotThere()
{
    ZoBrokerOptions wanted = behind("{robot7}/");
    wanted.replica = true;
    SearchBench bench(wanted);
    bench.start();
    bench.answerLookUp();
    bench.greetAndSay("+OK\r\n" + served + table("arm:6379,leg:7001"));
    bench.answerLookUp();
    bench.close("refused");
    QCOMPARE(bench.cause(), std::string("robot at arm:6379: node leg:7001: refused"));
    bench.passToNextAttempt();
    bench.answerLookUps();
    if (bench.at() == "leg:7001")
        bench.close("refused");
    bench.greetAndSay("+OK\r\n" + served + table("arm:6379,leg:7001"));
    QVERIFY(bench.isUp());
    QCOMPARE(bench.told.back().node->toText(), std::string("arm:6379"));
}

void TestOwnerSearch::aSentinelIsAskedAgainAfterEachLoss()
{
    SearchBench bench(behindSentinel());
    bench.start();
    for (const std::string server : {"10.0.0.8", "10.0.0.9"}) {
        bench.answerLookUp();
        QCOMPARE(bench.at(), std::string("arm:6379"));
        bench.connect();
        QVERIFY2(!contains(bench.written(bench.newest()), "secret"), "it has no login");
        QVERIFY(contains(bench.written(bench.newest()), "GET-MASTER-ADDR-BY-NAME\r\n$4\r\narms"));
        bench.say(greeted + "*2\r\n" + text(server) + text("6380"));
        bench.answerLookUp({MachineBench::address(server.c_str())});
        QCOMPARE(bench.at(), server + ":6380");
        bench.connect();
        QVERIFY(contains(bench.written(bench.newest()), "AUTH\r\n$6\r\nsecret"));
        bench.say("+OK\r\n" + greeted + "*3\r\n" + text("master") + ":7\r\n*0\r\n");
        QVERIFY(bench.isUp());
        QCOMPARE(bench.told.back().node->toText(), server + ":6380");
        bench.close("gone");
        bench.passToNextAttempt();
    }
}

void TestOwnerSearch::whatASentinelSaysIsChecked_data()
{
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<QString>("cause");
    QTest::newRow("unknown") << QByteArray("*-1\r\n") << "knows no server called \"arms\"";
    QTest::newRow("no sentinel") << QByteArray("-ERR unknown command 'SENTINEL'\r\n")
                                 << "is no sentinel: ERR unknown command";
    QTest::newRow("no port") << QByteArray("*2\r\n$1\r\na\r\n$1\r\nb\r\n")
                             << "names no server that could be one: a:b";
    QTest::newRow("no host") << QByteArray("*2\r\n$0\r\n\r\n$1\r\n1\r\n")
                             << "names no server that could be one";
}

void TestOwnerSearch::whatASentinelSaysIsChecked()
{
    QFETCH(QByteArray, reply);
    QFETCH(QString, cause);
    SearchBench bench(behindSentinel());
    bench.start();
    bench.answerLookUp();
    bench.greetAndSay(reply.toStdString());
    QVERIFY(!bench.isUp() && !bench.machine.condition().isRefused);
    QVERIFY2(contains(bench.cause(), cause.toStdString()), bench.cause().c_str());
}

void TestOwnerSearch::aServerThatHasLostItsPlaceIsLeft()
{
    SearchBench bench(behindSentinel());
    bench.start();
    bench.answerLookUp();
    bench.greetAndSay("*2\r\n" + text("10.0.0.8") + text("6380"));
    bench.answerLookUp();
    bench.connect();
    bench.say("+OK\r\n" + greeted + "*5\r\n" + text("slave") + text("10.0.0.9") +
              ":6380\r\n+connected\r\n:7\r\n");
    QVERIFY2(contains(bench.cause(), "not ready: it is a slave now"), bench.cause().c_str());
}

void TestOwnerSearch::aServerThatLosesItsPlaceIsLeft()
{
    SearchBench bench(behindSentinel());
    bench.start();
    bench.answerLookUp();
    bench.greetAndSay("*2\r\n" + text("10.0.0.8") + text("6380"));
    bench.answerLookUp();
    bench.connect();
    bench.say("+OK\r\n" + greeted + "*3\r\n" + text("master") + ":7\r\n*0\r\n");
    const auto call = bench.call("SET");
    bench.say("-READONLY You can't write against a read only replica.\r\n");
    QVERIFY(!bench.isUp() && !bench.machine.condition().isRefused);
    QVERIFY2(contains(bench.end(call), "elsewhere: READONLY"), bench.end(call).c_str());
    const auto before = bench.now;
    bench.passToNextAttempt();
    QVERIFY(bench.now - before <= moment);
    QCOMPARE(bench.lookUpNodes.back()->toText(), std::string("arm:6379"));
}

void TestOwnerSearch::aNodeThatFellSilentIsAskedLast()
{
    SearchBench bench(behind("{robot7}/"));
    bench.start();
    bench.comeUpAtOwner("arm:6379,leg:7001");
    bench.call("GET");
    bench.pass(seconds(3));
    QVERIFY2(contains(bench.cause(), "silent for"), bench.cause().c_str());
    bench.answerLookUps();
    QCOMPARE(bench.at(), std::string("leg:7001"));
    // Which does not know yet.
    bench.greetAndSay(moved("arm:6379") + table("arm:6379,leg:7001"));
    bench.answerLookUps();
    QCOMPARE(bench.at(), std::string("arm:6379"));
    bench.connect();
    const std::size_t before = bench.told.size();
    bench.pass(milliseconds(249));
    QCOMPARE(bench.told.size(), before);
    bench.pass(milliseconds(1));
    QVERIFY2(contains(bench.cause(), "node") == false && contains(bench.cause(), "within 250 ms"),
             bench.cause().c_str());
}

void TestOwnerSearch::aNodeThatFellSilentHasATurnAllTheSame()
{
    SearchBench bench(behind("{robot7}/"));
    bench.start();
    bench.comeUpAtOwner("arm:6379,leg:7001");
    bench.call("GET");
    bench.pass(seconds(3));
    bool hasTime = false;
    for (int attempt = 0; attempt < 8 && !hasTime; ++attempt) {
        bench.answerLookUps();
        bench.greetAndSay(moved("arm:6379") + table("arm:6379,leg:7001"));
        bench.answerLookUps();
        bench.connect();
        const std::size_t before = bench.told.size();
        bench.pass(milliseconds(500));
        hasTime = bench.told.size() == before;
        if (!hasTime && bench.machine.step() == ZoLinkStatus::Step::None)
            bench.passToNextAttempt();
    }
    QVERIFY(hasTime);
    bench.say(greeted + served + table("arm:6379,leg:7001"));
    QVERIFY(bench.isUp());
}

void TestOwnerSearch::aClusterThatStaysDownIsAskedLessAndLess()
{
    SearchBench bench(behind("{robot7}/"));
    bench.start();
    std::size_t connectsOfMinute = 0;
    for (int minute = 0; minute < 2; ++minute) {
        const std::size_t before = bench.connects.size();
        const auto end = bench.now + seconds(60);
        while (bench.now < end) {
            bench.answerLookUps();
            bench.greetAndSay("-CLUSTERDOWN The cluster is down\r\n" + noCluster);
            bench.passToNextAttempt();
        }
        connectsOfMinute = bench.connects.size() - before;
    }
    // As after any other failure: a wait of 1.5 s on average.
    QVERIFY2(connectsOfMinute < 80, qPrintable(QString::number(connectsOfMinute)));
}

void TestOwnerSearch::soManyLookUpsAreUnderWayAtMost()
{
    SearchBench bench(behind("{robot7}/"));
    bench.start();
    // A node that makes up names which nobody can find, and which nobody answers for.
    for (int attempt = 0; attempt < 40; ++attempt) {
        const auto own = std::find_if(bench.lookUpNodes.rbegin(), bench.lookUpNodes.rend(),
                                      [](const NodePtr& node) { return node->host == "arm"; });
        const auto number = static_cast<std::size_t>(bench.lookUpNodes.rend() - own) - 1;
        bench.machine.lookedUp(bench.now, bench.lookUps[number],
                               {MachineBench::address("10.0.0.7")}, "");
        bench.settle();
        std::string names = "arm:6379";
        for (int name = 0; name < 8; ++name)
            names += ",x" + std::to_string(attempt) + "y" + std::to_string(name) + ":1";
        bench.greetAndSay("-CLUSTERDOWN The cluster is down\r\n" + table(names));
        bench.passToNextAttempt();
    }
    std::size_t madeUp = 0;
    for (const NodePtr& node : bench.lookUpNodes)
        madeUp += node->host == "arm" ? 0 : 1;
    QVERIFY2(madeUp <= 64, qPrintable(QString::number(madeUp)));
}

void TestOwnerSearch::oneHostWithManyAddressesLeavesOthersTheirTurn()
{
    SearchBench bench(behind("", "leg:7001"));
    bench.start();
    std::vector<LinkAddress> many;
    for (int number = 1; number <= 20; ++number)
        many.push_back(MachineBench::address(("10.0.2." + std::to_string(number)).c_str()));
    bench.machine.lookedUp(bench.now, bench.lookUps[0], many, "");
    bench.settle();
    bench.machine.lookedUp(bench.now, bench.lookUps[1], {MachineBench::address("10.0.0.8")}, "");
    bench.settle();
    QCOMPARE(bench.at(), std::string("arm:6379"));
    bench.close("refused");
    QCOMPARE(bench.at(), std::string("leg:7001"));
    for (int left = 0; left < 30 && bench.told.empty(); ++left)
        bench.close("refused");
    QCOMPARE(bench.connects.size(), std::size_t{16});
}

REGISTER_TEST(TestOwnerSearch, NoApplication)
#include "tst_owner_search.moc"
