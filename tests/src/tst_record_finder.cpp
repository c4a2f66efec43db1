// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/random_records.h"
#include "support/register_test.h"

#include "record_finder.h"

#include <QtTest>

namespace {

using Records = RecordFinder::Records;

/// Takes all names for the same until it compares them; or all of the same length.
class CollidingFinder final : public RecordFinder
{
public:
    explicit CollidingFinder(Hash hash) : RecordFinder(&Names::second, hash) {}
};

const STMVal* scanForKey(const Records& records, const std::string& key)
{
    for (const auto& record : records)
        if (record->names.first == key)
            return record.get();
    return nullptr;
}

const STMVal* scanForAlias(const Records& records, const std::string& alias)
{
    for (const auto& record : records)
        if (record->names.second == alias)
            return record.get();
    return nullptr;
}

} // namespace

/// Look-ups of many records in a row, always as a scan from the front would answer.
class TestRecordFinder : public GuardedTest
{
    Q_OBJECT

private slots:
    void nothingIsFoundInAnEmptyModel();
    void theFirstOfEqualNamesIsFound();
    void keysAndAliasesAreToldApart();
    void aChangeBetweenBatchesIsSeen();
    void namesWithOneHashAreToldApart();
    void aNameThatChangesUnderOneHashIsSeen();
    void oneFinderServesSeveralModels();
    void everyAnswerIsThatOfAScan_data();
    void everyAnswerIsThatOfAScan();
    void aBatchCostsOnePassOverTheRecords();
    void aBatchLooksNoFurtherThanItFinds();
};

void TestRecordFinder::nothingIsFoundInAnEmptyModel()
{
    Model model;
    AliasFinder finder;
    QVERIFY(!finder.find(model.fSTMVals, "a"));
    finder.begin();
    QVERIFY(!finder.find(model.fSTMVals, ""));
}

void TestRecordFinder::theFirstOfEqualNamesIsFound()
{
    Model model;
    for (const char* name : {"x", "y", "x", "y", ""})
        model.addSTMVal(name, name);
    AliasFinder finder;
    finder.begin();
    QCOMPARE(finder.find(model.fSTMVals, "y"), model.fSTMVals[1].get());
    QCOMPARE(finder.find(model.fSTMVals, "x"), model.fSTMVals[0].get());
    QCOMPARE(finder.find(model.fSTMVals, ""), model.fSTMVals[4].get());
    QVERIFY(!finder.find(model.fSTMVals, "z"));
    QVERIFY(!finder.find(model.fSTMVals, std::string("x\0", 2)));
}

void TestRecordFinder::keysAndAliasesAreToldApart()
{
    Model model;
    model.addSTMVal("a", "b");
    model.addSTMVal("b", "a");
    KeyFinder byKey;
    AliasFinder byAlias;
    QCOMPARE(byKey.find(model.fSTMVals, "b"), model.fSTMVals[1].get());
    QCOMPARE(byAlias.find(model.fSTMVals, "b"), model.fSTMVals[0].get());
}

void TestRecordFinder::aChangeBetweenBatchesIsSeen()
{
    Model model;
    for (const char* name : {"a", "b", "c"})
        model.addSTMVal(name, name);
    AliasFinder finder;
    finder.begin();
    QCOMPARE(finder.find(model.fSTMVals, "c"), model.fSTMVals[2].get());
    model.fSTMVals[0]->names.second = "c"; // what was found is still there, but not the first
    finder.begin();
    QCOMPARE(finder.find(model.fSTMVals, "c"), model.fSTMVals[0].get());
    QVERIFY(!finder.find(model.fSTMVals, "a"));
    model.fSTMVals[2]->names.second = "new"; // nothing of this name was there to be remembered
    finder.begin();
    QCOMPARE(finder.find(model.fSTMVals, "new"), model.fSTMVals[2].get());
}

void TestRecordFinder::namesWithOneHashAreToldApart()
{
    Model model;
    for (const char* name : {"a", "b", "c", "b"})
        model.addSTMVal(name, name);
    CollidingFinder finder([](const std::string&) { return std::uint32_t{7}; });
    finder.begin();
    QCOMPARE(finder.find(model.fSTMVals, "c"), model.fSTMVals[2].get());
    QCOMPARE(finder.find(model.fSTMVals, "b"), model.fSTMVals[1].get());
    QVERIFY(!finder.find(model.fSTMVals, "d"));
}

