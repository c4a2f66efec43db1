// SPDX-License-Identifier: MIT
#include "support/contains.h"
#include "support/fake_robot.h"
#include "support/guarded_test.h"
#include "support/redis_cluster.h"
#include "support/register_test.h"
#include "support/robot.h"

#include <kit/loopback_port.h>
#include <zo/check.h>

#include <QtTest>

#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace {

using std::chrono::milliseconds;

constexpr char prefix[] = "{robot7}/";
constexpr int slot = 13104; // of that prefix
constexpr int owner = 2;    // of the last third
const std::vector<std::string> keys = {"Arm", "Leg", "Tail"};

ZoBrokerOptions optionsFor(const std::string& wanted)
{
    ZoBrokerOptions options = patientOptions();
    options.prefix = wanted;
    return options;
}

/// The values of all keys; empty when there are none to be had.
std::string valuesOf(ZoMemoryProxy& memory)
{
    try {
        std::string texts;
        const ZoValue values = memory.getListData(requestFor(keys));
        for (int i = 0; i < values.getSize(); ++i)
            texts += values[i].toString(ZoBrief) + " ";
        return texts;
    } catch (const ZoError&) {
        return {};
    }
}

std::string textOf(const std::map<std::string, int>& values)
{
    std::string text;
    for (const auto& [key, value] : values)
        text += std::to_string(value) + " ";
    return text;
}

bool isStored(ZoMemoryProxy& memory, const std::string& key, int value)
{
    try {
        memory.setData(key, ZoValue(value));
        return true;
    } catch (const ZoError&) {
        return false;
    }
}

void storeTogether(ZoMemoryProxy& memory, int value)
{
    ZoValue::Elements pairs;
    for (const std::string& key : keys)
        pairs.push_back(ZoValue::fromElements({ZoValue(key), ZoValue(value)}));
    memory.setListData(ZoValue::fromElements(std::move(pairs)));
}

/// What a check of the robot at `address` says of its node.
ZoCheck::Step nodeStep(const ZoAddress& address, const std::string& wanted = prefix)
{
    ZoCheck::Step found{};
    const auto tell = [&](const ZoCheck::Step& step) {
        if (step.subject == ZoCheck::Subject::Node)
            found = step;
    };
    const bool isGood = ZoCheck::run(address, optionsFor(wanted), tell);
    if (isGood != (found.outcome == ZoCheck::Outcome::Ok))
        found.text += " (but the check ends otherwise)";
    return found;
}

} // namespace

/// A robot on a cluster of real servers.
class TestCluster : public GuardedTest
{
    Q_OBJECT

private slots:
    void initTestCase();
    void theTagHasTheSlotThatTheServersGiveIt();
    void anyNodeLeadsToTheOwner();
    void deadNodesOfAListAreSkipped();
    void aNodeThatDoesNotKnowTheUserIsLeftForTheOthers();
    void aCheckNamesTheNodeAndTheSlot();
    void aCheckSaysThatOneServerHasAllKeys();
    void aCheckNamesTheNodeThatCannotBeReached();
    void aPrefixWithoutATagIsRefused_data();
    void aPrefixWithoutATagIsRefused();
    void theKeyListAsksTheSlotAndNotTheFleet();
    void theKeyListGoesThroughAllKeysWhereTheSlotMayNotBeAsked();
    void nothingIsWrittenOverAReplica();
    void aSlotThatMovesIsReadAndWritten_data();
    void aSlotThatMovesIsReadAndWritten();
    void aNodeThatCannotBeAskedForWhatMovesIsNamed();
    void aReplicaIsRead();
    void anOwnerThatHangsIsSucceeded();
    void anOwnerThatDiesIsSucceeded();

private:
    void store(const std::string& value) const;

    std::unique_ptr<RedisCluster> fCluster;
};

void TestCluster::initTestCase()
{
    fCluster = std::make_unique<RedisCluster>();
    store("1");
}

void TestCluster::store(const std::string& value) const
{
    for (const std::string& key : keys)
        fCluster->node(fCluster->ownerOf(slot, 1)).command({"SET", prefix + key, value});
}

void TestCluster::theTagHasTheSlotThatTheServersGiveIt()
{
    QCOMPARE(fCluster->node(0).command({"CLUSTER", "KEYSLOT", prefix}), std::to_string(slot));
    QCOMPARE(fCluster->ownerOf(slot), owner);
}

