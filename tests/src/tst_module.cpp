// SPDX-License-Identifier: MIT
#include "support/captured_stderr.h"
#include "support/fake_memory.h"
#include "support/guarded_test.h"
#include "support/lock_state.h"
#include "support/patience.h"
#include "support/random_records.h"
#include "support/register_test.h"
#include "support/watched_thread.h"

#include "gc_interface.h"
#include "module.h"

#include <zo/error.h>

#include <QtTest>

#include <algorithm>
#include <atomic>
#include <memory>
#include <new>
#include <optional>
#include <stdexcept>
#include <thread>

namespace {

/// Counts what it is told, and does what the test wants then.
class Observer final : public GCInterface
{
public:
    void refreshTree() override
    {
        ++refreshed;
        if (whenRefreshed)
            whenRefreshed();
    }
    void resetTree() override { ++reset; }

    int refreshed = 0;
    int reset = 0;
    std::function<void()> whenRefreshed;
};

/// A module over a fake memory, observed.
struct Bench
{
    Bench() { module.fGCInterface = &observer; }

    Model& model() { return *module.fModel; }
    const STMVal& record(std::size_t index) { return *module.fModel->fSTMVals.at(index); }

    FakeMemory memory;
    Observer observer;
    Module module{memory.proxy()};
};

ZoValue arrayOf(std::initializer_list<ZoValue> values)
{
    ZoValue result;
    result.arraySetSize(static_cast<int>(values.size()));
    int i = 0;
    for (const ZoValue& value : values)
        result[i++] = value;
    return result;
}

ZoValue requestOf(std::initializer_list<const char*> names)
{
    ZoValue result;
    result.arraySetSize(static_cast<int>(names.size()));
    int i = 0;
    for (const char* name : names)
        result[i++] = arrayOf({name, 0});
    return result;
}

} // namespace

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
    void theModelStaysFreeDuringTheCall();
    void keysThatVanishedDuringTheCallAreSkipped();
    void valuesGoToTheKeysOfTheMomentTheyArrive();
    void aSecondFetchWaitsForTheFirst();
    void theKeyListIsAppendedAsItIs();
    void anErrorOfTheKeyListIsPrinted();
    void otherExceptionsOfTheKeyListPass();
    void theKeyListTakesNoLock();
    void thePeriodIsTakenInPollingModeOnly();
    void aModuleWithoutModelIgnoresAChangeOfMode();
    void graphingImpliesWatching();
    void noWatchingImpliesNoGraphing();
    void flagsAreChangedByAliasAndOnTheFirstRecordOnly();
    void flagChangesWaitForReaders();
    void aFetchWaitsForAChangeOfTheKeys();
    void threadsFetchChangeAndReadTogether();
    void manyFlagsAreChangedAsOneByOne();
    void manyFlagsOfNothingChangeNothing();
    void repeatedFetchesAskForTheKeysOfTheMoment();
    void valuesGoWhereAScanWouldPutThemWhateverChanges();
    void aKeyPutInFrontWhileValuesAreStoredGetsItsValue();
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
    Bench bench;
    for (const char* name : {"b", "a", "", "b"})
        bench.module.addSTMVal(name, std::string("alias of ") + name);
    bench.module.getDatas(true);
    QCOMPARE(bench.memory.calls.size(), std::size_t{1});
    QCOMPARE(bench.memory.calls[0].first, std::string("getListData"));
    QVERIFY(bench.memory.calls[0].second == requestOf({"b", "a", "", "b"}));
    QCOMPARE(bench.memory.calls[0].second[0][1].getType(), int(ZoValue::Int));
}

void TestModule::aFetchOfTheWatchedAsksForThoseOnly()
{
    Bench bench;
    for (const char* name : {"a", "b", "c"})
        bench.module.addSTMVal(name, name);
    bench.module.watchStmVal("b", true);
    bench.module.graphStmVal("c", true);
    bench.module.getDatas(false);
    QCOMPARE(bench.memory.calls.size(), std::size_t{1});
    QVERIFY(bench.memory.calls[0].second == requestOf({"b", "c"}));
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
    Bench bench;
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
    Bench bench;
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
    Bench bench;
    bench.module.addSTMVal("k", "first");
    bench.module.addSTMVal("k", "second");
    bench.memory.answer = [](const ZoValue&) { return arrayOf({1, 2}); };
    bench.module.getDatas(true);
    QCOMPARE(bench.record(0).value, std::string("2"));
    QCOMPARE(bench.record(1).type, std::string());
}

