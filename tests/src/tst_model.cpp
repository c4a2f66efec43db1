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

#include <clocale>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <optional>
#include <sys/mman.h>

namespace {

boost::shared_ptr<STMVal> makeRecord(const std::string& name, const std::string& alias)
{
    auto record = boost::make_shared<STMVal>();
    record->names = {name, alias};
    return record;
}

/// A number in memory that is not to be touched: whoever reads or writes it crashes.
class UntouchableNumber
{
public:
    UntouchableNumber()
        : fPlace(mmap(nullptr, sizeof(double), PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0))
    {
    }
    ~UntouchableNumber() { munmap(fPlace, sizeof(double)); }
    UntouchableNumber(const UntouchableNumber&) = delete;
    UntouchableNumber& operator=(const UntouchableNumber&) = delete;

    bool isThere() const { return fPlace != MAP_FAILED; }
    double& number() const { return *static_cast<double*>(fPlace); }

private:
    void* fPlace;
};

/// The language of the process, or of one part of it, until the end of a scope.
class Language
{
public:
    Language(int category, const char* name)
        : fCategory(category),
          fPrevious(std::setlocale(category, nullptr)),
          fIsSet(std::setlocale(category, name))
    {
    }
    ~Language() { std::setlocale(fCategory, fPrevious.c_str()); }
    Language(const Language&) = delete;
    Language& operator=(const Language&) = delete;

