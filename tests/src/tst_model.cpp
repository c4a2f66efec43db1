// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/lock_state.h"
#include "support/random_records.h"
#include "support/register_test.h"
#include "support/watched_thread.h"

#include "model.h"
#include "record_finder.h"

#include <zo/error.h>

#include <boost/make_shared.hpp>
#include <boost/weak_ptr.hpp>

#include <QtTest>

#include <cstdlib>
#include <limits>
#include <optional>

namespace {

boost::shared_ptr<STMVal> makeRecord(const std::string& name, const std::string& alias)
{
    auto record = boost::make_shared<STMVal>();
    record->names = {name, alias};
    return record;
}

} // namespace

/// The followed keys: their records, look-ups and the texts of modes and types.
class TestModel : public GuardedTest
{
    Q_OBJECT

private slots:
    void aNewRecordIsEmptyWithARandomColour();
    void aColourTakesThreeNumbersInOrderAndIsNeverFullWhite();
    void aNewModelIsEmptyUnsubscribedAndReadsEvery100Ms();
    void everyModeHasItsLabel();
    void onlyTheExactLabelNamesAMode_data();
    void onlyTheExactLabelNamesAMode();
    void thePeriodStaysWithinItsBounds_data();
    void thePeriodStaysWithinItsBounds();
    void recordsKeepTheirOrderAndMayRepeat();
    void aGivenRecordIsKeptItself();
    void aResetRemovesTheRecordsOnly();
    void aRecordHeldElsewhereSurvivesAReset();
    void everyTypeHasItsText_data();
    void everyTypeHasItsText();
    void everyRefreshOverwritesBothTexts();
    void aLongTextIsCutAsTheMiddlewareCutsIt();
    void valuesAreStoredByKeyAndNotByAlias();
    void onlyTheFirstRecordOfAKeyIsRefreshed();
    void manyValuesAreStoredAsOneByOne();
    void aRequestThatFitsNoReplyIsAnErrorAndLeavesTheLockFree();
    void readersMayReadTogether();
    void changesWaitForReaders();
    void readersWaitForAChange();
};

void TestModel::aNewRecordIsEmptyWithARandomColour()
{
    std::srand(3);
    const Color expected;
    std::srand(3);
    const STMVal record;
    QVERIFY(record.names.first.empty() && record.names.second.empty());
    QVERIFY(record.type.empty() && record.value.empty());
    QVERIFY(!record.watch && !record.graph);
    QCOMPARE(record.color.red, expected.red);
    QCOMPARE(record.color.green, expected.green);
    QCOMPARE(record.color.blue, expected.blue);
}

void TestModel::aColourTakesThreeNumbersInOrderAndIsNeverFullWhite()
{
    std::srand(1);
    const int red = std::rand() % 255;
    const int green = std::rand() % 255;
    const int blue = std::rand() % 255;
    std::srand(1);
    const Color first;
    QCOMPARE(first.red, red);
    QCOMPARE(first.green, green);
    QCOMPARE(first.blue, blue);
    for (int i = 0; i < 10000; ++i) {
        const Color color;
        for (const int channel : {color.red, color.green, color.blue})
            QVERIFY(channel >= 0 && channel <= 254);
    }
}

void TestModel::aNewModelIsEmptyUnsubscribedAndReadsEvery100Ms()
{
    const Model model;
    QVERIFY(model.fSTMVals.empty());
    QCOMPARE(int(model.fSubscribeMode), 1);
    QCOMPARE(model.fTimePolicy, 100);
    QVERIFY(model.fMutex);
}

void TestModel::everyModeHasItsLabel()
{
    const auto label = [](int mode) {
        return Model::subscribeModeToString(static_cast<Model::SubscribeMode>(mode));
    };
    QCOMPARE(label(0), std::string("Every <nb> ms"));
    QCOMPARE(label(1), std::string("No subcription"));
    QCOMPARE(label(2), std::string("Subscribe on data"));
    for (const int mode : {3, 4, -1, 1000})
        QCOMPARE(label(mode), std::string("mode unknown"));
}

