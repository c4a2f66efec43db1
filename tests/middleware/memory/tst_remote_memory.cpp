// SPDX-License-Identifier: MIT
#include "support/alice.h"
#include "support/guarded_test.h"
#include "support/patience.h"
#include "support/redis_server.h"
#include "support/register_test.h"
#include "support/robot.h"
#include "support/together.h"

#include <QtTest>

#include <algorithm>
#include <atomic>

namespace {

std::vector<std::string> numberedKeys(int count)
{
    std::vector<std::string> keys;
    keys.reserve(count);
    for (int i = 0; i < count; ++i)
        keys.push_back("Arm/Joint/" + std::to_string(i));
    return keys;
}

ZoMemoryProxy memoryOf(const RedisServer& server, const ZoBrokerOptions& options = patientOptions())
{
    return memoryOf(linkTo(server.port(), options));
}

void fill(const RedisServer& server, const std::vector<std::string>& keys)
{
    std::vector<std::string> words{"MSET"};
    for (std::size_t i = 0; i < keys.size(); ++i) {
        words.push_back(keys[i]);
        words.push_back(std::to_string(i));
    }
    server.command(words);
}

ZoValue numberedPairs(const std::vector<std::string>& keys)
{
    ZoValue pairs = requestFor(keys);
    for (int i = 0; i < pairs.getSize(); ++i)
        pairs[i][1] = i;
    return pairs;
}

int countWrong(const ZoValue& values)
{
    int wrong = 0;
    for (int i = 0; i < values.getSize(); ++i)
        wrong += values[i] != ZoValue(i);
    return wrong;
}

} // namespace

/// The robot's memory, over a link to a real server.
class TestRemoteMemory : public GuardedTest
{
    Q_OBJECT

private slots:
    void readsEveryType();
    void storesEveryType();
    void storesTextAsItStands();
    void tellsHowManyValuesAreTooLarge();
    void exchangesInOneStep();
    void anExchangeThatTheServerRefusesIsTold();
    void storesManyValuesInChunks();
    void storesNothingOfAListThatCannotBeStored();
    void saysWhyAListWasRefused();
    void asksInChunks();
    void asksAgainForOtherKeys();
    void keysRepeatAsAsked();
    void aKeyTooLongForAnyRobotIsInvalidAlone();
    void anEmptyRequestSendsNothing();
    void refusesMalformedRequests_data();
    void refusesMalformedRequests();
    void refusesWhatCannotBeStored();
    void listsEachTextKeyOnce();
    void anUnknownMethodIsNamed();
    void forbiddenKeysAreInvalidAndNotAskedForAgain();
    void forbiddenKeysAreAskedForAgainOnANewConnection();
    void aForbiddenCommandIsNamed();
    void aTooLargeValueIsInvalidAlone();
    void manyThreadsShareOneProxy();
};

void TestRemoteMemory::readsEveryType()
{
    const RedisServer server;
    const std::vector<std::pair<std::string, std::string>> texts{
        {"int", "3"},        {"float", "0.5"},        {"whole", "3.0"},  {"yes", "true"},
        {"no", "false"},     {"string", "\"a\\nb\""}, {"plain", "it's"}, {"object", "{\"a\":1}"},
        {"array", "[1,[]]"}, {"nan", "NaN"},          {"null", "null"},  {"empty", ""}};
    for (const auto& [key, text] : texts)
        server.command({"SET", key, text});
    server.command({"HSET", "hash", "a", "1"});
    ZoMemoryProxy memory = memoryOf(server);
    const ZoValue values = memory.getListData(
        requestFor({"int", "float", "whole", "yes", "no", "string", "plain", "object", "array",
                    "nan", "null", "empty", "hash", "missing"}));
    QCOMPARE(values.getSize(), 14);
    QVERIFY(values[0] == ZoValue(3));
    QVERIFY(values[1] == ZoValue(0.5));
    QVERIFY(values[2] == ZoValue(3.0));
    QVERIFY(values[3] == ZoValue(true));
    QVERIFY(values[4] == ZoValue(false));
    QVERIFY(values[5] == ZoValue("a\nb"));
    QVERIFY(values[6] == ZoValue("it's"));
    QVERIFY(values[7] == ZoValue("{\"a\":1}"));
    QCOMPARE(values[8].getSize(), 2);
    QVERIFY(values[8][0] == ZoValue(1));
    QCOMPARE(values[9].getType(), int(ZoValue::Float));
    QCOMPARE(values[10].getType(), int(ZoValue::Invalid));
    QVERIFY(values[11] == ZoValue(""));
    QCOMPARE(values[12].getType(), int(ZoValue::Invalid));
    QCOMPARE(values[13].getType(), int(ZoValue::Invalid));
}

