// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <value/json.h>
#include <zo/error.h>

#include <QtTest>

#include <cmath>
#include <cstring>
#include <random>

using namespace zo;

/// How values are written into a robot's memory.
class TestJsonEncode : public GuardedTest
{
    Q_OBJECT

private slots:
    void textsAreAsShortAsTheirTypesAllow();
    void stringsAreEscaped();
    void aStringThatIsNotUtf8IsWrittenAsItStands();
    void whatHasNoTextThrows();
    void everyValueReadsBackTheSame();
};

namespace {

/// Values of every kind that a text can spell, the awkward ones often.
class RandomValues
{
public:
    explicit RandomValues(unsigned seed) : fRandom(seed) {}

    ZoValue next(int depth)
    {
        switch (below(depth > 0 ? 6 : 5)) {
        case 0:
            return {};
        case 1:
            return below(2) == 1;
        case 2:
            return static_cast<std::int64_t>(bits() >> below(64));
        case 3:
            return nextFloat();
        case 4:
            return nextString();
        default:
            return nextArray(depth - 1);
        }
    }

private:
    std::uint64_t bits() { return fRandom(); }
    std::uint64_t below(std::uint64_t end) { return fRandom() % end; }

    double nextFloat()
    {
        static constexpr double special[] = {0.0, -0.0, 3.0, 1e22, 5e-324, HUGE_VAL, -HUGE_VAL};
        if (below(3) == 0)
            return special[below(std::size(special))];
        double number = 0;
        const std::uint64_t pattern = bits();
        std::memcpy(&number, &pattern, sizeof number);
        return std::isnan(number) ? 0.1 : number;
    }

    std::string nextString()
    {
        static const std::string pieces[] = {
            "a",    "\"",   "\\",     "\n",         std::string(1, '\0'),
            "\x1f", "\x7f", "\u00e9", "\U0001F600", "[1]",
            "3",    "null", "NaN",    " ",          "{}",
            "/"};
        std::string text;
        for (std::uint64_t count = below(5); count > 0; --count)
            text += pieces[below(std::size(pieces))];
        return text;
    }

    ZoValue nextArray(int depth)
    {
        ZoValue::Elements elements;
        for (std::uint64_t count = below(5); count > 0; --count)
            elements.push_back(next(depth));
        return ZoValue::fromElements(std::move(elements));
    }

    std::mt19937_64 fRandom;
};

/// Equality counts both zeros as one; their text tells them apart.
bool isSame(const ZoValue& one, const ZoValue& other)
{
    return one == other && one.toString(ZoWhole) == other.toString(ZoWhole);
}

} // namespace

void TestJsonEncode::textsAreAsShortAsTheirTypesAllow()
{
    QCOMPARE(encodeJson(ZoValue()), std::string("null"));
    QCOMPARE(encodeJson(true), std::string("true"));
    QCOMPARE(encodeJson(3), std::string("3"));
    QCOMPARE(encodeJson(3.0), std::string("3.0"));
    QCOMPARE(encodeJson(-0.0), std::string("-0.0"));
    QCOMPARE(encodeJson(1e22), std::string("1e+22"));
    QCOMPARE(encodeJson(0.1), std::string("0.1"));
    QCOMPARE(encodeJson(std::nan("")), std::string("NaN"));
    QCOMPARE(encodeJson(HUGE_VAL), std::string("Infinity"));
    QCOMPARE(encodeJson(-HUGE_VAL), std::string("-Infinity"));
    QCOMPARE(encodeJson("3"), std::string("\"3\""));
    ZoValue array(std::vector<std::string>{"a", "b"});
    array[1] = HUGE_VAL;
    QCOMPARE(encodeJson(array), std::string("[\"a\",1e999]"));
}

void TestJsonEncode::stringsAreEscaped()
{
    QCOMPARE(encodeJson("\"\\\b\f\n\r\t\x01\x1f/\x7f\u00e9"),
             std::string("\"\\\"\\\\\\b\\f\\n\\r\\t\\u0001\\u001f/\x7f\u00e9\""));
    QCOMPARE(encodeJson(std::string("a\0b", 3)), std::string("\"a\\u0000b\""));
}

void TestJsonEncode::aStringThatIsNotUtf8IsWrittenAsItStands()
{
    for (const std::string text : {"\xff", "\"\xff\"", " [\"\xc3\"] ", "3\x80"}) {
        QCOMPARE(encodeJson(text), text);
        QCOMPARE(decodeJson(text), ZoValue(text));
    }
}

void TestJsonEncode::whatHasNoTextThrows()
{
    ZoValue array;
    array.arraySetSize(1);
    array[0] = std::nan("");
    QVERIFY_EXCEPTION_THROWN(encodeJson(array), ZoError);
    array[0] = "\xff";
    QVERIFY_EXCEPTION_THROWN(encodeJson(array), ZoError);
    array[0] = ZoValue();
    for (int depth = 1; depth < jsonMaxNesting; ++depth)
        array = ZoValue::fromElements({array});
    QCOMPARE(decodeJson(encodeJson(array)), array);
    array = ZoValue::fromElements({array});
    QVERIFY_EXCEPTION_THROWN(encodeJson(array), ZoError);
}

void TestJsonEncode::everyValueReadsBackTheSame()
{
    RandomValues values(20240229);
    for (int round = 0; round < 20000; ++round) {
        const ZoValue value = values.next(4);
        const std::string text = encodeJson(value);
        QVERIFY2(isSame(decodeJson(text), value), text.c_str());
        QVERIFY2(isSame(decodeJson("\n" + text + " "), value), text.c_str());
    }
}

REGISTER_TEST(TestJsonEncode, NoApplication)
#include "tst_json_encode.moc"