    bool isSet() const { return fIsSet; }

private:
    int fCategory;
    std::string fPrevious;
    bool fIsSet;
};

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
    void numbersAreReadByAliasAndNotByKey();
    void onlyIntsAndFloatsAreNumbers();
    void aNumberIsParsedFromTheShownText();
    void theResultIsLeftUntouchedWhereThereIsNoNumber();
    void floatsSurviveTheirText();
    void numbersAreReadInAnyLanguage_data();
    void numbersAreReadInAnyLanguage();
    void everyFormOfANumberIsRead_data();
    void everyFormOfANumberIsRead();
    void onlyTheFirstRecordOfAnAliasIsRead();
    void manyNumbersAreReadAsOneByOne();
    void manyNumbersOfNothingAreNone();
    void manyNumbersKeepUpWithAnyChange();
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

void TestModel::numbersAreReadByAliasAndNotByKey()
{
    Model model;
    model.addSTMVal("key", "alias");
    model.refreshSTMVal("key", ZoValue(3));
    double result = 42;
    QVERIFY(!model.getDoubleVal("key", result));
    QCOMPARE(result, 42.0);
    QVERIFY(model.getDoubleVal("alias", result));
    QCOMPARE(result, 3.0);
}

void TestModel::onlyIntsAndFloatsAreNumbers()
{
    Model model;
    model.addSTMVal("k", "a");
    double result = 42;
    QVERIFY(!model.getDoubleVal("a", result)); // never read
    for (const ZoValue& value :
         {ZoValue(), ZoValue(true), ZoValue("7"), ZoValue(std::vector<std::string>{"7"})}) {
        model.refreshSTMVal("k", value);
        QVERIFY(!model.getDoubleVal("a", result));
    }
    for (const char* type : {"unknown", "Int", "int ", "floats"}) {
        model.fSTMVals[0]->type = type;
        model.fSTMVals[0]->value = "7";
        QVERIFY(!model.getDoubleVal("a", result));
    }
    QCOMPARE(result, 42.0);
    model.refreshSTMVal("k", ZoValue(3));
    QVERIFY(model.getDoubleVal("a", result));
    QCOMPARE(result, 3.0);
}

void TestModel::aNumberIsParsedFromTheShownText()
{
    Model model;
    model.addSTMVal("k", "a");
    model.refreshSTMVal("k", ZoValue(1.5));
    model.fSTMVals[0]->value = "0x10 and more";
    double result = 0;
    QVERIFY(model.getDoubleVal("a", result));
    QCOMPARE(result, 16.0);
    model.fSTMVals[0]->value = "no number";
    QVERIFY(model.getDoubleVal("a", result));
    QCOMPARE(result, 0.0);
}

void TestModel::floatsSurviveTheirText()
{
    Model model;
    model.addSTMVal("k", "a");
    const auto stored = [&](double value) {
        model.refreshSTMVal("k", ZoValue(value));
        double result = 42;
        return model.getDoubleVal("a", result) ? result : 42;
    };
    using Limits = std::numeric_limits<double>;
    for (const double value : {0.1, 1.0 / 3, -0.30000000000000004, 5e-324, Limits::max(),
                               Limits::infinity(), -Limits::infinity(), 3.0})
        QVERIFY(stored(value) == value);
    QVERIFY(std::isnan(stored(Limits::quiet_NaN())));
}

void TestModel::theResultIsLeftUntouchedWhereThereIsNoNumber()
{
    Model model;
    model.addSTMVal("text", "text");
    model.addSTMVal("unread", "unread");
    model.refreshSTMVal("text", ZoValue("7"));
    const UntouchableNumber untouchable;
    QVERIFY(untouchable.isThere());
    for (const char* alias : {"text", "unread", "none"})
        QVERIFY(!model.getDoubleVal(alias, untouchable.number()));
}

void TestModel::numbersAreReadInAnyLanguage_data()
{
    QTest::addColumn<int>("category");
    QTest::newRow("of the whole process") << LC_ALL;
    QTest::newRow("of its numbers") << LC_NUMERIC;
}

void TestModel::numbersAreReadInAnyLanguage()
{
    QFETCH(int, category);
    Model model;
    for (const double value : {0.5, -1234.75, 1e300}) {
        const std::string name = std::to_string(model.fSTMVals.size());
        model.addSTMVal(name, name);
        model.refreshSTMVal(name, ZoValue(value));
    }
    const Language german(category, "de_DE.UTF-8");
    QVERIFY(german.isSet());
    QCOMPARE(std::strtod("0.5", nullptr), 0.0);
    double number = 0;
    QVERIFY(model.getDoubleVal("0", number));
    QCOMPARE(number, 0.5);
    AliasFinder byAlias;
    std::vector<std::optional<double>> numbers;
    model.getDoubleVals({"2", "1", "0"}, byAlias, numbers);
    QVERIFY((numbers == std::vector<std::optional<double>>{1e300, -1234.75, 0.5}));
}

void TestModel::everyFormOfANumberIsRead_data()
{
    QTest::addColumn<QString>("text");
    for (const char* text :
         {"",         " ",   "7",       "+7",   "-7",   " \t\n 7", "007",     ".5",     "5.",
          "-.5e1",    "1e",  "1e+",     "1e5x", "0x",   "0x1.8p1", "-0X1P-3", "inf",    "-INFINITY",
          "infinit",  "nan", "NaN(12)", "nan(", "-nan", "1e999",   "-1e999",  "1e-999", "4.9e-324",
          "2.4e-324", "1,5", "1.5,5",   "--1",  "+-1",  "one"})
        QTest::newRow(*text ? text : "empty") << text;
}

/// The test runs in the plain language, in which the C library's own function is the measure.
void TestModel::everyFormOfANumberIsRead()
{
    QFETCH(QString, text);
    Model model;
    model.addSTMVal("k", "a");
    model.fSTMVals[0]->type = "float";
    model.fSTMVals[0]->value = text.toStdString();
    const double expected = std::strtod(text.toStdString().c_str(), nullptr);
    double found = 42;
    QVERIFY(model.getDoubleVal("a", found));
    QVERIFY(found == expected || (std::isnan(found) && std::isnan(expected)));
    QCOMPARE(std::signbit(found), std::signbit(expected));
}

void TestModel::onlyTheFirstRecordOfAnAliasIsRead()
{
    Model model;
    model.addSTMVal("unread", "alias");
    model.addSTMVal("read", "alias");
    model.refreshSTMVal("read", ZoValue(1));
    double result = 42;
    QVERIFY(!model.getDoubleVal("alias", result));
    QCOMPARE(result, 42.0);
}

void TestModel::manyNumbersAreReadAsOneByOne()
{
    Model model;
    for (const char* name : {"int", "float", "text", "unread", "int"})
        model.addSTMVal(name, name);
    model.refreshSTMVal("int", ZoValue(3));
    model.refreshSTMVal("float", ZoValue(-0.5));
    model.refreshSTMVal("text", ZoValue("7"));
    AliasFinder byAlias;
    std::vector<std::optional<double>> numbers(20, 42.0);
    model.getDoubleVals({"float", "unread", "int", "text", "none", "float"}, byAlias, numbers);
    const std::vector<std::optional<double>> expected{-0.5,         std::nullopt, 3.0,
                                                      std::nullopt, std::nullopt, -0.5};
    QVERIFY(numbers == expected);
}

void TestModel::manyNumbersOfNothingAreNone()
{
    const Model model;
    AliasFinder byAlias;
    std::vector<std::optional<double>> numbers(3);
    model.getDoubleVals({}, byAlias, numbers);
    QVERIFY(numbers.empty());
    model.getDoubleVals({"a"}, byAlias, numbers);
    QVERIFY(numbers == std::vector<std::optional<double>>{std::nullopt});
}

void TestModel::manyNumbersKeepUpWithAnyChange()
{
    Model model;
    RandomRecords random(model, 7);
    AliasFinder byAlias;
    std::vector<std::optional<double>> numbers;
    std::vector<std::string> aliases(10);
    for (int step = 0; step < 2000; ++step) {
        random.change();
        model.refreshSTMVal(random.name(), random.below(4) == 0 ? ZoValue("x") : ZoValue(step));
        aliases[random.below(aliases.size())] = random.name();
        model.getDoubleVals(aliases, byAlias, numbers);
        QCOMPARE(numbers.size(), aliases.size());
        for (std::size_t i = 0; i < aliases.size(); ++i) {
            double number = 42;
            QCOMPARE(numbers[i].has_value(), model.getDoubleVal(aliases[i], number));
            QCOMPARE(numbers[i].value_or(42), number);
        }
    }
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
    const ZoCriticalSectionRead mine(model.fMutex);
    auto other = std::async(std::launch::async, [&] {
        double result = 0;
        return model.getDoubleVal("a", result) ? result : 0;
    });
    QCOMPARE(other.wait_for(std::chrono::seconds(20)), std::future_status::ready);
    QCOMPARE(other.get(), 3.0);
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
