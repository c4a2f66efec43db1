// SPDX-License-Identifier: MIT
#include "support/captured_stderr.h"
#include "support/guarded_test.h"
#include "support/lock_state.h"
#include "support/module_bench.h"
#include "support/random_records.h"
#include "support/register_test.h"
#include "support/request_for.h"

#include <zo/error.h>

#include <QtTest>

#include <memory>
#include <new>
#include <stdexcept>

/// The way to the robot's memory, over a fake one that records what it is asked.
class TestModule : public GuardedTest
{
    Q_OBJECT

private slots:
    void aNewModuleHasAModelAndNoObserver();
    void theMemoryIsReleasedWithTheModule();
    void aFetchAsksForEveryKeyOnceInOrder();
    void aFetchOfTheWatchedAsksForThoseOnly();
    void nothingToReadMeansNoCallAndNoNotice_data();
    void nothingToReadMeansNoCallAndNoNotice();
    void theObserverIsToldOnceAfterTheValuesAreIn();
    void repeatedKeysAreAskedForAndTheLastValueStands();
    void anUnwatchedTwinInFrontTakesTheValue();
    void aReplyOfAnotherSizeIsDropped_data();
    void aReplyOfAnotherSizeIsDropped();
    void anErrorOfTheRobotIsDroppedInSilence();
    void otherExceptionsOfTheCallPassAndLeaveTheLocksFree();
    void keysThatVanishedDuringTheCallAreSkipped();
    void valuesGoToTheKeysOfTheMomentTheyArrive();
    void theKeyListIsAppendedAsItIs();
    void anErrorOfTheKeyListIsPrinted();
    void otherExceptionsOfTheKeyListPass();
    void repeatedFetchesAskForTheKeysOfTheMoment();
    void valuesGoWhereAScanWouldPutThemWhateverChanges();
    void recordsAreAddedToTheModel();
    void theInnerTestAnswersYes();
};

void TestModule::aNewModuleHasAModelAndNoObserver()
{
    FakeMemory memory;
    const auto proxy = memory.proxy();
    const Module module(proxy);
    QVERIFY(module.fModel && module.fModel->fSTMVals.empty());
    QVERIFY(!module.fGCInterface);
    QVERIFY(module.fMutex);
    QCOMPARE(module.fMemoryProxy.get(), proxy.get());
    QVERIFY(memory.calls.empty());
}

void TestModule::theMemoryIsReleasedWithTheModule()
{
    FakeMemory memory;
    const auto proxy = memory.proxy();
    auto module = std::make_unique<Module>(proxy);
    const boost::shared_ptr<Model> model = module->fModel;
    QCOMPARE(proxy.use_count(), 2L);
    QCOMPARE(model.use_count(), 2L);
    module.reset();
    QCOMPARE(proxy.use_count(), 1L);
    QCOMPARE(model.use_count(), 1L);
}

void TestModule::aFetchAsksForEveryKeyOnceInOrder()
{
    ModuleBench bench;
    for (const char* name : {"b", "a", "", "b"})
        bench.module.addSTMVal(name, std::string("alias of ") + name);
    bench.module.getDatas(true);
    QCOMPARE(bench.memory.calls.size(), std::size_t{1});
    QCOMPARE(bench.memory.calls[0].first, std::string("getListData"));
    QVERIFY(bench.memory.calls[0].second == requestFor({"b", "a", "", "b"}));
    QCOMPARE(bench.memory.calls[0].second[0][1].getType(), int(ZoValue::Int));
}

void TestModule::aFetchOfTheWatchedAsksForThoseOnly()
{
    ModuleBench bench;
    for (const char* name : {"a", "b", "c"})
        bench.module.addSTMVal(name, name);
    bench.module.watchStmVal("b", true);
    bench.module.graphStmVal("c", true);
    bench.module.getDatas(false);
    QCOMPARE(bench.memory.calls.size(), std::size_t{1});
    QVERIFY(bench.memory.calls[0].second == requestFor({"b", "c"}));
    QCOMPARE(bench.record(0).value, std::string());
    QCOMPARE(bench.record(1).value, std::string("b"));
    QCOMPARE(bench.record(2).value, std::string("c"));
}