void TestModel::onlyTheExactLabelNamesAMode_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("mode");
    QTest::newRow("every") << "Every <nb> ms" << 0;
    QTest::newRow("none") << "No subcription" << 1;
    QTest::newRow("on data") << "Subscribe on data" << 2;
    QTest::newRow("ordinary spelling") << "No subscription" << 3;
    QTest::newRow("lower case") << "every <nb> ms" << 3;
    QTest::newRow("with a number") << "Every 100 ms" << 3;
    QTest::newRow("space behind") << "No subcription " << 3;
    QTest::newRow("cut") << "No subcriptio" << 3;
    QTest::newRow("empty") << "" << 3;
    QTest::newRow("label of no mode") << "mode unknown" << 3;
}

void TestModel::onlyTheExactLabelNamesAMode()
{
    QFETCH(QString, text);
    QTEST(int(Model::subscribeModeFromString(text.toStdString())), "mode");
}

void TestModel::thePeriodStaysWithinItsBounds_data()
{
    QTest::addColumn<int>("given");
    QTest::addColumn<int>("stored");
    QTest::newRow("just below") << 59 << 60;
    QTest::newRow("shortest") << 60 << 60;
    QTest::newRow("between") << 61 << 61;
    QTest::newRow("longest") << 10000 << 10000;
    QTest::newRow("just above") << 10001 << 10000;
    QTest::newRow("negative") << -5 << 60;
    QTest::newRow("lowest int") << std::numeric_limits<int>::min() << 60;
    QTest::newRow("highest int") << std::numeric_limits<int>::max() << 10000;
}

void TestModel::thePeriodStaysWithinItsBounds()
{
    QFETCH(int, given);
    Model model;
    model.setTimePolicy(given);
    QTEST(model.fTimePolicy, "stored");
    QCOMPARE(Model::fMinTime, 60); // by reference: the bounds are objects, too
    QCOMPARE(Model::fMaxTime, 10000);
}

void TestModel::recordsKeepTheirOrderAndMayRepeat()
{
    Model model;
    model.addSTMVal("b", "B");
    model.addSTMVal("a", "A");
    model.addSTMVal("b", "B");
    QCOMPARE(model.fSTMVals.size(), std::size_t{3});
    QCOMPARE(model.fSTMVals[0]->names, std::make_pair(std::string("b"), std::string("B")));
    QCOMPARE(model.fSTMVals[1]->names, std::make_pair(std::string("a"), std::string("A")));
    QCOMPARE(model.fSTMVals[2]->names, model.fSTMVals[0]->names);
    QVERIFY(model.fSTMVals[2] != model.fSTMVals[0]);
    QVERIFY(model.fSTMVals[0]->type.empty() && !model.fSTMVals[0]->watch);
}

void TestModel::aGivenRecordIsKeptItself()
{
    Model model;
    const auto record = makeRecord("k", "a");
    record->color.red = -7;
    model.addSTMVal(record);
    model.addSTMVal(record);
    QCOMPARE(model.fSTMVals.size(), std::size_t{2});
    QVERIFY(model.fSTMVals[0] == record && model.fSTMVals[1] == record);
    QCOMPARE(record->color.red, -7);
}

void TestModel::aResetRemovesTheRecordsOnly()
{
    Model model;
    model.resetSTMVals();
    QVERIFY(model.fSTMVals.empty());
    model.fSubscribeMode = Model::SUBSCRIBE_EVERY;
    model.setTimePolicy(500);
    model.addSTMVal("k", "a");
    model.resetSTMVals();
    QVERIFY(model.fSTMVals.empty());
    QCOMPARE(int(model.fSubscribeMode), 0);
    QCOMPARE(model.fTimePolicy, 500);
}

