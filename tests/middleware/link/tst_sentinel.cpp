// SPDX-License-Identifier: MIT
#include "support/contains.h"
#include "support/guarded_test.h"
#include "support/redis_server.h"
#include "support/register_test.h"
#include "support/robot.h"

#include <kit/loopback_port.h>
#include <zo/check.h>

#include <QtTest>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr char name[] = "arms";

RedisServer::Options replicaOf(const RedisServer& server)
{
    RedisServer::Options options;
    options.configuration = {"replicaof 127.0.0.1 " + std::to_string(server.port()),
                             "repl-diskless-sync-delay 0"};
    return options;
}

RedisServer::Options sentinelOf(const RedisServer& server)
{
    const std::string watched = name;
    RedisServer::Options options;
    options.isSentinel = true;
    options.configuration = {"sentinel monitor " + watched + " 127.0.0.1 " +
                                 std::to_string(server.port()) + " 2",
                             "sentinel down-after-milliseconds " + watched + " 1000",
                             "sentinel failover-timeout " + watched + " 5000"};
    return options;
}

std::string addressOf(const RedisServer& server)
{
    return ZoAddress{"127.0.0.1", server.port()}.toText();
}

std::string valueOf(ZoMemoryProxy& memory)
{
    try {
        return memory.getListData(requestFor({"Arm"}))[0].toString(ZoBrief);
    } catch (const ZoError&) {
        return {};
    }
}

/// Checks the server called `wanted`, with the texts of all steps.
bool checkBehind(const RedisServer& sentinel, const std::string& wanted,
                 std::vector<std::string>& texts)
{
    ZoBrokerOptions options = patientOptions();
    options.sentinel = wanted;
    return ZoCheck::run({"127.0.0.1", sentinel.port()}, options,
                        [&](const ZoCheck::Step& step) { texts.push_back(step.text); });
}

bool has(const std::vector<std::string>& texts, const std::string& text)
{
    return std::find(texts.begin(), texts.end(), text) != texts.end();
}

} // namespace

/// A robot's server that real sentinels watch.
class TestSentinel : public GuardedTest
{
    Q_OBJECT

private slots:
    void theServerThatTheyNameIsReadAndItsSuccessor();
    void aNameThatTheyDoNotKnowIsSaid();
    void aCheckGoesToTheServerThatTheyName();
    void aCheckEndsWhereTheyDoNotKnowTheName();
};

void TestSentinel::theServerThatTheyNameIsReadAndItsSuccessor()
{
    RedisServer server;
    server.command({"SET", "Arm", "1"});
    const RedisServer replica(replicaOf(server));
    std::vector<std::unique_ptr<RedisServer>> sentinels;
    sentinels.reserve(3);
    for (int i = 0; i < 3; ++i)
        sentinels.push_back(std::make_unique<RedisServer>(sentinelOf(server)));
    for (const auto& sentinel : sentinels)
        TRY_VERIFY(contains(sentinel->command({"INFO", "sentinel"}), "slaves=1,sentinels=3"));
    TRY_COMPARE(replica.command({"GET", "Arm"}), std::string("1"));

    ZoBrokerOptions options = patientOptions();
    options.sentinel = name;
    for (const auto& sentinel : sentinels)
        options.furtherAddresses.push_back({"127.0.0.1", sentinel->port()});
    // The first of the addresses is dead.
    const auto broker = linkTo(kit::freeLoopbackPort(), options);
    ZoMemoryProxy memory = memoryOf(broker);
    QCOMPARE(valueOf(memory), std::string("1"));
    QCOMPARE(broker->linkStatus().node, addressOf(server));

    QElapsedTimer sinceDeath;
    sinceDeath.start();
    server.kill();
    TRY_COMPARE(valueOf(memory), std::string("1"));
    qInfo("the successor's values after %lld ms", sinceDeath.elapsed());
    QCOMPARE(broker->linkStatus().node, addressOf(replica));
    memory.setData("Arm", ZoValue(2));
    QCOMPARE(valueOf(memory), std::string("2"));
}

void TestSentinel::aNameThatTheyDoNotKnowIsSaid()
{
    const RedisServer server;
    const RedisServer sentinel(sentinelOf(server));
    ZoBrokerOptions options = patientOptions();
    options.sentinel = "legs";
    const std::string error = errorOf([&] { linkTo(sentinel.port(), options); });
    QVERIFY2(contains(error, "this sentinel knows no server called \"legs\""), error.c_str());
    options.sentinel = name;
    const std::string none = errorOf([&] { linkTo(server.port(), options); });
    QVERIFY2(contains(none, "is no sentinel"), none.c_str());
}

void TestSentinel::aCheckGoesToTheServerThatTheyName()
{
    const RedisServer server;
    const RedisServer sentinel(sentinelOf(server));
    std::vector<std::string> texts;
    QVERIFY(checkBehind(sentinel, name, texts));
    QVERIFY(has(texts, "a sentinel is asked without"));
    QVERIFY(has(texts, addressOf(server) + " is the server \"arms\""));
}

void TestSentinel::aCheckEndsWhereTheyDoNotKnowTheName()
{
    const RedisServer server;
    const RedisServer sentinel(sentinelOf(server));
    std::vector<std::string> texts;
    QVERIFY(!checkBehind(sentinel, "legs", texts));
    QVERIFY2(contains(texts.back(), "this sentinel knows no server called \"legs\""),
             texts.back().c_str());
}

REGISTER_TEST(TestSentinel, NoApplication)
#include "tst_sentinel.moc"
