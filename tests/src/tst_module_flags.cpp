// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/lock_state.h"
#include "support/module_bench.h"
#include "support/random_records.h"
#include "support/register_test.h"

#include <QtTest>

#include <algorithm>
#include <string>
#include <vector>

/// What a module changes in its model: how and which keys are followed.
class TestModuleFlags : public GuardedTest
{
    Q_OBJECT

private slots:
    void thePeriodIsTakenInPollingModeOnly();
    void aModuleWithoutModelIgnoresAChangeOfMode();
    void graphingImpliesWatching();
    void noWatchingImpliesNoGraphing();
    void flagsAreChangedByAliasAndOnTheFirstRecordOnly();
    void manyFlagsAreChangedAsOneByOne();
    void manyFlagsOfNothingChangeNothing();
};

void TestModuleFlags::thePeriodIsTakenInPollingModeOnly()
{
    ModuleBench bench;
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

void TestModuleFlags::aModuleWithoutModelIgnoresAChangeOfMode()
{
    ModuleBench bench;
    const boost::shared_ptr<Model> model = bench.module.fModel;
    bench.module.fModel.reset();
    bench.module.changeSubscription(Model::SUBSCRIBE_EVERY, 500);
    QCOMPARE(int(model->fSubscribeMode), 1);
    QCOMPARE(model->fTimePolicy, 100);
}

void TestModuleFlags::graphingImpliesWatching()
{
    ModuleBench bench;
    bench.module.addSTMVal("k", "a");
    QVERIFY(bench.module.graphStmVal("a", true));
    QVERIFY(bench.record(0).graph && bench.record(0).watch);
    QVERIFY(bench.module.graphStmVal("a", false));
    QVERIFY(!bench.record(0).graph && bench.record(0).watch);
    QVERIFY(bench.module.watchStmVal("a", false));
    QVERIFY(bench.module.graphStmVal("a", false));
    QVERIFY(!bench.record(0).graph && !bench.record(0).watch);
}

void TestModuleFlags::noWatchingImpliesNoGraphing()
{
    ModuleBench bench;
    bench.module.addSTMVal("k", "a");
    QVERIFY(bench.module.watchStmVal("a", true));
    QVERIFY(bench.record(0).watch && !bench.record(0).graph);
    bench.module.graphStmVal("a", true);
    QVERIFY(bench.module.watchStmVal("a", true));
    QVERIFY(bench.record(0).watch && bench.record(0).graph);
    QVERIFY(bench.module.watchStmVal("a", false));
    QVERIFY(!bench.record(0).watch && !bench.record(0).graph);
}

void TestModuleFlags::flagsAreChangedByAliasAndOnTheFirstRecordOnly()
{
    ModuleBench bench;
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

void TestModuleFlags::manyFlagsAreChangedAsOneByOne()
{
    ModuleBench batch;
    ModuleBench single;
    for (ModuleBench* bench : {&batch, &single}) {
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

void TestModuleFlags::manyFlagsOfNothingChangeNothing()
{
    ModuleBench bench;
    QCOMPARE(bench.module.graphStmVals({"a"}, true), std::size_t{0});
    bench.module.addSTMVal("key", "alias");
    QCOMPARE(bench.module.graphStmVals({}, true), std::size_t{0});
    QCOMPARE(bench.module.watchStmVals({"key", ""}, true), std::size_t{0});
    QVERIFY(!bench.record(0).graph && !bench.record(0).watch);
    QVERIFY(LockAttempt::with<ZoCriticalSectionWrite>(bench.model().fMutex).succeeds());
}

REGISTER_TEST(TestModuleFlags, NoApplication)
#include "tst_module_flags.moc"
