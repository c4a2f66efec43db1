// SPDX-License-Identifier: MIT
#include "support/counted_memory.h"
#include "support/guarded_test.h"
#include "support/lock_state.h"
#include "support/register_test.h"
#include "support/request_for.h"

#include "model.h"
#include "record_finder.h"

#include <QtTest>

#include <new>
#include <string>
#include <vector>

namespace {

/// Whether `action` gets along with this many allocations.
template <class Action>
bool succeedsWith(int count, Action action)
{
    const MemoryShortage shortage(count);
    try {
        action();
    } catch (const std::bad_alloc&) {
        return false;
    }
    return true;
}

/// Keys with values of many lengths, each as long at every exchange.
struct Exchange
{
    explicit Exchange(Model& model)
    {
        std::vector<std::string> names;
        reply.arraySetSize(fCount);
        for (int i = 0; i < fCount; ++i) {
            names.push_back("a name beyond the small text buffer " + std::to_string(i));
            model.addSTMVal(names.back(), names.back());
            reply[i] = std::string(std::size_t(i * 7919 % 500), 'x');
        }
        request = requestFor(names);
    }

    static constexpr int fCount = 100;
    ZoValue request;
    ZoValue reply;
};

} // namespace

Q_DECLARE_METATYPE(ZoValue)

/// What reading and storing ask of the memory, and what stays when there is none.
class TestModelMemory : public GuardedTest
{
    Q_OBJECT

private slots:
    void aTextThatCannotBeStoredLeavesTheOldOne_data();
    void aTextThatCannotBeStoredLeavesTheOldOne();
    void everyNumberIsStoredWhereALongOneWas();
    void storingTextsAsLongAsBeforeAllocatesNothing();
    void readingTheSameNumbersAgainAllocatesNothing();
    void aRecordThatCannotBeAddedIsNotThere();
};

void TestModelMemory::aTextThatCannotBeStoredLeavesTheOldOne_data()
{
    QTest::addColumn<ZoValue>("value");
    QTest::newRow("number") << ZoValue(0.12345678901234567);
    QTest::newRow("text") << ZoValue(std::string(2000, 'x'));
    QTest::newRow("array") << ZoValue(
        std::vector<std::string>(40, "a text beyond the small text buffer"));
}

void TestModelMemory::aTextThatCannotBeStoredLeavesTheOldOne()
{
    QFETCH(ZoValue, value);
    int failures = 0;
    for (bool stored = false; !stored; failures += stored ? 0 : 1) {
        Model model;
        model.addSTMVal("k", "a");
        model.refreshSTMVal("k", ZoValue("old"));
        stored = succeedsWith(failures, [&] { model.refreshSTMVal("k", value); });
        QCOMPARE(model.fSTMVals[0]->value, stored ? value.toString(ZoNormal) : std::string("old"));
        QVERIFY(LockAttempt::with<ZoCriticalSectionWrite>(model.fMutex).succeeds());
    }
    QVERIFY(failures > 1); // to make the new text, and to take it over
}

/// What is sure to fit is written straight into the record.
void TestModelMemory::everyNumberIsStoredWhereALongOneWas()
{
    Model model;
    model.addSTMVal("k", "a");
    model.refreshSTMVal("k", ZoValue(0.12345678901234567));
    using Doubles = std::numeric_limits<double>;
    using Ints = std::numeric_limits<std::int64_t>;
    for (const ZoValue& value : {ZoValue(-2.2250738585072014e-308), ZoValue(-Doubles::max()),
                                 ZoValue(-Doubles::infinity()), ZoValue(Doubles::quiet_NaN()),
                                 ZoValue(Ints::min()), ZoValue(7)}) {
        QVERIFY(succeedsWith(0, [&] { model.refreshSTMVal("k", value); }));
        QCOMPARE(model.fSTMVals[0]->value, value.toString(ZoWhole));
    }
}

void TestModelMemory::storingTextsAsLongAsBeforeAllocatesNothing()
{
    Model model;
    const Exchange exchange(model);
    KeyFinder byKey;
    const auto store = [&] { model.refreshSTMVals(exchange.request, exchange.reply, byKey); };
    QVERIFY(allocationsOf(store) > 0);
    QCOMPARE(allocationsOf(store), std::size_t{0});
    QCOMPARE(allocationsOf([&] {
                 for (int i = 0; i < Exchange::fCount; ++i)
                     model.refreshSTMVal(exchange.request[i][0].asString(), exchange.reply[i]);
             }),
             0);
}

void TestModelMemory::readingTheSameNumbersAgainAllocatesNothing()
{
    Model model;
    const Exchange exchange(model);
    std::vector<std::string> aliases;
    for (const auto& record : model.fSTMVals) {
        record->type = "float";
        aliases.push_back(record->names.second);
    }
    AliasFinder byAlias;
    std::vector<std::optional<double>> numbers;
    const auto read = [&] { model.getDoubleVals(aliases, byAlias, numbers); };
    QVERIFY(allocationsOf(read) > 0);
    QCOMPARE(allocationsOf(read), std::size_t{0});
}

void TestModelMemory::aRecordThatCannotBeAddedIsNotThere()
{
    const std::string name = "a name beyond the small text buffer";
    int failures = 0;
    for (bool added = false; !added; failures += added ? 0 : 1) {
        Model model;
        added = succeedsWith(failures, [&] { model.addSTMVal(name, name); });
        QCOMPARE(model.fSTMVals.size(), std::size_t(added ? 1 : 0));
        QVERIFY(LockAttempt::with<ZoCriticalSectionWrite>(model.fMutex).succeeds());
    }
    QVERIFY(failures > 2);
}

REGISTER_TEST(TestModelMemory, NoApplication)
#include "tst_model_memory.moc"
