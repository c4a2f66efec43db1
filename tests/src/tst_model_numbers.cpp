// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/random_records.h"
#include "support/register_test.h"

#include "model.h"
#include "record_finder.h"

#include <QtTest>

#include <clocale>
#include <cmath>
#include <limits>
#include <optional>
#include <string>
#include <sys/mman.h>
#include <vector>

namespace {

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

/// Values read back as numbers, one or many, by alias.
class TestModelNumbers : public GuardedTest
{
    Q_OBJECT

private slots:
    void numbersAreReadByAliasAndNotByKey();
    void onlyIntsAndFloatsAreNumbers();
    void aNumberIsParsedFromTheShownText();
    void floatsSurviveTheirText();
    void theResultIsLeftUntouchedWhereThereIsNoNumber();
    void numbersAreReadInAnyLanguage_data();
    void numbersAreReadInAnyLanguage();
    void everyFormOfANumberIsRead_data();
    void everyFormOfANumberIsRead();
    void onlyTheFirstRecordOfAnAliasIsRead();
    void manyNumbersAreReadAsOneByOne();
    void manyNumbersOfNothingAreNone();
    void manyNumbersKeepUpWithAnyChange();
};

void TestModelNumbers::numbersAreReadByAliasAndNotByKey()
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

void TestModelNumbers::onlyIntsAndFloatsAreNumbers()
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

void TestModelNumbers::aNumberIsParsedFromTheShownText()
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

void TestModelNumbers::floatsSurviveTheirText()
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

void TestModelNumbers::theResultIsLeftUntouchedWhereThereIsNoNumber()
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

void TestModelNumbers::numbersAreReadInAnyLanguage_data()
{
    QTest::addColumn<int>("category");
    QTest::newRow("of the whole process") << LC_ALL;
    QTest::newRow("of its numbers") << LC_NUMERIC;
}

void TestModelNumbers::numbersAreReadInAnyLanguage()
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

void TestModelNumbers::everyFormOfANumberIsRead_data()
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
void TestModelNumbers::everyFormOfANumberIsRead()
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

void TestModelNumbers::onlyTheFirstRecordOfAnAliasIsRead()
{
    Model model;
    model.addSTMVal("unread", "alias");
    model.addSTMVal("read", "alias");
    model.refreshSTMVal("read", ZoValue(1));
    double result = 42;
    QVERIFY(!model.getDoubleVal("alias", result));
    QCOMPARE(result, 42.0);
}

void TestModelNumbers::manyNumbersAreReadAsOneByOne()
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

void TestModelNumbers::manyNumbersOfNothingAreNone()
{
    const Model model;
    AliasFinder byAlias;
    std::vector<std::optional<double>> numbers(3);
    model.getDoubleVals({}, byAlias, numbers);
    QVERIFY(numbers.empty());
    model.getDoubleVals({"a"}, byAlias, numbers);
    QVERIFY(numbers == std::vector<std::optional<double>>{std::nullopt});
}

void TestModelNumbers::manyNumbersKeepUpWithAnyChange()
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

REGISTER_TEST(TestModelNumbers, NoApplication)
#include "tst_model_numbers.moc"