void TestRemoteMemory::storesEveryType()
{
    const RedisServer server;
    ZoMemoryProxy memory = memoryOf(server);
    ZoValue array;
    array.arraySetSize(2);
    array[0] = 1;
    array[1] = ZoValue("x");
    const std::vector<ZoValue> values{ZoValue(),    ZoValue(true), ZoValue(7),
                                      ZoValue(2.0), ZoValue("3"),  array};
    for (const ZoValue& value : values) {
        memory.setData("key", value);
        QVERIFY(memory.getListData(requestFor({"key"}))[0] == value);
    }
    QCOMPARE(server.command({"GET", "key"}), std::string("[1,\"x\"]"));
}

void TestRemoteMemory::storesTextAsItStands()
{
    const RedisServer server;
    ZoMemoryProxy memory = memoryOf(server);
    const std::string text("a\0\r\nb", 5);
    memory.setText("key", text);
    QCOMPARE(server.command({"GET", "key"}), text);
    memory.setText("key", "0.5");
    QVERIFY(memory.getListData(requestFor({"key"}))[0] == ZoValue(0.5));
}

void TestRemoteMemory::tellsHowManyValuesAreTooLarge()
{
    const RedisServer server;
    ZoMemoryProxy memory = memoryOf(server);
    const std::string large((1 << 20) + 1, 'x');
    server.command({"MSET", "a", large, "b", "1", "c", large});
    QCOMPARE(memory.getListAnswer(requestFor({"a", "b", "c", "none"})).tooLarge, 2);
    QCOMPARE(memory.getListAnswer(requestFor({"b", "none"})).tooLarge, 0);
}

void TestRemoteMemory::exchangesInOneStep()
{
    const RedisServer server;
    ZoMemoryProxy memory = memoryOf(server);
    QVERIFY(memory.exchangeData("key", 1) == ZoValue());
    QCOMPARE(server.command({"GET", "key"}), std::string("1"));
    server.command({"SET", "key", "[1, \"x\"]"});
    QCOMPARE(memory.exchangeData("key", ZoValue()).toString(ZoWhole), std::string("[1,\"x\"]"));
    QVERIFY(memory.getListData(requestFor({"key"}))[0] == ZoValue());
    server.command({"SET", "key", std::string((1 << 20) + 1, 'x')}); // too large to be read
    QVERIFY(memory.exchangeData("key", 2) == ZoValue());
    QCOMPARE(server.command({"GET", "key"}), std::string("2"));
}

void TestRemoteMemory::anExchangeThatTheServerRefusesIsTold()
{
    const RedisServer server;
    ZoMemoryProxy memory = memoryOf(server);
    server.command({"LPUSH", "list", "1"});
    const std::string error = errorOf([&] { memory.exchangeData("list", 1); });
    QVERIFY2(contains(error, "GETSET") && contains(error, "list"), error.c_str());
}

void TestRemoteMemory::storesManyValuesInChunks()
{
    const RedisServer server;
    ZoMemoryProxy memory = memoryOf(server);
    const auto keys = numberedKeys(2500);
    memory.setListData(numberedPairs(keys));
    QCOMPARE(countWrong(memory.getListData(requestFor(keys))), 0);
    memory.setListData(numberedPairs({}));
    QVERIFY(contains(server.command({"INFO", "commandstats"}), "cmdstat_mset:calls=3,"));
}