void TestModule::nothingToReadMeansNoCallAndNoNotice_data()
{
    QTest::addColumn<bool>("all");
    QTest::addColumn<bool>("withKey");
    QTest::newRow("no keys, all") << true << false;
    QTest::newRow("no keys, watched") << false << false;
    QTest::newRow("no key watched") << false << true;
}

void TestModule::nothingToReadMeansNoCallAndNoNotice()
{
    QFETCH(bool, all);
    QFETCH(bool, withKey);
    ModuleBench bench;
    bench.module.fGCInterface = nullptr; // not even needed
    if (withKey)
        bench.module.addSTMVal("k", "a");
    bench.module.getDatas(all);
    bench.module.fGCInterface = &bench.observer;
    bench.module.getDatas(all);
    QVERIFY(bench.memory.calls.empty());
    QCOMPARE(bench.observer.refreshed, 0);
}

void TestModule::theObserverIsToldOnceAfterTheValuesAreIn()
{
    ModuleBench bench;
    bench.module.addSTMVal("a", "A");
    bench.module.addSTMVal("b", "B");
    bench.memory.answer = [](const ZoValue&) { return arrayOf({1, 0.5}); };
    std::string seen;
    bench.observer.whenRefreshed = [&] {
        for (const auto& record : bench.model().fSTMVals)
            seen += record->type + " " + record->value + ";";
        const ZoCriticalSectionWrite free(bench.model().fMutex); // nobody holds the model then
    };
    bench.module.getDatas(true);
    QCOMPARE(seen, std::string("int 1;float 0.5;"));
    QCOMPARE(bench.observer.refreshed, 1);
    QCOMPARE(bench.observer.reset, 0);
}

void TestModule::repeatedKeysAreAskedForAndTheLastValueStands()
{
    ModuleBench bench;
    bench.module.addSTMVal("k", "first");
    bench.module.addSTMVal("k", "second");
    bench.memory.answer = [](const ZoValue&) { return arrayOf({1, 2}); };
    bench.module.getDatas(true);
    QCOMPARE(bench.record(0).value, std::string("2"));
    QCOMPARE(bench.record(1).type, std::string());
}

void TestModule::anUnwatchedTwinInFrontTakesTheValue()
{
    ModuleBench bench;
    bench.module.addSTMVal("k", "unwatched");
    bench.module.addSTMVal("k", "watched");
    bench.module.watchStmVal("watched", true);
    bench.module.getDatas(false);
    QCOMPARE(bench.record(0).value, std::string("k"));
    QCOMPARE(bench.record(1).value, std::string());
}

void TestModule::aReplyOfAnotherSizeIsDropped_data()
{
    QTest::addColumn<int>("size");
    QTest::newRow("one short") << 1;
    QTest::newRow("one more") << 3;
    QTest::newRow("empty") << 0;
    QTest::newRow("no array") << -1;
}

void TestModule::aReplyOfAnotherSizeIsDropped()
{
    QFETCH(int, size);
    ModuleBench bench;
    bench.module.addSTMVal("a", "a");
    bench.module.addSTMVal("b", "b");
    bench.module.getDatas(true);
    bench.memory.answer = [size](const ZoValue&) {
        ZoValue reply("no array");
        if (size >= 0)
            reply.arraySetSize(size);
        return reply;
    };
    bench.module.getDatas(true);
    QCOMPARE(bench.memory.calls.size(), std::size_t{2});
    QCOMPARE(bench.record(0).value, std::string("a"));
    QCOMPARE(bench.record(1).type, std::string("string"));
    QCOMPARE(bench.observer.refreshed, 1);
}