void TestModel::aRecordHeldElsewhereSurvivesAReset()
{
    Model model;
    model.addSTMVal("kept", "kept");
    model.addSTMVal("dropped", "dropped");
    boost::shared_ptr<const STMVal> kept = model.fSTMVals[0];
    const Color* color = &kept->color;
    const boost::weak_ptr<STMVal> dropped = model.fSTMVals[1];
    model.resetSTMVals();
    QVERIFY(dropped.expired());
    QCOMPARE(color, static_cast<const Color*>(&kept->color));
    QCOMPARE(kept->names.first, std::string("kept"));
}

void TestModel::everyTypeHasItsText_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("text");
    QTest::newRow("invalid") << 0 << "invalid"
                             << "";
    QTest::newRow("array") << 1 << "array"
                           << "[\"x\",\"y\"]";
    QTest::newRow("bool") << 2 << "bool"
                          << "true";
    QTest::newRow("int") << 3 << "int"
                         << "-12";
    QTest::newRow("float") << 4 << "float"
                           << "0.5";
    QTest::newRow("string") << 5 << "string"
                            << "12";
}

void TestModel::everyTypeHasItsText()
{
    const std::vector<ZoValue> values{
        {}, {std::vector<std::string>{"x", "y"}}, {true}, {-12}, {0.5}, {"12"}};
    QFETCH(int, code);
    const ZoValue& value = values[std::size_t(code)];
    QCOMPARE(value.getType(), code);
    Model model;
    model.addSTMVal("k", "a");
    QVERIFY(model.refreshSTMVal("k", value));
    QTEST(QString::fromStdString(model.fSTMVals[0]->type), "type");
    QTEST(QString::fromStdString(model.fSTMVals[0]->value), "text");
}

void TestModel::everyRefreshOverwritesBothTexts()
{
    Model model;
    model.addSTMVal("k", "a");
    model.refreshSTMVal("k", ZoValue("a rather long text, beyond any small buffer"));
    model.refreshSTMVal("k", ZoValue());
    QCOMPARE(model.fSTMVals[0]->type, std::string("invalid"));
    QCOMPARE(model.fSTMVals[0]->value, std::string());
    model.fSTMVals[0]->value = "changed by hand";
    model.fSTMVals[0]->type = "changed";
    model.refreshSTMVal("k", ZoValue());
    QCOMPARE(model.fSTMVals[0]->type, std::string("invalid"));
    QCOMPARE(model.fSTMVals[0]->value, std::string());
}

void TestModel::aLongTextIsCutAsTheMiddlewareCutsIt()
{
    const ZoValue value(std::string(5000, 'x'));
    Model model;
    model.addSTMVal("k", "a");
    model.refreshSTMVal("k", value);
    QCOMPARE(model.fSTMVals[0]->value, std::string(1024, 'x') + "...");
    QCOMPARE(model.fSTMVals[0]->value, value.toString(_TVerbosity(1)));
}

void TestModel::valuesAreStoredByKeyAndNotByAlias()
{
    Model model;
    model.addSTMVal("key", "alias");
    QVERIFY(!model.refreshSTMVal("alias", ZoValue(1)));
    QVERIFY(!model.refreshSTMVal("", ZoValue(1)));
    QVERIFY(!model.refreshSTMVal("Key", ZoValue(1)));
    QVERIFY(model.fSTMVals[0]->type.empty() && model.fSTMVals[0]->value.empty());
    QVERIFY(model.refreshSTMVal("key", ZoValue(1)));
}

void TestModel::onlyTheFirstRecordOfAKeyIsRefreshed()
{
    Model model;
    model.addSTMVal("other", "x");
    model.addSTMVal("key", "first");
    model.addSTMVal("key", "second");
    QVERIFY(model.refreshSTMVal("key", ZoValue(5)));
    QVERIFY(model.fSTMVals[0]->type.empty());
    QCOMPARE(model.fSTMVals[1]->value, std::string("5"));
    QVERIFY(model.fSTMVals[2]->type.empty());
}