void TestRemoteMemory::storesNothingOfAListThatCannotBeStored()
{
    const RedisServer server;
    ZoMemoryProxy memory = memoryOf(server);
    ZoValue pairs = numberedPairs(numberedKeys(1500));
    pairs[1400][1] = std::vector<std::string>{"\xff"};
    const std::string noText = errorOf([&] { memory.setListData(pairs); });
    QVERIFY2(contains(noText, "Arm/Joint/1400"), noText.c_str());
    pairs[1400][1] = std::string((1 << 20) + 1, 'x');
    const std::string large = errorOf([&] { memory.setListData(pairs); });
    QVERIFY2(contains(large, "Arm/Joint/1400") && contains(large, "1 MiB"), large.c_str());
    pairs[1400].arraySetSize(1);
    const std::string noPair = errorOf([&] { memory.setListData(pairs); });
    QVERIFY2(contains(noPair, "setListData") && contains(noPair, "1400"), noPair.c_str());
    QCOMPARE(server.command({"DBSIZE"}), std::string("0"));
}

void TestRemoteMemory::saysWhyAListWasRefused()
{
    const RedisServer server(withAlice("%R~* %W~Arm/* +@all"));
    const auto broker = linkTo(server.port(), asAlice());
    ZoMemoryProxy memory = memoryOf(broker);
    memory.setListData(numberedPairs({"Arm/A", "Arm/B"}));
    const ZoValue pairs = numberedPairs({"Arm/A", "Leg/A"});
    const std::string error = errorOf([&] { memory.setListData(pairs); });
    QVERIFY2(contains(error, "MSET") && contains(error, "NOPERM"), error.c_str());
    QVERIFY(broker->isConnected());
}

void TestRemoteMemory::asksInChunks()
{
    const RedisServer server;
    const auto keys = numberedKeys(2500);
    fill(server, keys);
    ZoMemoryProxy memory = memoryOf(server);
    for (int poll = 0; poll < 2; ++poll) {
        const ZoValue values = memory.getListData(requestFor(keys));
        QCOMPARE(values.getSize(), 2500);
        QCOMPARE(countWrong(values), 0);
    }
    QVERIFY(contains(server.command({"INFO", "commandstats"}), "cmdstat_mget:calls=6,"));
}

void TestRemoteMemory::asksAgainForOtherKeys()
{
    const RedisServer server;
    fill(server, {"a", "b", "c"});
    ZoMemoryProxy memory = memoryOf(server);
    ZoValue request = requestFor({"a", "b"});
    QVERIFY(memory.getListData(request)[1] == ZoValue(1));
    request[1][0] = ZoValue("c"); // the same object asks for something else
    QVERIFY(memory.getListData(request)[1] == ZoValue(2));
    QCOMPARE(memory.getListData(requestFor({"c"})).getSize(), 1);
    QVERIFY(memory.getListData(requestFor({"c", "a"}))[1] == ZoValue(0));
}

void TestRemoteMemory::keysRepeatAsAsked()
{
    const RedisServer server;
    fill(server, {"a", "b"});
    const ZoValue values = memoryOf(server).getListData(requestFor({"b", "a", "b", "b"}));
    QCOMPARE(values.getSize(), 4);
    QVERIFY(values[0] == ZoValue(1) && values[1] == ZoValue(0));
    QVERIFY(values[2] == ZoValue(1) && values[3] == ZoValue(1));
}

void TestRemoteMemory::aKeyTooLongForAnyRobotIsInvalidAlone()
{
    const RedisServer server;
    fill(server, {"a", "b"});
    const std::string tooLong(100 * 1024, 'k');
    const ZoValue values = memoryOf(server).getListData(requestFor({"a", tooLong, "b"}));
    QCOMPARE(values.getSize(), 3);
    QVERIFY(values[0] == ZoValue(0) && values[1] == ZoValue() && values[2] == ZoValue(1));
}

