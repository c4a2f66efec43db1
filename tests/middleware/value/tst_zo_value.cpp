// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <zo/error.h>
#include <zo/value.h>

#include <QtTest>

#include <cmath>
#include <limits>

/// The middleware's dynamic value.
class TestZoValue : public GuardedTest
{
    Q_OBJECT

private slots:
    void everyTypeHasItsCode();
    void everyCodeHasItsWord();
    void anAssignedNumberKeepsItsType();
    void aValueMayBecomeOneOfItsOwnElements();
    void arraysGrowAndShrink();
    void wrongUseThrows();
    void aStringIsReadAndChangedInPlace();
    void numbersAreShortAndExact();
    void longTextsAreCut();
    void aCutNeverSplitsACharacter();
    void arraysAreShownAsJson();
    void valuesAreEqualByTypeAndContent();
};

void TestZoValue::everyTypeHasItsCode()
{
    QCOMPARE(ZoValue().getType(), 0);
    QCOMPARE(ZoValue(std::vector<std::string>{"a"}).getType(), 1);
    QCOMPARE(ZoValue(true).getType(), 2);
    QCOMPARE(ZoValue(3).getType(), 3);
    QCOMPARE(ZoValue(std::int64_t{3}).getType(), 3);
    QCOMPARE(ZoValue(0.5).getType(), 4);
    QCOMPARE(ZoValue("text").getType(), 5);
    QCOMPARE(ZoValue(std::string("text")).getType(), 5);
}

void TestZoValue::everyCodeHasItsWord()
{
    const char* const words[] = {"unknown", "invalid", "array",  "bool",
                                 "int",     "float",   "string", "unknown"};
    for (int code = -1; code <= 6; ++code)
        QCOMPARE(ZoValue::typeName(code), words[code + 1]);
}

void TestZoValue::anAssignedNumberKeepsItsType()
{
    ZoValue value;
    value = 0;
    QCOMPARE(value.getType(), int(ZoValue::Int));
    value = 0.5;
    QCOMPARE(value.getType(), int(ZoValue::Float));
    value = true;
    QCOMPARE(value.getType(), int(ZoValue::Bool));
    value = "text";
    QCOMPARE(value.getType(), int(ZoValue::String));
}

void TestZoValue::aValueMayBecomeOneOfItsOwnElements()
{
    ZoValue inner(std::vector<std::string>{"a", "b"});
    ZoValue array;
    array.arraySetSize(4);
    array[0] = 3;
    array[1] = std::string(100, 'x'); // too long to be stored in the value itself
    array[2] = inner;
    for (int i = 0; i < array.getSize(); ++i) {
        const ZoValue& expected = array[i];
        ZoValue copied = array;
        copied = copied[i];
        QCOMPARE(copied, expected);
        ZoValue moved = array;
        moved = std::move(moved[i]);
        QCOMPARE(moved, expected);
    }
    inner[0] = inner;
    QCOMPARE(inner.toString(ZoWhole), std::string("[[\"a\",\"b\"],\"b\"]"));
    const ZoValue& itself = inner;
    inner = itself;
    QCOMPARE(inner.getSize(), 2);
}

void TestZoValue::arraysGrowAndShrink()
{
    ZoValue value("no array");
    QCOMPARE(value.getSize(), 0);
    value.arraySetSize(2);
    QCOMPARE(value.getSize(), 2);
    QCOMPARE(value[1].getType(), int(ZoValue::Invalid));
    value[0] = std::string("kept");
    value.arraySetSize(3);
    QCOMPARE(static_cast<std::string&>(value[0]), std::string("kept"));
    value.arraySetSize(0);
    QCOMPARE(value.getType(), int(ZoValue::Array));
    QCOMPARE(value.getSize(), 0);
}

void TestZoValue::wrongUseThrows()
{
    ZoValue number(3);
    QVERIFY_EXCEPTION_THROWN(number[0], ZoError);
    QVERIFY_EXCEPTION_THROWN(static_cast<std::string&>(number).clear(), ZoError);
    QVERIFY_EXCEPTION_THROWN(number.arraySetSize(-1), ZoError);
    QCOMPARE(number, ZoValue(3));
    ZoValue array(std::vector<std::string>{"a"});
    QVERIFY_EXCEPTION_THROWN(array[-1], ZoError);
    QVERIFY_EXCEPTION_THROWN(array[1], ZoError);
    const ZoValue& constant = array;
    QVERIFY_EXCEPTION_THROWN(constant[1].getType(), ZoError);
    QVERIFY_EXCEPTION_THROWN(constant.asString(), ZoError);
}