void TestModule::anUnwatchedTwinInFrontTakesTheValue()
{
    Bench bench;
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
    Bench bench;
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
    Bench bench;
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
    Bench bench;
    bench.module.addSTMVal("a", "a");
    bench.memory.answer = [](const ZoValue&) -> ZoValue { throw std::runtime_error("other"); };
    QVERIFY_EXCEPTION_THROWN(bench.module.getDatas(true), std::runtime_error);
    bench.memory.answer = [](const ZoValue&) -> ZoValue { throw 7; };
    QVERIFY_EXCEPTION_THROWN(bench.module.getDatas(true), int);
    QVERIFY(LockAttempt::with<ZoCriticalSection>(bench.module.fMutex).succeeds());
    QVERIFY(LockAttempt::with<ZoCriticalSectionWrite>(bench.model().fMutex).succeeds());
    QCOMPARE(bench.observer.refreshed, 0);
}

void TestModule::theModelStaysFreeDuringTheCall()
{
    Bench bench;
    bench.module.addSTMVal("a", "a");
    std::optional<LockAttempt> fetching;
    bool fetchHeld = false;
    bool modelFree = false;
    bench.memory.answer = [&](const ZoValue& request) {
        fetching.emplace(LockAttempt::with<ZoCriticalSection>(bench.module.fMutex));
        fetchHeld = fetching->waits();
        modelFree = LockAttempt::with<ZoCriticalSectionWrite>(bench.model().fMutex).succeeds();
        return FakeMemory::echo(request);
    };
    bench.module.getDatas(true);
    QVERIFY(fetchHeld);
    QVERIFY(modelFree);
    QVERIFY(fetching->succeeds());
}

