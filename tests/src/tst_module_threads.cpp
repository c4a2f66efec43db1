// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/lock_state.h"
#include "support/module_bench.h"
#include "support/patience.h"
#include "support/register_test.h"
#include "support/request_for.h"
#include "support/watched_thread.h"

#include <QtTest>

#include <algorithm>
#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

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
    ~Repeated() { fEnds = true; }
    Repeated(const Repeated&) = delete;
    Repeated& operator=(const Repeated&) = delete;

    int steps() const { return fSteps; }

private:
    std::atomic<bool> fEnds{false};
    std::atomic<int> fSteps{0};
    WatchedThread fThread;
};

/// What a panel, its graph and a writer of files do with a model, each as one step.
std::vector<std::function<void()>> everydayWork(Module& module)
{
    const boost::shared_ptr<Model> model = module.fModel;
    const std::vector<std::string> watched = {"a1", "a7"};
    const std::vector<std::string> graphed = {"a5", "a1"};
    return {
        [&module] { module.getDatas(true); },
        [&module] { module.getDatas(false); },
        [&module] { module.watchStmVal("a5", true); },
        [&module] { module.graphStmVal("a7", false); },
        [&module, watched] { module.watchStmVals(watched, false); },
        [&module, graphed] { module.graphStmVals(graphed, true); },
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

/// Who waits for whom when a fetch, changes and readers meet.
class TestModuleThreads : public GuardedTest
{
    Q_OBJECT

private slots:
    void theModelStaysFreeDuringTheCall();
    void aSecondFetchWaitsForTheFirst();
    void theKeyListTakesNoLock();
    void flagChangesWaitForReaders();
    void aFetchWaitsForAChangeOfTheKeys();
    void threadsFetchChangeAndReadTogether();
    void aKeyPutInFrontWhileValuesAreStoredGetsItsValue();
};

void TestModuleThreads::theModelStaysFreeDuringTheCall()
{
    ModuleBench bench;
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

void TestModuleThreads::aSecondFetchWaitsForTheFirst()
{
    ModuleBench bench;
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

void TestModuleThreads::theKeyListTakesNoLock()
{
    ModuleBench bench;
    bench.memory.answer = [](const ZoValue&) { return ZoValue(std::vector<std::string>{"a"}); };
    std::vector<std::string> keys;
    std::optional<WatchedThread> listing;
    const ZoCriticalSection fetch(bench.module.fMutex);
    const ZoCriticalSectionWrite write(bench.model().fMutex);
    listing.emplace([&] { bench.module.getListDatas(keys); });
    QVERIFY(listing->ends());
    QCOMPARE(keys, std::vector<std::string>{"a"});
}

void TestModuleThreads::flagChangesWaitForReaders()
{
    ModuleBench bench;
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

void TestModuleThreads::aFetchWaitsForAChangeOfTheKeys()
{
    ModuleBench bench;
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
    QVERIFY(bench.memory.calls[0].second == requestFor({"new"}));
}

/// For the data-race checks: whatever goes without its lock here is seen by them.
void TestModuleThreads::threadsFetchChangeAndReadTogether()
{
    ModuleBench bench;
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
        TRY_VERIFY(std::all_of(threads.begin(), threads.end(), isEnough));
    }
    bench.module.getDatas(true);
    QCOMPARE(bench.record(0).type, std::string("int"));
    QCOMPARE(bench.record(9).value, std::to_string(value));
    QVERIFY(LockAttempt::with<ZoCriticalSection>(bench.module.fMutex).succeeds());
    QVERIFY(LockAttempt::with<ZoCriticalSectionWrite>(bench.model().fMutex).succeeds());
}

void TestModuleThreads::aKeyPutInFrontWhileValuesAreStoredGetsItsValue()
{
    constexpr std::size_t count = 20000;
    ModuleBench bench;
    for (std::size_t i = 0; i < count; ++i)
        bench.module.addSTMVal("key " + std::to_string(i), "a");
    Model& model = bench.model();
    STMVal& first = *model.fSTMVals.front();
    STMVal& last = *model.fSTMVals.back();
    std::atomic<bool> fetched{false};
    int inTime = 0;
    bool renamed = false;
    // Another thread renames the first record to the last one's key, between two stores.
    const auto rename = [&] {
        while (!renamed && !fetched) {
            const ZoCriticalSectionWrite guard(model.fMutex);
            renamed = !first.value.empty() && last.value.empty();
            if (renamed)
                first.names.first = last.names.first;
        }
    };
    const QDeadlineTimer deadline(patience);
    while (inTime < 5 && !deadline.hasExpired()) {
        first.names.first = "first";
        first.value.clear();
        last.value.clear();
        fetched = false;
        renamed = false;
        WatchedThread other(rename);
        bench.module.getDatas(true);
        fetched = true;
        other.join();
        if (renamed) {
            ++inTime;
            QCOMPARE(first.value, last.names.first);
            QCOMPARE(last.value, std::string());
        }
    }
    QVERIFY(inTime >= 5);
}

REGISTER_TEST(TestModuleThreads, NoApplication)
#include "tst_module_threads.moc"