void TestRemoteMemory::anEmptyRequestSendsNothing()
{
    const RedisServer server;
    ZoMemoryProxy memory = memoryOf(server);
    const ZoValue values = memory.getListData(requestFor({}));
    QCOMPARE(values.getType(), int(ZoValue::Array));
    QCOMPARE(values.getSize(), 0);
    QVERIFY(!contains(server.command({"INFO", "commandstats"}), "cmdstat_mget"));
}

void TestRemoteMemory::refusesMalformedRequests_data()
{
    QTest::addColumn<int>("kind");
    for (int kind = 0; kind < 4; ++kind)
        QTest::newRow(qPrintable(QString::number(kind))) << kind;
}

void TestRemoteMemory::refusesMalformedRequests()
{
    QFETCH(int, kind);
    static const RedisServer server;
    ZoMemoryProxy memory = memoryOf(server);
    ZoValue request = requestFor({"a", "b"});
    if (kind == 0)
        request = ZoValue();
    else if (kind == 1)
        request[1] = ZoValue("b");
    else if (kind == 2)
        request[1].arraySetSize(1);
    else
        request[1][0] = 5;
    QVERIFY(contains(errorOf([&] { memory.getListData(request); }), "getListData"));
    QVERIFY(memory.getListData(requestFor({"a"}))[0] == ZoValue());
}

void TestRemoteMemory::refusesWhatCannotBeStored()
{
    const RedisServer server;
    ZoMemoryProxy memory = memoryOf(server);
    const std::string large((1 << 20) + 1, 'x');
    const std::string error = errorOf([&] { memory.setText("Arm/Large", large); });
    QVERIFY2(contains(error, "Arm/Large") && contains(error, "1 MiB"), error.c_str());
    const ZoValue bytes(std::vector<std::string>{"\xff"});
    const std::string notText = errorOf([&] { memory.setData("Arm/Bytes", bytes); });
    QVERIFY2(contains(notText, "Arm/Bytes"), notText.c_str());
    const std::string longKey(1 << 20, 'k');
    QVERIFY(contains(errorOf([&] { memory.setText(longKey, "1"); }), "longer"));
    QCOMPARE(server.command({"DBSIZE"}), std::string("0"));
}

void TestRemoteMemory::listsEachTextKeyOnce()
{
    const RedisServer server;
    auto keys = numberedKeys(3500);
    fill(server, keys);
    server.command({"RPUSH", "list", "1"});
    auto names = memoryOf(server).getDataListName();
    std::sort(names.begin(), names.end());
    std::sort(keys.begin(), keys.end());
    QVERIFY(names == keys);
}

void TestRemoteMemory::anUnknownMethodIsNamed()
{
    const RedisServer server;
    const auto broker = linkTo(server.port(), patientOptions());
    const auto proxy = broker->getProxy("ZoMemory", 0);
    QVERIFY(contains(errorOf([&] { proxy->call("dance", ZoValue()); }), "dance"));
}

void TestRemoteMemory::forbiddenKeysAreInvalidAndNotAskedForAgain()
{
    const RedisServer server(withAlice("~Arm/* +@all"));
    auto keys = numberedKeys(2500);
    keys[7] = "Leg/Angle";
    fill(server, keys);
    ZoMemoryProxy memory = memoryOf(server, asAlice());
    for (int poll = 0; poll < 2; ++poll) {
        const ZoValue values = memory.getListData(requestFor(keys));
        QCOMPARE(values.getSize(), 2500);
        QCOMPARE(values[7].getType(), int(ZoValue::Invalid));
        QCOMPARE(countWrong(values), 1);
    }
    // Three chunks of which one is refused, its thousand keys one by one, then three chunks.
    const std::string statistics = server.command({"INFO", "commandstats"});
    QVERIFY2(contains(statistics, "cmdstat_mget:calls=1004,"), statistics.c_str());
    QCOMPARE(memory.getListData(requestFor({"Leg/Angle"})).getSize(), 1);
}

