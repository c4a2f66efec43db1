// SPDX-License-Identifier: MIT
#include "support/alice.h"
#include "support/fake_robot.h"
#include "support/following.h"
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <zo/check.h>

#include <QtTest>

#include <algorithm>

namespace {

using Names = std::vector<std::string>;

ZoBrokerOptions behind(const std::string& prefix, ZoBrokerOptions options = quietOptions())
{
    options.prefix = prefix;
    return options;
}

/// The greeting of a server that is no node of a cluster, which is asked behind a prefix.
void greetAlone(FakeConnection& connection)
{
    connection.greet();
    connection.readCommand();
    connection.send("-ERR This instance has cluster support disabled\r\n");
}

ZoMemoryProxy memoryBehind(const RedisServer& server, const std::string& prefix)
{
    return memoryOf(linkTo(server.port(), behind(prefix)));
}

Names sorted(Names names)
{
    std::sort(names.begin(), names.end());
    return names;
}

Names namesOf(ZoMemoryProxy memory)
{
    return sorted(memory.getDataListName());
}

ZoValue valueOf(ZoMemoryProxy memory, const std::string& key)
{
    return memory.getListData(requestFor({key}))[0];
}

/// What a check finds about `subject`.
ZoCheck::Step checked(const RedisServer& server, const ZoBrokerOptions& options,
                      ZoCheck::Subject subject)
{
    ZoCheck::Step found{};
    ZoCheck::run({"127.0.0.1", server.port()}, options, [&](const ZoCheck::Step& step) {
        if (step.subject == subject)
            found = step;
    });
    return found;
}

/// Who may use the keys of robot7, as a panel and a robot need it.
constexpr char rightsOfRobot7[] = "~robot7/* -@all +mget +scan +ping +hello +client|setname "
                                  "+client|tracking +client|caching +set +mset +getset";

} // namespace

/// Robots that share a server: each has its keys behind a prefix of its own.
class TestPrefix : public GuardedTest
{
    Q_OBJECT

private slots:
    void everyOperationIsBehindIt();
    void namesAreThoseBehindIt();
    void namesMayBeAskedForByTheirEnding();
    void aPrefixThatBeginsAnotherHasItsKeysToo();
    void noCharacterOfItHasAMeaning();
    void aListOfManyKeysIsBehindIt();
    void whatIsFollowedIsBehindIt();
    void onlyTheRobotsOwnChangesAreTold();
    void aBadPrefixIsRefusedBeforeAnythingIsSent();
    void aLinkKeepsItWhenItReconnects();
    void aKeyAndItsPrefixMayBeTooLong();
    void aServerThatKnowsNoKindsIsAskedForWholeKeys();
    void keysOfOthersThatAServerSendsAreNoNames();
    void pagesWithoutANameGiveTheNextOneItsTime();
    void anAccessListKeepsAPanelToItsRobot();
    void aForbiddenKeyIsAskedForBehindIt();
    void theCheckIsAboutTheKeysBehindIt();
};

void TestPrefix::everyOperationIsBehindIt()
{
    const RedisServer server;
    server.command({"MSET", "A", "\"bare\"", "robot8/A", "8"});
    ZoMemoryProxy memory = memoryBehind(server, "robot7/");
    QVERIFY(valueOf(memory, "A").getType() == ZoValue::Invalid);
    memory.setData("A", 7);
    memory.setText("B", "0.5");
    memory.setListData(ZoValue::fromElements(
        {ZoValue::fromElements({"C", true}), ZoValue::fromElements({"D", "x"})}));
    QVERIFY(memory.exchangeData("A", 77) == ZoValue(7));
    QVERIFY(memory.getListData(requestFor({"A", "B", "C", "D", "robot7/A"})) ==
            ZoValue::fromElements({77, 0.5, true, "x", ZoValue()}));
    QCOMPARE(server.command({"GET", "robot7/A"}), std::string("77"));
    QCOMPARE(server.command({"GET", "robot7/D"}), std::string("\"x\""));
    QCOMPARE(server.command({"GET", "A"}), std::string("\"bare\""));
    QCOMPARE(server.command({"GET", "robot8/A"}), std::string("8"));
    QCOMPARE(server.command({"DBSIZE"}), std::string("6"));
}