void TestCluster::anyNodeLeadsToTheOwner()
{
    for (int number = 0; number < RedisCluster::fNodes; ++number) {
        const auto broker = linkTo(fCluster->address(number).port, optionsFor(prefix));
        ZoMemoryProxy memory = memoryOf(broker);
        QCOMPARE(valuesOf(memory), std::string("1 1 1 "));
        QCOMPARE(broker->linkStatus().node, fCluster->address(owner).toText());
        QVERIFY(broker->linkStatus().inCluster);
    }
}

void TestCluster::deadNodesOfAListAreSkipped()
{
    ZoBrokerOptions options = optionsFor(prefix);
    options.furtherAddresses = {{"127.0.0.1", kit::freeLoopbackPort()}, fCluster->address(0)};
    const auto broker = linkTo(kit::freeLoopbackPort(), options);
    QCOMPARE(broker->linkStatus().node, fCluster->address(owner).toText());
}

void TestCluster::aNodeThatDoesNotKnowTheUserIsLeftForTheOthers()
{
    constexpr int stranger = 0;
    for (int number = 1; number < RedisCluster::fNodes; ++number)
        fCluster->node(number).command(
            {"ACL", "SETUSER", "panel", "on", ">secret", "allkeys", "allcommands"});
    ZoBrokerOptions options = optionsFor(prefix);
    options.user = "panel";
    options.password = "secret";
    const std::string alone = errorOf([&] { linkTo(fCluster->address(stranger).port, options); });
    QVERIFY2(contains(alone, "user or password refused"), alone.c_str());
    options.furtherAddresses = {fCluster->address(1)};
    const auto broker = linkTo(fCluster->address(stranger).port, options);
    QCOMPARE(broker->linkStatus().node, fCluster->address(owner).toText());
}

void TestCluster::aCheckNamesTheNodeAndTheSlot()
{
    const std::string expected = fCluster->address(owner).toText() + " has slot " +
                                 std::to_string(slot) + " with the robot's keys";
    for (const int number : {0, owner}) {
        const ZoCheck::Step step = nodeStep(fCluster->address(number));
        QCOMPARE(step.text, expected);
        QVERIFY(step.outcome == ZoCheck::Outcome::Ok);
    }
}

void TestCluster::aCheckSaysThatOneServerHasAllKeys()
{
    const RedisServer server;
    const ZoCheck::Step step = nodeStep({"127.0.0.1", server.port()});
    QCOMPARE(step.text, std::string("one server for all keys, or it does not tell of others"));
    QVERIFY(step.outcome == ZoCheck::Outcome::Ok);
}

void TestCluster::aCheckNamesTheNodeThatCannotBeReached()
{
    const ZoAddress dead{"127.0.0.1", kit::freeLoopbackPort()};
    const FakeRobot robot([&](FakeConnection& connection) {
        connection.greet();
        connection.readCommand();
        connection.send("-MOVED " + std::to_string(slot) + " " + dead.toText() + "\r\n");
        connection.readCommand();
        connection.send("-ERR not for you\r\n");
        connection.waitForEnd();
    });
    const ZoCheck::Step step = nodeStep({"127.0.0.1", robot.port()});
    QVERIFY2(contains(step.text, "node " + dead.toText() + ": "), step.text.c_str());
    QVERIFY(step.outcome == ZoCheck::Outcome::Failed);
}

void TestCluster::aPrefixWithoutATagIsRefused_data()
{
    QTest::addColumn<QString>("wanted");
    QTest::addColumn<QString>("advice");
    QTest::addColumn<bool>("isAtOnce");
    QTest::newRow("none") << ""
                          << "--prefix '{robot7}/'" << false;
    QTest::newRow("no tag") << "arm/"
                            << "--prefix '{arm}/'" << true;
}

