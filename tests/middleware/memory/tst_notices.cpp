// SPDX-License-Identifier: MIT
#include "support/alice.h"
#include "support/following.h"
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <QtTest>

namespace {

constexpr int many = 400;

std::vector<std::string> manyKeys(const RedisServer& server)
{
    std::vector<std::string> keys;
    std::vector<std::string> words{"MSET"};
    for (int i = 0; i < many; ++i) {
        keys.push_back("Arm/Joint/" + std::to_string(i));
        words.insert(words.end(), {keys.back(), "0"});
    }
    server.command(words);
    return keys;
}

struct Reads
{
    long keys;
    long commands;
};

/// Of all so far, at one moment.
Reads readsOf(const RedisServer& server)
{
    const std::string told = server.command({"INFO", "all"});
    return {numberIn(told, "keyspace_hits:"), numberIn(told, "cmdstat_mget:calls=")};
}

/// How many keys one command reads, in the mean of `answers` answers of which each shows another
/// value of one key.
double keysPerCommand(const RedisServer& server, const ZoBrokerOptions& options)
{
    const auto keys = manyKeys(server);
    ZoMemoryProxy memory = memoryOf(linkTo(server.port(), options));
    const ZoValue request = requestFor(keys);
    const auto shows = [&](int value) {
        server.command({"SET", keys[many / 2], std::to_string(value)});
        return polls(memory, request,
                     [&](const ZoValue& values) { return values[many / 2] == ZoValue(value); });
    };
    // Until the rhythm is known, and the notices.
    for (int value = 1; value < 20; ++value) {
        if (!shows(value))
            return 0;
    }
    const Reads before = readsOf(server);
    for (int value = 20; value < 60; ++value) {
        if (!shows(value))
            return 0;
    }
    const Reads after = readsOf(server);
    return static_cast<double>(after.keys - before.keys) /
           static_cast<double>(after.commands - before.commands);
}

} // namespace

/// Lists that are followed on a server that tells what was written.
class TestNotices : public GuardedTest
{
    Q_OBJECT

private slots:
    void onlyWhatIsWrittenIsReadAgain();
    void withoutThemAllIsReadAgain();
    void everyKindOfChangeIsSeen();
    void whoMayNotBeToldFollowsAllTheSame_data();
    void whoMayNotBeToldFollowsAllTheSame();
    void aNewConnectionIsToldAgain();
    void theLinkTellsHowItFollows();
    void whatIsAllWrittenIsReadAsAWhole();
};

void TestNotices::onlyWhatIsWrittenIsReadAgain()
{
    const RedisServer server;
    const double keys = keysPerCommand(server, following());
    QVERIFY2(keys >= 1 && keys < 0.25 * many, std::to_string(keys).c_str());
}

void TestNotices::withoutThemAllIsReadAgain()
{
    const RedisServer server;
    ZoBrokerOptions options = following();
    options.notices = false;
    QCOMPARE(keysPerCommand(server, options), double{many});
    QCOMPARE(answeredCommands(server, "hello"), 0);
}

void TestNotices::everyKindOfChangeIsSeen()
{
    const RedisServer server;
    server.command({"MSET", "Arm/A", "1", "Arm/B", "2"});
    ZoMemoryProxy memory = memoryOf(linkTo(server.port(), following()));
    const ZoValue request = requestFor({"Arm/A", "Arm/B"});
    const auto shows = [&](const ZoValue& first, const ZoValue& second) {
        return polls(memory, request, [&](const ZoValue& values) {
            return values == ZoValue::fromElements({first, second});
        });
    };
    QVERIFY(shows(ZoValue(1), ZoValue(2)));
    TRY_VERIFY(shows(ZoValue(1), ZoValue(2)) &&
               toldNumber(server, "stats", "tracking_total_keys:") == 2);
    server.command({"DEL", "Arm/A"});
    QVERIFY(shows(ZoValue(), ZoValue(2)));
    server.command({"RPUSH", "Arm/A", "no value"});
    server.command({"SET", "Arm/B", "3"});
    QVERIFY(shows(ZoValue(), ZoValue(3)));
    server.command({"SET", "Arm/A", "4", "PX", "100"});
    QVERIFY(shows(ZoValue(4), ZoValue(3)));
    QVERIFY(shows(ZoValue(), ZoValue(3))); // which the server forgets by itself
    server.command({"FLUSHALL"});
    QVERIFY(shows(ZoValue(), ZoValue()));
    server.command({"SET", "Arm/B", "5"});
    QVERIFY(shows(ZoValue(), ZoValue(5)));
}