void TestModule::keysThatVanishedDuringTheCallAreSkipped()
{
    Bench bench;
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
    Bench bench;
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

void TestModule::aSecondFetchWaitsForTheFirst()
{
    Bench bench;
    bench.module.addSTMVal("a", "a");
    std::atomic<int> requests{0};
    bool waited = false;
    std::optional<WatchedThread> second;
    bench.memory.answer = [&](const ZoValue& request) {
        if (requests++ == 0) {
            second.emplace([&] { bench.module.getDatas(true); });
            waited = second->waits();
        }
        return FakeMemory::echo(request);
    };
    bench.module.getDatas(true);
    QVERIFY(second->ends());
    QVERIFY(waited);
    QCOMPARE(bench.memory.calls.size(), std::size_t{2});
    QCOMPARE(bench.observer.refreshed, 2);
}

void TestModule::theKeyListIsAppendedAsItIs()
{
    Bench bench;
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
    Bench bench;
    bench.memory.answer = [](const ZoValue&) -> ZoValue { throw ZoError("127.0.0.1: no link"); };
    std::vector<std::string> keys{"before"};
    const CapturedStderr printed;
    bench.module.getListDatas(keys);
    QCOMPARE(printed.text(), std::string("127.0.0.1: no link\n"));
    QCOMPARE(keys, std::vector<std::string>{"before"});
}

void TestModule::otherExceptionsOfTheKeyListPass()
{
    Bench bench;
    bench.memory.answer = [](const ZoValue&) -> ZoValue { throw std::bad_alloc(); };
    std::vector<std::string> keys{"before"};
    const CapturedStderr printed;
    QVERIFY_EXCEPTION_THROWN(bench.module.getListDatas(keys), std::bad_alloc);
    QCOMPARE(printed.text(), std::string());
    QCOMPARE(keys, std::vector<std::string>{"before"});
}

void TestModule::theKeyListTakesNoLock()
{
    Bench bench;
    bench.memory.answer = [](const ZoValue&) { return ZoValue(std::vector<std::string>{"a"}); };
    std::vector<std::string> keys;
    std::future<void> listed;
    const ZoCriticalSection fetch(bench.module.fMutex);
    const ZoCriticalSectionWrite write(bench.model().fMutex);
    listed = std::async(std::launch::async, [&] { bench.module.getListDatas(keys); });
    QCOMPARE(listed.wait_for(std::chrono::seconds(20)), std::future_status::ready);
    QCOMPARE(keys, std::vector<std::string>{"a"});
}

void TestModule::thePeriodIsTakenInPollingModeOnly()
{
    Bench bench;
    bench.module.changeSubscription(Model::SUBSCRIBE_NONE, 5);
    QCOMPARE(int(bench.model().fSubscribeMode), 1);
    QCOMPARE(bench.model().fTimePolicy, 100);
    bench.module.changeSubscription(Model::SUBSCRIBE_EVERY, 5);
    QCOMPARE(int(bench.model().fSubscribeMode), 0);
    QCOMPARE(bench.model().fTimePolicy, 60);
    bench.module.changeSubscription(Model::SUBSCRIBE_ON_DATA, 500);
    QCOMPARE(int(bench.model().fSubscribeMode), 2);
    QCOMPARE(bench.model().fTimePolicy, 60);
    bench.module.changeSubscription(Model::SUBSCRIBE_UNKNOWN, 500);
    QCOMPARE(int(bench.model().fSubscribeMode), 3);
    QCOMPARE(bench.model().fTimePolicy, 60);
    QVERIFY(bench.memory.calls.empty());
    QCOMPARE(bench.observer.refreshed, 0);
}

void TestModule::aModuleWithoutModelIgnoresAChangeOfMode()
{
    Bench bench;
    const boost::shared_ptr<Model> model = bench.module.fModel;
    bench.module.fModel.reset();
    bench.module.changeSubscription(Model::SUBSCRIBE_EVERY, 500);
    QCOMPARE(int(model->fSubscribeMode), 1);
    QCOMPARE(model->fTimePolicy, 100);
}

void TestModule::graphingImpliesWatching()
{
    Bench bench;
    bench.module.addSTMVal("k", "a");
    QVERIFY(bench.module.graphStmVal("a", true));
    QVERIFY(bench.record(0).graph && bench.record(0).watch);
    QVERIFY(bench.module.graphStmVal("a", false));
    QVERIFY(!bench.record(0).graph && bench.record(0).watch);
    QVERIFY(bench.module.watchStmVal("a", false));
    QVERIFY(bench.module.graphStmVal("a", false));
    QVERIFY(!bench.record(0).graph && !bench.record(0).watch);
}

void TestModule::noWatchingImpliesNoGraphing()
{
    Bench bench;
    bench.module.addSTMVal("k", "a");
    QVERIFY(bench.module.watchStmVal("a", true));
    QVERIFY(bench.record(0).watch && !bench.record(0).graph);
    bench.module.graphStmVal("a", true);
    QVERIFY(bench.module.watchStmVal("a", true));
    QVERIFY(bench.record(0).watch && bench.record(0).graph);
    QVERIFY(bench.module.watchStmVal("a", false));
    QVERIFY(!bench.record(0).watch && !bench.record(0).graph);
}

void TestModule::flagsAreChangedByAliasAndOnTheFirstRecordOnly()
{
    Bench bench;
    bench.module.addSTMVal("key", "alias");
    bench.module.addSTMVal("key2", "alias");
    QVERIFY(!bench.module.graphStmVal("key", true));
    QVERIFY(!bench.module.watchStmVal("key", true));
    QVERIFY(!bench.module.watchStmVal("", true));
    QVERIFY(!bench.record(0).watch && !bench.record(0).graph);
    QVERIFY(bench.module.graphStmVal("alias", true));
    QVERIFY(bench.record(0).graph);
    QVERIFY(!bench.record(1).graph && !bench.record(1).watch);
}

void TestModule::flagChangesWaitForReaders()
{
    Bench bench;
    bench.module.addSTMVal("k", "a");
    for (const bool graph : {true, false}) {
        bool changed = false;
        std::optional<WatchedThread> changer;
        {
            const ZoCriticalSectionRead reader(bench.model().fMutex);
            changer.emplace([&] {
                changed = graph ? bench.module.graphStmVal("a", true)
                                : bench.module.watchStmVal("a", false);
            });
            QVERIFY(changer->waits());
            QCOMPARE(bench.record(0).graph, !graph);
        }
        changer->join();
        QVERIFY(changed);
        QCOMPARE(bench.record(0).graph, graph);
        QVERIFY(LockAttempt::with<ZoCriticalSectionWrite>(bench.model().fMutex).succeeds());
    }
}

void TestModule::aFetchWaitsForAChangeOfTheKeys()
{
    Bench bench;
    bench.module.addSTMVal("old", "a");
    std::optional<WatchedThread> fetch;
    {
        const ZoCriticalSectionWrite writer(bench.model().fMutex);
        fetch.emplace([&] { bench.module.getDatas(true); });
        QVERIFY(fetch->waits());
        bench.model().fSTMVals[0]->names.first = "new";
    }
    fetch->join();
    QCOMPARE(bench.memory.calls.size(), std::size_t{1});
    QVERIFY(bench.memory.calls[0].second == requestOf({"new"}));
}

namespace {

/// Runs `step` over and over in a thread of its own, as long as it lives.
class Repeated
{
public:
    explicit Repeated(std::function<void()> step)
        : fThread([this, step = std::move(step)] {
              while (!fEnds) {
                  step();
                  ++fSteps;
              }
          })
    {
    }
    ~Repeated()
    {
        fEnds = true;
        fThread.join();
    }
    Repeated(const Repeated&) = delete;
    Repeated& operator=(const Repeated&) = delete;

    int steps() const { return fSteps; }

private:
    std::atomic<bool> fEnds{false};
    std::atomic<int> fSteps{0};
    std::thread fThread;
};

/// What a panel, its graph and a writer of files do with a model, each as one step.
std::vector<std::function<void()>> everydayWork(Module& module)
{
    const boost::shared_ptr<Model> model = module.fModel;
    return {
        [&module] { module.getDatas(true); },
        [&module] { module.getDatas(false); },
        [&module] { module.watchStmVal("a5", true); },
        [&module] { module.graphStmVal("a7", false); },
        [&module] {
            module.watchStmVals({"a1", "a7"}, false);
        },
        [&module] {
            module.graphStmVals({"a5", "a1"}, true);
        },
        [model] { model->refreshSTMVal("k3", ZoValue(0.5)); },
        [model] {
            model->addSTMVal("k3", "more");
            const ZoCriticalSectionWrite guard(model->fMutex);
            model->fSTMVals.resize(10);
        },
        [model] {
            double number = 0;
            model->getDoubleVal("a3", number);
        },
        [model, byAlias = AliasFinder(), numbers = std::vector<std::optional<double>>()]() mutable {
            model->getDoubleVals({"a3", "a9", "more", "none"}, byAlias, numbers);
        },
        [model] {
            const ZoCriticalSectionRead guard(model->fMutex);
            std::size_t length = 0;
            for (const auto& record : model->fSTMVals)
                length += record->type.size() + record->value.size() + record->watch;
            QVERIFY(length < 1000);
        },
    };
}

} // namespace

/// For the data-race checks: whatever goes without its lock here is seen by them.
void TestModule::threadsFetchChangeAndReadTogether()
{
    Bench bench;
    for (int i = 0; i < 10; ++i)
        bench.module.addSTMVal("k" + std::to_string(i), "a" + std::to_string(i));
    std::atomic<int> value{0};
    bench.memory.answer = [&](const ZoValue& request) {
        ZoValue reply = request;
        for (int i = 0; i < reply.getSize(); ++i)
            reply[i] = ++value;
        bench.memory.calls.clear();
        return reply;
    };
    {
        std::vector<std::unique_ptr<Repeated>> threads;
        for (auto& work : everydayWork(bench.module))
            threads.push_back(std::make_unique<Repeated>(std::move(work)));
        const auto isEnough = [](const auto& thread) { return thread->steps() >= 200; };
        QTRY_VERIFY_WITH_TIMEOUT(std::all_of(threads.begin(), threads.end(), isEnough), patience);
    }
    bench.module.getDatas(true);
    QCOMPARE(bench.record(0).type, std::string("int"));
    QCOMPARE(bench.record(9).value, std::to_string(value));
    QVERIFY(LockAttempt::with<ZoCriticalSection>(bench.module.fMutex).succeeds());
    QVERIFY(LockAttempt::with<ZoCriticalSectionWrite>(bench.model().fMutex).succeeds());
}

void TestModule::manyFlagsAreChangedAsOneByOne()
{
    Bench batch;
    Bench single;
    for (Bench* bench : {&batch, &single}) {
        RandomRecords random(bench->model(), 11);
        random.grow(40);
    }
    RandomRecords random(batch.model(), 12); // for its numbers only
    for (int step = 0; step < 500; ++step) {
        std::vector<std::string> aliases(random.below(5));
        std::generate(aliases.begin(), aliases.end(), [&] { return random.name(); });
        const bool flag = random.below(2) == 0;
        const bool graph = random.below(2) == 0;
        std::size_t found = 0;
        for (const std::string& alias : aliases)
            found += graph ? single.module.graphStmVal(alias, flag)
                           : single.module.watchStmVal(alias, flag);
        QCOMPARE(graph ? batch.module.graphStmVals(aliases, flag)
                       : batch.module.watchStmVals(aliases, flag),
                 found);
        for (std::size_t i = 0; i < 40; ++i) {
            QCOMPARE(batch.record(i).watch, single.record(i).watch);
            QCOMPARE(batch.record(i).graph, single.record(i).graph);
        }
    }
}

void TestModule::manyFlagsOfNothingChangeNothing()
{
    Bench bench;
    QCOMPARE(bench.module.graphStmVals({"a"}, true), std::size_t{0});
    bench.module.addSTMVal("key", "alias");
    QCOMPARE(bench.module.graphStmVals({}, true), std::size_t{0});
    QCOMPARE(bench.module.watchStmVals({"key", ""}, true), std::size_t{0});
    QVERIFY(!bench.record(0).graph && !bench.record(0).watch);
    QVERIFY(LockAttempt::with<ZoCriticalSectionWrite>(bench.model().fMutex).succeeds());
}

void TestModule::repeatedFetchesAskForTheKeysOfTheMoment()
{
    Bench bench;
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
    Bench bench;
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

void TestModule::aKeyPutInFrontWhileValuesAreStoredGetsItsValue()
{
    constexpr std::size_t count = 20000;
    Bench bench;
    for (std::size_t i = 0; i < count; ++i)
        bench.module.addSTMVal("key " + std::to_string(i), "a");
    Model& model = bench.model();
    STMVal& first = *model.fSTMVals.front();
    STMVal& last = *model.fSTMVals.back();
    std::atomic<bool> fetched{false};
    int inTime = 0;
    // Another thread renames the first record to the last one's key, between two stores.
    const auto rename = [&] {
        bool renamed = false;
        while (!renamed && !fetched) {
            const ZoCriticalSectionWrite guard(model.fMutex);
            renamed = !first.value.empty() && last.value.empty();
            if (renamed)
                first.names.first = last.names.first;
        }
        return renamed;
    };
    const QDeadlineTimer deadline(patience);
    while (inTime < 5 && !deadline.hasExpired()) {
        first.names.first = "first";
        first.value.clear();
        last.value.clear();
        fetched = false;
        auto other = std::async(std::launch::async, rename);
        bench.module.getDatas(true);
        fetched = true;
        if (other.get()) {
            ++inTime;
            QCOMPARE(first.value, last.names.first);
            QCOMPARE(last.value, std::string());
        }
    }
    QVERIFY(inTime >= 5);
}

void TestModule::recordsAreAddedToTheModel()
{
    Bench bench;
    const auto record = boost::make_shared<STMVal>();
    bench.module.addSTMVal("k", "a");
    bench.module.addSTMVal(record);
    QCOMPARE(bench.model().fSTMVals.size(), std::size_t{2});
    QCOMPARE(bench.record(0).names, std::make_pair(std::string("k"), std::string("a")));
    QCOMPARE(bench.model().fSTMVals[1].get(), record.get());
}

void TestModule::theInnerTestAnswersYes()
{
    Bench bench;
    QCOMPARE(bench.module.innerTest(), true);
    QVERIFY(bench.memory.calls.empty());
}

REGISTER_TEST(TestModule, NoApplication)
#include "tst_module.moc"