void TestModel::manyValuesAreStoredAsOneByOne()
{
    Model model;
    RandomRecords random(model, 8);
    KeyFinder byKey;
    for (int step = 0; step < 2000; ++step) {
        random.change();
        Model expected;
        for (const auto& record : model.fSTMVals)
            expected.addSTMVal(boost::make_shared<STMVal>(*record));
        ZoValue request;
        ZoValue reply;
        const int count = static_cast<int>(random.below(6));
        request.arraySetSize(count);
        reply.arraySetSize(count);
        for (int i = 0; i < count; ++i) {
            const std::string name = random.name();
            request[i] = std::vector<std::string>{name, ""};
            reply[i] = step * 10 + i;
            expected.refreshSTMVal(name, reply[i]);
        }
        model.refreshSTMVals(request, reply, byKey);
        for (std::size_t i = 0; i < model.fSTMVals.size(); ++i) {
            if (model.fSTMVals[i]->value != expected.fSTMVals[i]->value)
                QCOMPARE(model.fSTMVals[i].use_count() > 1, true); // there twice: copies differ
            else
                QCOMPARE(model.fSTMVals[i]->type, expected.fSTMVals[i]->type);
        }
    }
}

void TestModel::aRequestThatFitsNoReplyIsAnErrorAndLeavesTheLockFree()
{
    Model model;
    model.addSTMVal("k", "a");
    ZoValue reply;
    reply.arraySetSize(1);
    KeyFinder byKey;
    QVERIFY_EXCEPTION_THROWN(model.refreshSTMVals(ZoValue(), reply, byKey), ZoError);
    QVERIFY_EXCEPTION_THROWN(model.refreshSTMVals(reply, reply, byKey), ZoError);
    QVERIFY(LockAttempt::with<ZoCriticalSectionWrite>(model.fMutex).succeeds());
    QVERIFY(model.fSTMVals[0]->type.empty());
}

void TestModel::readersMayReadTogether()
{
    Model model;
    model.addSTMVal("k", "a");
    model.refreshSTMVal("k", ZoValue(3));
    double result = 0;
    std::optional<WatchedThread> other;
    const ZoCriticalSectionRead mine(model.fMutex);
    other.emplace([&] { model.getDoubleVal("a", result); });
    QVERIFY(other->ends());
    QCOMPARE(result, 3.0);
}

void TestModel::changesWaitForReaders()
{
    Model model;
    model.addSTMVal("k", "a");
    const std::vector<std::function<void()>> changes{
        [&] { model.addSTMVal("k2", "a2"); },
        [&] { model.addSTMVal(boost::make_shared<STMVal>()); },
        [&] { model.refreshSTMVal("k", ZoValue(1)); },
        [&] { model.resetSTMVals(); },
    };
    for (const auto& change : changes) {
        std::optional<WatchedThread> changer;
        {
            const ZoCriticalSectionRead reader(model.fMutex);
            changer.emplace(change);
            QVERIFY(changer->waits());
        }
        QVERIFY(changer->ends());
        LockAttempt after = LockAttempt::with<ZoCriticalSectionWrite>(model.fMutex);
        QVERIFY(after.succeeds());
    }
    QVERIFY(model.fSTMVals.empty());
}

void TestModel::readersWaitForAChange()
{
    Model model;
    model.addSTMVal("k", "a");
    const auto readOne = [&] {
        double number = 0;
        return model.getDoubleVal("a", number) ? number : 0;
    };
    const auto readMany = [&] {
        AliasFinder byAlias;
        std::vector<std::optional<double>> numbers;
        model.getDoubleVals({"a"}, byAlias, numbers);
        return numbers[0].value_or(0);
    };
    for (const std::function<double()>& read : {std::function<double()>(readOne), {readMany}}) {
        double number = 0;
        std::optional<WatchedThread> reader;
        {
            const ZoCriticalSectionWrite writer(model.fMutex);
            model.fSTMVals[0]->type = "int";
            model.fSTMVals[0]->value = "1";
            reader.emplace([&] { number = read(); });
            QVERIFY(reader->waits());
            model.fSTMVals[0]->value = "2";
        }
        reader->join();
        QCOMPARE(number, 2.0);
    }
}

REGISTER_TEST(TestModel, NoApplication)
#include "tst_model.moc"