void TestPrefix::namesAreThoseBehindIt()
{
    const RedisServer server;
    server.command({"MSET", "A", "1", "robot7/A", "1", "robot7/B/C", "1", "robot8/D", "1"});
    server.command({"RPUSH", "robot7/List", "1"});
    QCOMPARE(namesOf(memoryBehind(server, "robot7/")), (Names{"A", "B/C"}));
    QCOMPARE(namesOf(memoryBehind(server, "robot8/")), (Names{"D"}));
    QCOMPARE(namesOf(memoryBehind(server, "robot9/")), Names{});
    QCOMPARE(namesOf(memoryBehind(server, "")), (Names{"A", "robot7/A", "robot7/B/C", "robot8/D"}));
}

void TestPrefix::namesMayBeAskedForByTheirEnding()
{
    const RedisServer server;
    server.command({"MSET", "lab/r1/At", "1", "lab/r2/At", "1", "lab/At", "1", "lab/r1/Atom", "1",
                    "r3/At", "1"});
    QCOMPARE(sorted(memoryBehind(server, "lab/").getDataListName("/At")),
             (Names{"r1/At", "r2/At"}));
    QCOMPARE(sorted(memoryBehind(server, "lab/").getDataListName("At")),
             (Names{"At", "r1/At", "r2/At"}));
    QCOMPARE(memoryBehind(server, "").getDataListName("*At").size(), std::size_t{0});
    QCOMPARE(memoryBehind(server, "lab/").getDataListName("").size(), std::size_t{4});
}

void TestPrefix::aPrefixThatBeginsAnotherHasItsKeysToo()
{
    const RedisServer server;
    server.command({"MSET", "robot7/A", "7", "robot70/A", "70"});
    QCOMPARE(namesOf(memoryBehind(server, "robot7")), (Names{"/A", "0/A"}));
    QCOMPARE(namesOf(memoryBehind(server, "robot7/")), (Names{"A"}));
    QVERIFY(valueOf(memoryBehind(server, "robot70/"), "A") == ZoValue(70));
}

void TestPrefix::noCharacterOfItHasAMeaning()
{
    const RedisServer server;
    const std::string odd = "r*[7]?\\\"'$ö/";
    memoryBehind(server, odd).setData("A*", 1);
    server.command({"MSET", "rX7Y\\\"'$ö/A", "2", "r*[7]?", "3", "r*7?\\\"'$ö/A", "4"});
    QCOMPARE(namesOf(memoryBehind(server, odd)), (Names{"A*"}));
    QCOMPARE(server.command({"GET", odd + "A*"}), std::string("1"));
}

void TestPrefix::aListOfManyKeysIsBehindIt()
{
    const RedisServer server;
    constexpr int count = 2345;
    Names keys;
    ZoValue::Elements pairs;
    for (int i = 0; i < count; ++i) {
        keys.push_back("K" + std::to_string(i));
        pairs.push_back(ZoValue::fromElements({keys.back(), i}));
    }
    ZoMemoryProxy memory = memoryBehind(server, "robot7/");
    memory.setListData(ZoValue::fromElements(std::move(pairs)));
    memoryBehind(server, "robot8/").setData("K0", "other");
    const ZoValue values = memory.getListData(requestFor(keys));
    for (int i = 0; i < count; ++i)
        QVERIFY(values[i] == ZoValue(i));
    QCOMPARE(namesOf(memory), sorted(keys));
}

void TestPrefix::whatIsFollowedIsBehindIt()
{
    const RedisServer server;
    server.command({"MSET", "robot7/A", "1", "robot8/A", "100", "A", "1000"});
    ZoMemoryProxy seven = memoryOf(linkTo(server.port(), behind("robot7/", following())));
    ZoMemoryProxy eight = memoryOf(linkTo(server.port(), behind("robot8/", following())));
    const ZoValue request = requestFor({"A"});
    for (int value = 1; value < 20; ++value) {
        server.command({"MSET", "robot7/A", std::to_string(value), "robot8/A",
                        std::to_string(100 + value), "A", "0"});
        const auto is = [](int wanted) {
            return [wanted](const ZoValue& values) { return values[0] == ZoValue(wanted); };
        };
        QVERIFY(polls(seven, request, is(value)));
        QVERIFY(polls(eight, request, is(100 + value)));
    }
    seven.setData("A", 5000);
    QVERIFY(
        polls(seven, request, [](const ZoValue& values) { return values[0] == ZoValue(5000); }));
}