void TestNotices::whoMayNotBeToldFollowsAllTheSame_data()
{
    QTest::addColumn<QString>("rights");
    QTest::newRow("no greeting") << "-hello";
    QTest::newRow("no notices") << "-client|tracking";
    QTest::newRow("no exceptions") << "-client|caching";
    QTest::newRow("nothing of a client") << "-client";
}

void TestNotices::whoMayNotBeToldFollowsAllTheSame()
{
    QFETCH(QString, rights);
    const RedisServer server(withAlice("~* &* +@all " + rights.toStdString()));
    ZoMemoryProxy memory = memoryOf(linkTo(server.port(), asAlice(following())));
    const ZoValue request = requestFor({"Arm/A", "Arm/B"});
    for (int value = 1; value < 10; ++value) {
        server.command({"MSET", "Arm/A", std::to_string(value), "Arm/B", "0.5"});
        QVERIFY(polls(memory, request, [&](const ZoValue& values) {
            return values == ZoValue::fromElements({ZoValue(value), ZoValue(0.5)});
        }));
    }
    // Nor does the server remember for nothing what it could tell. A greeting is never refused.
    if (rights != "-hello")
        TRY_VERIFY(toldNumber(server, "clients", "tracking_clients:") == 0);
}

void TestNotices::aNewConnectionIsToldAgain()
{
    const RedisServer server;
    const auto broker = linkTo(server.port(), following());
    ZoMemoryProxy memory = memoryOf(broker);
    const ZoValue request = requestFor({"Arm/A"});
    const auto asked = [&server] { return answeredCommands(server, "client|tracking"); };
    TRY_VERIFY(asked() > 0);
    for (int value = 1; value < 4; ++value) {
        const int before = asked();
        server.command({"CLIENT", "KILL", "TYPE", "normal", "SKIPME", "yes"});
        server.command({"SET", "Arm/A", std::to_string(value)});
        TRY_VERIFY(asked() > before && broker->isConnected());
        QVERIFY(polls(memory, request,
                      [&](const ZoValue& values) { return values[0] == ZoValue(value); }));
    }
}

void TestNotices::theLinkTellsHowItFollows()
{
    using Mode = ZoLinkStatus::Following;
    const RedisServer server;
    server.command({"SET", "Arm/A", "1"});
    ZoBrokerOptions withoutNotices = following();
    withoutNotices.notices = false;
    for (const auto& [options, mode] :
         {std::pair(following(), Mode::Changes), std::pair(withoutNotices, Mode::Everything),
          std::pair(patientOptions(), Mode::None)}) {
        const auto broker = linkTo(server.port(), options);
        ZoMemoryProxy memory = memoryOf(broker);
        const ZoValue request = requestFor({"Arm/A", "Arm/B", "Arm/C", "Arm/D"});
        memory.getListData(request); // once is not yet again and again
        QVERIFY(broker->linkStatus().following == Mode::None);
        int answers = 0;
        QVERIFY(polls(memory, request, [&, wanted = mode](const ZoValue&) {
            return broker->linkStatus().following == wanted && ++answers == 10;
        }));
        TRY_VERIFY(broker->linkStatus().following == Mode::None); // nobody asks any more
    }
}

void TestNotices::whatIsAllWrittenIsReadAsAWhole()
{
    using Mode = ZoLinkStatus::Following;
    const RedisServer server;
    const auto broker = linkTo(server.port(), following());
    ZoMemoryProxy memory = memoryOf(broker);
    int value = 0;
    QVERIFY(polls(memory, requestFor({"Arm/A", "Arm/B"}), [&](const ZoValue&) {
        const std::string text = std::to_string(++value);
        server.command({"MSET", "Arm/A", text, "Arm/B", text});
        return value > 20 && broker->linkStatus().following == Mode::Everything;
    }));
}

REGISTER_TEST(TestNotices, NoApplication)

#include "tst_notices.moc"