void TestZoValue::aStringIsReadAndChangedInPlace()
{
    ZoValue value("a");
    static_cast<std::string&>(value) += "b";
    QCOMPARE(value.asString(), std::string("ab"));
}

void TestZoValue::numbersAreShortAndExact()
{
    QCOMPARE(ZoValue(3).toString(ZoNormal), std::string("3"));
    QCOMPARE(ZoValue(3.0).toString(ZoNormal), std::string("3"));
    QCOMPARE(ZoValue(0.1).toString(ZoNormal), std::string("0.1"));
    QCOMPARE(ZoValue(-0.0).toString(ZoNormal), std::string("-0"));
    QCOMPARE(ZoValue(std::numeric_limits<std::int64_t>::min()).toString(ZoBrief),
             std::string("-9223372036854775808"));
    QCOMPARE(ZoValue(-std::nan("")).toString(ZoNormal), std::string("nan"));
    QCOMPARE(ZoValue(HUGE_VAL).toString(ZoNormal), std::string("inf"));
    QCOMPARE(ZoValue(-HUGE_VAL).toString(ZoNormal), std::string("-inf"));
    QCOMPARE(ZoValue(true).toString(ZoNormal), std::string("true"));
    QCOMPARE(ZoValue(false).toString(ZoNormal), std::string("false"));
    QCOMPARE(ZoValue().toString(ZoNormal), std::string());
    for (const double number :
         {0.12345678901234567, 5e-324, 1.7976931348623157e308, 1e22, 123456.7})
        QVERIFY(std::strtod(ZoValue(number).toString(ZoNormal).c_str(), nullptr) == number);
}

void TestZoValue::longTextsAreCut()
{
    const std::string fits(1024, 'a');
    QCOMPARE(ZoValue(fits).toString(ZoNormal), fits);
    QCOMPARE(ZoValue(fits + "b").toString(ZoNormal), fits + "...");
    QCOMPARE(ZoValue(fits + "b").toString(ZoWhole), fits + "b");
    QCOMPARE(ZoValue(fits).toString(ZoBrief), std::string(64, 'a') + "...");
    std::string reused = "old";
    ZoValue(fits + "b").toString(ZoNormal, reused);
    QCOMPARE(reused, fits + "...");
}

void TestZoValue::aCutNeverSplitsACharacter()
{
    for (const std::string character : {"\u00e9", "\u20ac", "\U0001F600"}) {
        for (std::size_t before = 1024 - character.size(); before <= 1024; ++before) {
            const std::string start(before, 'a');
            const bool fits = before + character.size() <= 1024;
            const std::string shown = ZoValue(start + character + "tail").toString(ZoNormal);
            QCOMPARE(shown, start + (fits ? character : "") + "...");
        }
    }
    const std::string noUtf8(1030, '\x80');
    QCOMPARE(ZoValue(noUtf8).toString(ZoNormal), noUtf8.substr(0, 1024) + "...");
}

void TestZoValue::arraysAreShownAsJson()
{
    ZoValue value(std::vector<std::string>{"a\"b\\\n\x01", "\xff"});
    value.arraySetSize(8);
    value[2] = 3;
    value[3] = 3.0;
    value[4] = std::nan("");
    value[5] = true;
    value[7].arraySetSize(1);
    QCOMPARE(value.toString(ZoWhole),
             std::string("[\"a\\\"b\\\\\\n\\u0001\",\"\xff\",3,3.0,nan,true,null,[null]]"));
    ZoValue large(std::vector<std::string>(100000, "element"));
    QCOMPARE(large.toString(ZoNormal), large.toString(ZoWhole).substr(0, 1024) + "...");
}

void TestZoValue::valuesAreEqualByTypeAndContent()
{
    QCOMPARE(ZoValue(std::nan("")), ZoValue(-std::nan("")));
    QVERIFY(ZoValue(3) != ZoValue(3.0));
    QVERIFY(ZoValue(std::nan("")) != ZoValue(3.0));
    QVERIFY(ZoValue("") != ZoValue());
    ZoValue numbers;
    numbers.arraySetSize(1);
    numbers[0] = std::nan("");
    QCOMPARE(numbers, ZoValue(numbers));
}

REGISTER_TEST(TestZoValue, NoApplication)
#include "tst_zo_value.moc"