void TestCluster::aPrefixWithoutATagIsRefused()
{
    QFETCH(QString, wanted);
    QFETCH(QString, advice);
    QFETCH(bool, isAtOnce);
    const ZoBrokerOptions options = optionsFor(wanted.toStdString());
    const std::string refusal = errorOf([&] {
        const auto broker = linkTo(fCluster->address(0).port, options);
        QVERIFY2(!isAtOnce, "it is up");
        ZoMemoryProxy memory = memoryOf(broker);
        memory.getListData(requestFor({"Arm", "Leg", "Tail"}));
    });
    QVERIFY2(contains(refusal, advice.toStdString()), refusal.c_str());
    if (!isAtOnce)
        return;
    const ZoCheck::Step step = nodeStep(fCluster->address(0), wanted.toStdString());
    QVERIFY2(contains(step.text, advice.toStdString()), step.text.c_str());
    QVERIFY(step.outcome == ZoCheck::Outcome::Failed);
}

void TestCluster::theKeyListAsksTheSlotAndNotTheFleet()
{
    RedisServer& server = fCluster->node(owner);
    server.command({"SET", "{robot7}other/Arm", "1"}); // of another, in the same slot
    server.command({"RPUSH", prefix + std::string("List"), "1"});
    server.command({"CONFIG", "RESETSTAT"});
    const auto broker = linkTo(fCluster->address(owner).port, optionsFor(prefix));
    ZoMemoryProxy memory = memoryOf(broker);
    const ZoValue list = memory.getDataListName();
    std::set<std::string> names;
    for (int i = 0; i < list.getSize(); ++i)
        names.insert(list[i].asString());
    QVERIFY(names == std::set<std::string>(keys.begin(), keys.end()));
    const std::string asked = server.command({"INFO", "commandstats"});
    server.command({"DEL", "{robot7}other/Arm", prefix + std::string("List")});
    QVERIFY2(contains(asked, "getkeysinslot") && !contains(asked, "scan"), asked.c_str());
}

void TestCluster::theKeyListGoesThroughAllKeysWhereTheSlotMayNotBeAsked()
{
    RedisServer& server = fCluster->node(owner);
    server.command({"ACL", "SETUSER", "lister", "on", ">secret", "allkeys", "allcommands",
                    "-cluster|getkeysinslot"});
    ZoBrokerOptions options = optionsFor(prefix);
    options.user = "lister";
    options.password = "secret";
    ZoMemoryProxy memory = memoryOf(linkTo(fCluster->address(owner).port, options));
    QCOMPARE(memory.getDataListName().size(), keys.size());
}

void TestCluster::nothingIsWrittenOverAReplica()
{
    ZoBrokerOptions options = optionsFor(prefix);
    options.replica = true;
    const auto broker = linkTo(fCluster->address(owner).port, options);
    ZoMemoryProxy memory = memoryOf(broker);
    const std::string error = errorOf([&] { memory.setData("Arm", ZoValue(7)); });
    QVERIFY2(contains(error, "nothing can be written"), error.c_str());
    QVERIFY(broker->isConnected());
}

void TestCluster::aSlotThatMovesIsReadAndWritten_data()
{
    QTest::addColumn<bool>("follow");
    QTest::addColumn<bool>("notices");
    QTest::newRow("read each time") << false << false;
    QTest::newRow("followed") << true << false;
    QTest::newRow("followed with notices") << true << true;
}

void TestCluster::aSlotThatMovesIsReadAndWritten()
{
    ZoBrokerOptions options = optionsFor(prefix);
    const auto writer = linkTo(fCluster->address(owner).port, options);
    ZoMemoryProxy pen = memoryOf(writer);
    QFETCH(bool, follow);
    QFETCH(bool, notices);
    options.follow = follow;
    options.notices = notices;
    const auto reader = linkTo(fCluster->address(owner).port, options);
    ZoMemoryProxy memory = memoryOf(reader);
    std::map<std::string, int> stored = {{"Arm", 1}, {"Leg", 1}, {"Tail", 1}};
    std::set<std::string> possible = {textOf(stored)};
    std::set<std::string> seen;
    const auto read = [&] {
        std::string text = valuesOf(memory);
        if (!text.empty())
            seen.insert(text);
        return text;
    };
    TRY_COMPARE(read(), textOf(stored));
    for (const int to : {0, owner}) {
        const std::string from = reader->linkStatus().node;
        fCluster->beginToMove(slot, to);
        const std::string noList = errorOf([&] { memory.getDataListName(); });
        QVERIFY2(contains(noList, "refuses the key list: ASK"), noList.c_str());
        for (auto& [key, value] : stored) {
            fCluster->moveKey(slot, prefix + key, to);
            TRY_COMPARE(read(), textOf(stored));
            ++value;
            possible.insert(textOf(stored));
            TRY_VERIFY(isStored(pen, key, value));
            TRY_COMPARE(read(), textOf(stored));
        }
        QCOMPARE(reader->linkStatus().node, from);
        const std::string error = errorOf([&] { storeTogether(pen, 7); });
        QVERIFY2(contains(error, "just moving to another node"), error.c_str());
        fCluster->endMove(slot, to);
        TRY_COMPARE(read(), textOf(stored));
        TRY_COMPARE(reader->linkStatus().node, fCluster->address(to).toText());
    }
    for (const std::string& text : seen)
        QVERIFY2(possible.count(text) == 1, text.c_str());
    store("1");
}