void TestModule::anErrorOfTheRobotIsDroppedInSilence()
{
    ModuleBench bench;
    bench.module.addSTMVal("a", "a");
    bench.memory.answer = [](const ZoValue&) -> ZoValue { throw ZoError("link is down"); };
    const CapturedStderr printed;
    bench.module.getDatas(true);
    QCOMPARE(printed.text(), std::string());
    QCOMPARE(bench.record(0).type, std::string());
    QCOMPARE(bench.observer.refreshed, 0);
    bench.memory.answer = FakeMemory::echo;
    bench.module.getDatas(true);
    QCOMPARE(bench.record(0).value, std::string("a"));
    QCOMPARE(bench.observer.refreshed, 1);
}

void TestModule::otherExceptionsOfTheCallPassAndLeaveTheLocksFree()
{
    ModuleBench bench;
    bench.module.addSTMVal("a", "a");
    bench.memory.answer = [](const ZoValue&) -> ZoValue { throw std::runtime_error("other"); };
    QVERIFY_EXCEPTION_THROWN(bench.module.getDatas(true), std::runtime_error);
    bench.memory.answer = [](const ZoValue&) -> ZoValue { throw 7; };
    QVERIFY_EXCEPTION_THROWN(bench.module.getDatas(true), int);
    QVERIFY(LockAttempt::with<ZoCriticalSection>(bench.module.fMutex).succeeds());
    QVERIFY(LockAttempt::with<ZoCriticalSectionWrite>(bench.model().fMutex).succeeds());
    QCOMPARE(bench.observer.refreshed, 0);
}

void TestModule::keysThatVanishedDuringTheCallAreSkipped()
{
    ModuleBench bench;
    for (const char* name : {"a", "b", "c"})
        bench.module.addSTMVal(name, name);
    bench.memory.answer = [&](const ZoValue& request) {
        bench.model().fSTMVals.erase(bench.model().fSTMVals.begin() + 1);
        return FakeMemory::echo(request);
    };
    bench.module.getDatas(true);
    QCOMPARE(bench.record(0).value, std::string("a"));
    QCOMPARE(bench.record(1).value, std::string("c"));
    QCOMPARE(bench.observer.refreshed, 1);
    bench.memory.answer = [&](const ZoValue& request) {
        bench.model().resetSTMVals();
        return FakeMemory::echo(request);
    };
    bench.module.getDatas(true);
    QVERIFY(bench.model().fSTMVals.empty());
    QCOMPARE(bench.observer.refreshed, 2); // the exchange itself went well
}

void TestModule::valuesGoToTheKeysOfTheMomentTheyArrive()
{
    ModuleBench bench;
    bench.module.addSTMVal("a", "old a");
    bench.module.addSTMVal("b", "old b");
    bench.memory.answer = [&](const ZoValue&) {
        auto& records = bench.model().fSTMVals;
        records[1]->names.first = "renamed";
        bench.module.addSTMVal("b", "new b");
        auto twin = boost::make_shared<STMVal>();
        twin->names = {"a", "new a in front"};
        records.insert(records.begin(), twin);
        return arrayOf({1, 2});
    };
    bench.module.getDatas(true);
    QCOMPARE(bench.record(0).value, std::string("1")); // the new a in front
    QCOMPARE(bench.record(1).value, std::string());
    QCOMPARE(bench.record(2).value, std::string()); // renamed
    QCOMPARE(bench.record(3).value, std::string("2"));
}

void TestModule::theKeyListIsAppendedAsItIs()
{
    ModuleBench bench;
    bench.memory.answer = [](const ZoValue&) {
        return ZoValue(std::vector<std::string>{"z", "Device/x", "a", "z", ""});
    };
    std::vector<std::string> keys{"before"};
    bench.module.getListDatas(keys);
    const std::vector<std::string> expected{"before", "z", "Device/x", "a", "z", ""};
    QCOMPARE(keys, expected);
    QCOMPARE(bench.memory.calls.size(), std::size_t{1});
    QCOMPARE(bench.memory.calls[0].first, std::string("getDataListName"));
    QCOMPARE(bench.memory.calls[0].second.getType(), int(ZoValue::Invalid));
}