void TestRemoteMemory::forbiddenKeysAreAskedForAgainOnANewConnection()
{
    const RedisServer server(withAlice("~Arm/* +@all"));
    server.command({"SET", "Leg/Angle", "7"});
    ZoMemoryProxy memory = memoryOf(server, asAlice());
    const ZoValue request = requestFor({"Leg/Angle"});
    QCOMPARE(memory.getListData(request)[0].getType(), int(ZoValue::Invalid));
    server.command({"ACL", "SETUSER", "alice", "allkeys"});
    QCOMPARE(memory.getListData(request)[0].getType(), int(ZoValue::Invalid));
    server.command({"CLIENT", "KILL", "USER", "alice"});
    ZoValue values;
    const auto isRead = [&] {
        return errorOf([&] { values = memory.getListData(request); }).empty() &&
               values[0] == ZoValue(7);
    };
    TRY_VERIFY(isRead());
}

void TestRemoteMemory::aForbiddenCommandIsNamed()
{
    const RedisServer server(withAlice("~* +ping"));
    const auto broker = linkTo(server.port(), asAlice());
    ZoMemoryProxy memory = memoryOf(broker);
    QVERIFY(contains(errorOf([&] { memory.getListData(requestFor({"a"})); }), "MGET"));
    QVERIFY(contains(errorOf([&] { memory.getDataListName(); }), "SCAN"));
    QVERIFY(contains(errorOf([&] { memory.setText("Arm/A", "1"); }), "SET \"Arm/A\""));
    QVERIFY(broker->isConnected());
}

void TestRemoteMemory::aTooLargeValueIsInvalidAlone()
{
    const RedisServer server;
    fill(server, {"Arm/A", "Arm/B"});
    server.command({"SET", "Arm/Large", std::string((1 << 20) + 1, 'x')});
    server.command({"SET", "Arm/Huge", std::string(100 << 20, 'x')}); // more than a whole reply
    server.command({"SET", "Arm/Fits", std::string(1 << 20, 'x')});
    const auto broker = linkTo(server.port(), patientOptions());
    ZoMemoryProxy memory = memoryOf(broker);
    const auto since = broker->linkStatus().since;
    for (int poll = 0; poll < 2; ++poll) {
        const ZoValue values =
            memory.getListData(requestFor({"Arm/A", "Arm/Large", "Arm/Fits", "Arm/Huge", "Arm/B"}));
        QCOMPARE(values.getSize(), 5);
        QVERIFY(values[0] == ZoValue(0));
        QVERIFY(values[1] == ZoValue());
        QCOMPARE(values[2].asString().size(), std::size_t{1} << 20);
        QVERIFY(values[3] == ZoValue());
        QVERIFY(values[4] == ZoValue(1));
    }
    QVERIFY(broker->isConnected());
    QVERIFY(broker->linkStatus().since == since);
}

void TestRemoteMemory::manyThreadsShareOneProxy()
{
    const RedisServer server;
    const auto keys = numberedKeys(300);
    fill(server, keys);
    ZoMemoryProxy memory = memoryOf(server);
    std::atomic<int> wrong{0};
    runTogether(20, [&](int first) {
        for (int round = 0; round < 10; ++round) {
            const int at = (first * 7 + round) % 300;
            const ZoValue value = memory.getListData(requestFor({keys[at], keys[0]}));
            wrong += value[0] != ZoValue(at) || value[1] != ZoValue(0);
            memory.setData("Leg/" + std::to_string(first), ZoValue(round));
            wrong += memory.getDataListName().size() < keys.size();
        }
    });
    QCOMPARE(wrong.load(), 0);
}

REGISTER_TEST(TestRemoteMemory, NoApplication)
#include "tst_remote_memory.moc"