void TestCluster::aNodeThatCannotBeAskedForWhatMovesIsNamed()
{
    const RedisServer alone; // which knows no moving slots
    const FakeRobot robot([&](FakeConnection& connection) {
        connection.greet();
        for (int question = 0; question < 2; ++question) { // all keys, and each
            connection.readCommand();
            connection.send("-ASK 13104 127.0.0.1:" + std::to_string(alone.port()) + "\r\n");
        }
        connection.waitForEnd();
    });
    const auto broker = linkTo(robot.port(), quietOptions());
    ZoMemoryProxy memory = memoryOf(broker);
    const std::string error = errorOf([&] { memory.getListData(requestFor({"Arm"})); });
    QVERIFY2(contains(error, "refuses ASKING"), error.c_str());
    QVERIFY2(contains(error, std::to_string(alone.port())), error.c_str());
}

void TestCluster::aReplicaIsRead()
{
    ZoBrokerOptions options = optionsFor(prefix);
    options.replica = true;
    const auto broker = linkTo(fCluster->address(0).port, options);
    ZoMemoryProxy memory = memoryOf(broker);
    TRY_COMPARE(valuesOf(memory), std::string("1 1 1 "));
    QCOMPARE(broker->linkStatus().node, fCluster->address(owner + RedisCluster::fMasters).toText());
}

void TestCluster::anOwnerThatHangsIsSucceeded()
{
    ZoBrokerOptions options = optionsFor(prefix);
    options.connectTimeout = std::chrono::seconds(3);
    options.exchangeTimeout = ZoBrokerOptions().exchangeTimeout;
    const auto broker = linkTo(fCluster->address(owner).port, options);
    ZoMemoryProxy memory = memoryOf(broker);
    TRY_COMPARE(valuesOf(memory), std::string("1 1 1 "));
    QElapsedTimer sinceItHangs;
    fCluster->node(owner).stop();
    sinceItHangs.start();
    TRY_COMPARE(valuesOf(memory), std::string("1 1 1 "));
    qInfo("values again after %lld ms", sinceItHangs.elapsed());
    QCOMPARE(broker->linkStatus().node, fCluster->address(owner + RedisCluster::fMasters).toText());
    fCluster->node(owner).resume();
    TRY_VERIFY(
        contains(fCluster->node(owner).command({"INFO", "replication"}), "master_link_status:up"));
}

// The last one: one node is dead then.
void TestCluster::anOwnerThatDiesIsSucceeded()
{
    // Only one is given, and it is the one that dies.
    const int last = fCluster->ownerOf(slot);
    const auto broker = linkTo(fCluster->address(last).port, optionsFor(prefix));
    ZoMemoryProxy memory = memoryOf(broker);
    QCOMPARE(valuesOf(memory), std::string("1 1 1 "));
    QElapsedTimer sinceDeath;
    fCluster->node(last).kill();
    sinceDeath.start();
    TRY_VERIFY(fCluster->ownerOf(slot, 0) != last);
    const auto succeeded = sinceDeath.elapsed();
    TRY_COMPARE(valuesOf(memory), std::string("1 1 1 "));
    qInfo("a new owner after %lld ms, values again after %lld ms", succeeded, sinceDeath.elapsed());
    QCOMPARE(broker->linkStatus().node, fCluster->address(fCluster->ownerOf(slot)).toText());
    store("2");
    TRY_COMPARE(valuesOf(memory), std::string("2 2 2 "));
}

REGISTER_TEST(TestCluster, NoApplication)
#include "tst_cluster.moc"