void TestRecordFinder::aNameThatChangesUnderOneHashIsSeen()
{
    Model model;
    for (const char* name : {"a", "b", "c"})
        model.addSTMVal(name, name);
    CollidingFinder finder([](const std::string&) { return std::uint32_t{7}; });
    finder.begin();
    QCOMPARE(finder.find(model.fSTMVals, "c"), model.fSTMVals[2].get());
    model.fSTMVals[1]->names.second = "c";
    finder.begin();
    QCOMPARE(finder.find(model.fSTMVals, "c"), model.fSTMVals[1].get());
    QVERIFY(!finder.find(model.fSTMVals, "b"));
}

void TestRecordFinder::oneFinderServesSeveralModels()
{
    Model one;
    Model other;
    one.addSTMVal("k", "a");
    other.addSTMVal("k", "b");
    AliasFinder finder;
    for (int i = 0; i < 2; ++i) {
        finder.begin();
        QCOMPARE(finder.find(one.fSTMVals, "a"), one.fSTMVals[0].get());
        finder.begin();
        QCOMPARE(finder.find(other.fSTMVals, "b"), other.fSTMVals[0].get());
        QVERIFY(!finder.find(other.fSTMVals, "a"));
    }
}

void TestRecordFinder::everyAnswerIsThatOfAScan_data()
{
    QTest::addColumn<unsigned>("seed");
    for (unsigned seed = 1; seed <= 10; ++seed)
        QTest::addRow("seed %u", seed) << seed;
}

void TestRecordFinder::everyAnswerIsThatOfAScan()
{
    QFETCH(unsigned, seed);
    Model model;
    RandomRecords random(model, seed);
    const Records& records = model.fSTMVals;
    KeyFinder byKey;
    AliasFinder byAlias;
    CollidingFinder colliding([](const std::string& text) { return std::uint32_t(text.size()); });
    random.grow(20);
    for (int step = 0; step < 2000; ++step) {
        for (std::size_t changes = random.below(4); changes > 0; --changes)
            random.change();
        byKey.begin();
        byAlias.begin();
        colliding.begin();
        for (int look = 0; look < 5; ++look) {
            const std::string name = random.name();
            QCOMPARE(byKey.find(records, name), scanForKey(records, name));
            QCOMPARE(byAlias.find(records, name), scanForAlias(records, name));
            QCOMPARE(colliding.find(records, name), scanForAlias(records, name));
        }
    }
}

namespace {

int hashes = 0;

std::uint32_t countedHash(const std::string& text)
{
    ++hashes;
    return static_cast<std::uint32_t>(std::hash<std::string>()(text));
}

} // namespace

void TestRecordFinder::aBatchCostsOnePassOverTheRecords()
{
    Model model;
    constexpr int count = 1000;
    for (int i = 0; i < count; ++i)
        model.addSTMVal("k", std::to_string(i));
    CollidingFinder finder(countedHash);
    const auto batch = [&] {
        hashes = 0;
        finder.begin();
        for (int i = count - 1; i >= 0; --i)
            QCOMPARE(finder.find(model.fSTMVals, std::to_string(i)),
                     model.fSTMVals[std::size_t(i)].get());
    };
    batch();
    QVERIFY(hashes <= 2 * count);
    batch();
    QVERIFY(hashes <= 2 * count);
    // Other records under the same names: the names count.
    model.fSTMVals[501]->names.second.swap(model.fSTMVals[502]->names.second);
    std::swap(model.fSTMVals[501], model.fSTMVals[502]);
    batch();
    QVERIFY(hashes <= 2 * count);
    model.fSTMVals[0]->names.second = "other";
    hashes = 0;
    finder.begin();
    for (int i = 1; i < count; ++i)
        QVERIFY(finder.find(model.fSTMVals, std::to_string(i)));
    QVERIFY(hashes <= 2 * count + 1); // made anew once
}

void TestRecordFinder::aBatchLooksNoFurtherThanItFinds()
{
    Model model;
    for (int i = 0; i < 1000; ++i)
        model.addSTMVal("k", std::to_string(i));
    CollidingFinder finder(countedHash);
    finder.find(model.fSTMVals, "9");
    hashes = 0;
    finder.begin();
    QVERIFY(finder.find(model.fSTMVals, "9"));
    QVERIFY(hashes <= 11);
}

REGISTER_TEST(TestRecordFinder, NoApplication)
#include "tst_record_finder.moc"