void TestModule::anErrorOfTheKeyListIsPrinted()
{
    ModuleBench bench;
    bench.memory.answer = [](const ZoValue&) -> ZoValue { throw ZoError("127.0.0.1: no link"); };
    std::vector<std::string> keys{"before"};
    const CapturedStderr printed;
    bench.module.getListDatas(keys);
    QCOMPARE(printed.text(), std::string("127.0.0.1: no link\n"));
    QCOMPARE(keys, std::vector<std::string>{"before"});
}

void TestModule::otherExceptionsOfTheKeyListPass()
{
    ModuleBench bench;
    bench.memory.answer = [](const ZoValue&) -> ZoValue { throw std::bad_alloc(); };
    std::vector<std::string> keys{"before"};
    const CapturedStderr printed;
    QVERIFY_EXCEPTION_THROWN(bench.module.getListDatas(keys), std::bad_alloc);
    QCOMPARE(printed.text(), std::string());
    QCOMPARE(keys, std::vector<std::string>{"before"});
}

void TestModule::repeatedFetchesAskForTheKeysOfTheMoment()
{
    ModuleBench bench;
    RandomRecords random(bench.model(), 3);
    for (int step = 0; step < 1000; ++step) {
        random.change();
        const bool all = random.below(2) == 0;
        std::vector<std::string> expected;
        for (const auto& record : bench.model().fSTMVals) {
            if (all || record->watch)
                expected.push_back(record->names.first);
        }
        bench.memory.calls.clear();
        bench.module.getDatas(all);
        QCOMPARE(bench.memory.calls.size(), std::size_t{expected.empty() ? 0U : 1U});
        if (expected.empty())
            continue;
        const ZoValue& request = bench.memory.calls[0].second;
        QCOMPARE(request.getSize(), int(expected.size()));
        for (int i = 0; i < request.getSize(); ++i)
            QVERIFY(request[i] == arrayOf({expected[std::size_t(i)], 0}));
    }
}

void TestModule::valuesGoWhereAScanWouldPutThemWhateverChanges()
{
    ModuleBench bench;
    RandomRecords random(bench.model(), 4);
    random.grow(15);
    int number = 0;
    std::vector<std::pair<const STMVal*, std::string>> expected;
    bench.memory.answer = [&](const ZoValue& request) {
        for (std::size_t changes = random.below(5); changes > 0; --changes)
            random.change();
        ZoValue reply = request;
        for (int i = 0; i < reply.getSize(); ++i)
            reply[i] = ++number;
        // What plain scans would do, told by a copy of the records' keys.
        expected.clear();
        for (const auto& record : bench.model().fSTMVals)
            expected.emplace_back(record.get(), record->value);
        for (int i = 0; i < reply.getSize(); ++i) {
            for (const auto& record : bench.model().fSTMVals) {
                if (record->names.first != request[i][0].asString())
                    continue;
                for (auto& [pointer, value] : expected)
                    value = pointer == record.get() ? reply[i].toString(ZoWhole) : value;
                break;
            }
        }
        return reply;
    };
    for (int step = 0; step < 1000; ++step) {
        random.change();
        expected.clear();
        bench.module.getDatas(random.below(2) == 0);
        for (const auto& [record, value] : expected)
            QCOMPARE(record->value, value);
    }
}

void TestModule::recordsAreAddedToTheModel()
{
    ModuleBench bench;
    const auto record = boost::make_shared<STMVal>();
    bench.module.addSTMVal("k", "a");
    bench.module.addSTMVal(record);
    QCOMPARE(bench.model().fSTMVals.size(), std::size_t{2});
    QCOMPARE(bench.record(0).names, std::make_pair(std::string("k"), std::string("a")));
    QCOMPARE(bench.model().fSTMVals[1].get(), record.get());
}

void TestModule::theInnerTestAnswersYes()
{
    ModuleBench bench;
    QCOMPARE(bench.module.innerTest(), true);
    QVERIFY(bench.memory.calls.empty());
}

REGISTER_TEST(TestModule, NoApplication)
#include "tst_module.moc"