// Each write of the key is read once, and not the whole list: the notices, too, are of this robot.
void TestPrefix::onlyTheRobotsOwnChangesAreTold()
{
    const RedisServer server;
    constexpr int many = 400;
    Names keys;
    for (int i = 0; i < many; ++i) {
        keys.push_back("K" + std::to_string(i));
        server.command({"MSET", "robot7/" + keys.back(), "0", "robot8/" + keys.back(), "0"});
    }
    ZoMemoryProxy memory = memoryOf(linkTo(server.port(), behind("robot7/", following())));
    const ZoValue request = requestFor(keys);
    const auto shows = [&](int value) {
        for (const std::string prefix : {"robot8/", "robot7/"})
            server.command({"SET", prefix + keys[many / 2], std::to_string(value)});
        return polls(memory, request,
                     [&](const ZoValue& values) { return values[many / 2] == ZoValue(value); });
    };
    const auto told = [&] { return server.command({"INFO", "all"}); };
    for (int value = 1; value < 20; ++value)
        QVERIFY(shows(value));
    const std::string before = told();
    for (int value = 20; value < 60; ++value)
        QVERIFY(shows(value));
    const std::string after = told();
    const auto grown = [&](const char* name) {
        return static_cast<double>(numberIn(after, name) - numberIn(before, name));
    };
    const double keysPerRead = grown("keyspace_hits:") / grown("cmdstat_mget:calls=");
    QVERIFY2(keysPerRead >= 1 && keysPerRead < 0.25 * many, std::to_string(keysPerRead).c_str());
}

void TestPrefix::aBadPrefixIsRefusedBeforeAnythingIsSent()
{
    const RedisServer server;
    const std::string error =
        errorOf([&] { linkTo(server.port(), behind("robot7/\r\nFLUSHALL\r\n")); });
    QVERIFY2(contains(error, "there is a control character in it"), error.c_str());
    QCOMPARE(server.clients(), 0);
}

void TestPrefix::aLinkKeepsItWhenItReconnects()
{
    const RedisServer server;
    server.command({"SET", "robot7/A", "7"});
    const auto broker = linkTo(server.port(), behind("robot7/"));
    ZoMemoryProxy memory = memoryOf(broker);
    broker->reconnect(quietOptions());
    TRY_VERIFY(broker->isConnected());
    QVERIFY(valueOf(memory, "A") == ZoValue(7));
    QCOMPARE(namesOf(memory), (Names{"A"}));
    // The next one with these options finds the link.
    const auto other = linkTo(server.port(), behind("robot7/"));
    QCOMPARE(other->linkIdentity(), broker->linkIdentity());
}

void TestPrefix::aKeyAndItsPrefixMayBeTooLong()
{
    const RedisServer server;
    ZoMemoryProxy memory = memoryBehind(server, "robot7/");
    const std::string fits(65529, 'k');
    memory.setData(fits, 1);
    const std::string error = errorOf([&] { memory.setData(fits + "k", 1); });
    QVERIFY2(contains(error, "and its prefix are longer than 64 KiB"), error.c_str());
    QVERIFY(memory.getListData(requestFor({fits, fits + "k"})) ==
            ZoValue::fromElements({1, ZoValue()}));
}

void TestPrefix::aServerThatKnowsNoKindsIsAskedForWholeKeys()
{
    const FakeRobot robot([](FakeConnection& connection) {
        greetAlone(connection);
        for (;;) {
            const auto command = connection.readCommand();
            if (command[0] == "TYPE")
                connection.send(command[1] == "robot7/A" ? "+string\r\n" : "+none\r\n");
            else if (command.size() > 6)
                connection.send("-ERR syntax error\r\n");
            else
                connection.send("*2\r\n$1\r\n0\r\n*2\r\n$8\r\nrobot7/A\r\n$8\r\nrobot7/B\r\n");
        }
    });
    QCOMPARE(namesOf(memoryOf(linkTo(robot.port(), behind("robot7/")))), (Names{"A"}));
}

void TestPrefix::keysOfOthersThatAServerSendsAreNoNames()
{
    const FakeRobot robot([](FakeConnection& connection) {
        greetAlone(connection);
        connection.readCommand();
        connection.send("*2\r\n$1\r\n0\r\n*3\r\n$8\r\nrobot8/A\r\n$8\r\nrobot7/B\r\n$1\r\nC\r\n");
        connection.readCommand();
        connection.send("*2\r\n$1\r\n0\r\n*2\r\n$8\r\nrobot7/A\r\n$8\r\nrobot7/B\r\n");
        connection.waitForEnd();
    });
    ZoMemoryProxy memory = memoryOf(linkTo(robot.port(), behind("robot7/")));
    QCOMPARE(namesOf(memory), (Names{"B"}));
    QCOMPARE(memory.getDataListName("A"), (Names{"A"}));
}

// Each takes a fifth of the time that the list may take without news; all together take longer.
void TestPrefix::pagesWithoutANameGiveTheNextOneItsTime()
{
    using std::chrono::milliseconds;
    const FakeRobot robot([](FakeConnection& connection) {
        greetAlone(connection);
        for (int page = 0; page < 9; ++page) {
            connection.readCommand();
            connection.sendSlowly("*2\r\n$1\r\n1\r\n*0\r\n"); // 15 bytes
        }
        connection.readCommand();
        connection.send("*2\r\n$1\r\n0\r\n*1\r\n$8\r\nrobot7/A\r\n");
        connection.waitForEnd();
    });
    const auto broker = linkTo(robot.port(), behind("robot7/", quietOptions(milliseconds(900))));
    const auto start = std::chrono::steady_clock::now();
    QCOMPARE(namesOf(memoryOf(broker)), (Names{"A"}));
    QVERIFY(std::chrono::steady_clock::now() - start > milliseconds(1200));
}

void TestPrefix::anAccessListKeepsAPanelToItsRobot()
{
    const RedisServer server(withAlice(rightsOfRobot7));
    server.command({"MSET", "robot7/A", "7", "robot70/A", "70", "A", "1"});
    const auto asAliceBehind = [](const std::string& prefix, bool follows) {
        ZoBrokerOptions options = behind(prefix, asAlice());
        options.follow = follows;
        return options;
    };
    for (const bool follows : {false, true}) {
        ZoMemoryProxy own = memoryOf(linkTo(server.port(), asAliceBehind("robot7/", follows)));
        QVERIFY(polls(own, requestFor({"A"}),
                      [](const ZoValue& values) { return values[0] == ZoValue(7); }));
        QCOMPARE(namesOf(own), (Names{"A"}));
        for (const std::string prefix : {"robot70/", ""}) {
            ZoMemoryProxy other = memoryOf(linkTo(server.port(), asAliceBehind(prefix, follows)));
            QVERIFY(polls(other, requestFor({"A"}), [](const ZoValue& values) {
                return values[0].getType() == ZoValue::Invalid;
            }));
            const std::string error = errorOf([&] { other.setData("A", 2); });
            QVERIFY2(contains(error, "NOPERM"), error.c_str());
        }
        own.setData("A", 7);
    }
    QCOMPARE(server.command({"GET", "robot70/A"}), std::string("70"));
    QCOMPARE(server.command({"GET", "A"}), std::string("1"));
}

void TestPrefix::aForbiddenKeyIsAskedForBehindIt()
{
    const RedisServer server(withAlice("~robot7/A ~B +@all"));
    server.command({"MSET", "robot7/A", "7", "robot7/B", "8", "B", "9"});
    ZoMemoryProxy memory = memoryOf(linkTo(server.port(), behind("robot7/", asAlice())));
    const ZoValue expected = ZoValue::fromElements({7, ZoValue()});
    QVERIFY(memory.getListData(requestFor({"A", "B"})) == expected);
    QVERIFY(memory.getListData(requestFor({"A", "B"})) == expected);
}

void TestPrefix::theCheckIsAboutTheKeysBehindIt()
{
    const RedisServer server(withAlice(rightsOfRobot7));
    server.command({"MSET", "robot7/A", "7", "robot7/B", "7", "robot8/A", "8"});
    const auto own = behind("robot7/", asAlice());
    QCOMPARE(checked(server, own, ZoCheck::Subject::Rights).text,
             std::string("SCAN is allowed; MGET is allowed"));
    const std::string keys = checked(server, own, ZoCheck::Subject::Keys).text;
    QVERIFY2(contains(keys, "2 keys behind robot7/, listed in"), keys.c_str());
    const auto rights = checked(server, behind("robot8/", asAlice()), ZoCheck::Subject::Rights);
    QVERIFY(rights.outcome == ZoCheck::Outcome::Failed);
    QVERIFY2(contains(rights.text, "MGET is refused"), rights.text.c_str());
}

REGISTER_TEST(TestPrefix, NoApplication)

#include "tst_prefix.moc"
