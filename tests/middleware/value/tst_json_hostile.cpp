// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/reference_json.h"
#include "support/register_test.h"

#include <value/json.h>
#include <zo/error.h>

#include <QtTest>

#include <cmath>
#include <random>
#include <simdjson.h>

using namespace zo;

/// Texts that somebody, or a fault, made to break the reader.
class TestJsonHostile : public GuardedTest
{
    Q_OBJECT

private slots:
    void nestingIsReadUpToItsLimit_data();
    void nestingIsReadUpToItsLimit();
    void absurdNestingIsAString_data();
    void absurdNestingIsAString();
    void endlessNumbersAreNumbers();
    void changedTextsAreReadByTheGrammar();
};

namespace {

std::string repeated(const std::string& part, int count)
{
    std::string all;
    for (int i = 0; i < count; ++i)
        all += part;
    return all;
}

/// Changes `text` in one place: a byte replaced, removed, put in, doubled, or the rest cut off.
void change(std::string& text, std::mt19937& random)
{
    static const std::string likely =
        "[]{},:\"\\0123456789.eE+-truefalsn \n\t/u\x01\x7f\xc3\xa9\xff";
    const auto below = [&random](std::size_t end) { return random() % end; };
    const std::size_t at = below(text.size() + 1);
    const char byte = likely[below(likely.size())];
    switch (at == text.size() ? 1 : below(5)) {
    case 0:
        text[at] = byte;
        break;
    case 1:
        text.insert(at, 1, byte);
        break;
    case 2:
        text.erase(at, 1 + below(3));
        break;
    case 3:
        text.insert(at, text.substr(at, 1 + below(8)));
        break;
    default:
        text.resize(at);
    }
}

bool isNotFinite(const ZoValue& value)
{
    const auto* number = std::get_if<double>(&value.data());
    return number && !std::isfinite(*number);
}

/// What every text must come to, whatever it is.
bool isReadByTheGrammar(const std::string& text)
{
    int nesting = 0;
    const bool isJson = isJsonByTheGrammar(text, nesting) && nesting <= jsonMaxNesting &&
                        simdjson::validate_utf8(text);
    const char first = text[std::min(text.find_first_not_of(" \t\n\r"), text.size())];
    const ZoValue value = decodeJson(text);
    if (!isJson || first == '{')
        return value == ZoValue(text) || isNotFinite(value);
    switch (first) {
    case '[':
        return value.getType() == ZoValue::Array;
    case '"':
        return value.getType() == ZoValue::String;
    case 'n':
        return value.getType() == ZoValue::Invalid;
    case 't':
    case 'f':
        return value.getType() == ZoValue::Bool;
    default:
        return value.getType() == ZoValue::Int || value.getType() == ZoValue::Float;
    }
}

} // namespace

void TestJsonHostile::nestingIsReadUpToItsLimit_data()
{
    QTest::addColumn<QByteArray>("open");
    QTest::addColumn<QByteArray>("close");
    QTest::newRow("arrays") << QByteArray("[") << QByteArray("]");
    QTest::newRow("objects in an array") << QByteArray("{\"a\":") << QByteArray("}");
}

void TestJsonHostile::nestingIsReadUpToItsLimit()
{
    QFETCH(QByteArray, open);
    QFETCH(QByteArray, close);
    const auto nested = [&](int depth) {
        return "[" + repeated(open.toStdString(), depth - 1) + "1" +
               repeated(close.toStdString(), depth - 1) + "]";
    };
    const std::string deepest = nested(jsonMaxNesting);
    const ZoValue array = decodeJson(deepest);
    QCOMPARE(array.getType(), int(ZoValue::Array));
    QCOMPARE(decodeJson(encodeJson(array)), array);
    const std::string deeper = nested(jsonMaxNesting + 1);
    QCOMPARE(decodeJson(deeper), ZoValue(deeper));
}

void TestJsonHostile::absurdNestingIsAString_data()
{
    QTest::addColumn<QByteArray>("text");
    constexpr int million = 1000000;
    const auto row = [](const char* name, const std::string& text) {
        QTest::newRow(name) << QByteArray::fromStdString(text);
    };
    row("open arrays", repeated("[", million));
    row("arrays", repeated("[", million) + repeated("]", million));
    row("open objects", "[" + repeated("{\"a\":", million));
    row("objects", "[" + repeated("{\"a\":", million) + "1" + repeated("}", million) + "]");
    row("both", repeated("[{\"a\":", million) + "1" + repeated("}]", million));
}

void TestJsonHostile::absurdNestingIsAString()
{
    QFETCH(QByteArray, text);
    const ZoValue value = decodeJson(text.toStdString());
    QCOMPARE(value.getType(), int(ZoValue::String));
    QVERIFY(value.asString() == text.toStdString());
}

void TestJsonHostile::endlessNumbersAreNumbers()
{
    const std::string digits = repeated("7", 1000000);
    QVERIFY(decodeJson(digits) == ZoValue(HUGE_VAL));
    QVERIFY(decodeJson("-" + digits) == ZoValue(-HUGE_VAL));
    QVERIFY(decodeJson("0." + digits) == ZoValue(7.0 / 9.0));
    QVERIFY(decodeJson("[0." + repeated("0", 1000000) + "7e1000001]")[0] == ZoValue(7.0));
    QVERIFY(decodeJson("1e-" + digits) == ZoValue(0.0));
}

void TestJsonHostile::changedTextsAreReadByTheGrammar()
{
    std::mt19937 random(20240229);
    const std::vector<std::string> seeds = {
        "[1,-2.5e3,\"text\",true,false,null,[],{}]",
        "[{\"a\":[1,{\"b\":\"\\n\"}],\"c\":-0.0},[[2]]]",
        " [ \"\\u00e9\\ud83d\\ude00\\\"\\\\\" , \"\xc3\xa9\" ] ",
        "\"a\\tb\\u0000 \xf0\x9f\x98\x80\"",
        "\"plain\"",
        "-123.456e-7",
        "9223372036854775808",
        "NaN",
        "-Infinity",
        "null",
    };
    for (int round = 0; round < 30000; ++round) {
        std::string text = seeds[random() % seeds.size()];
        for (std::size_t changes = 1 + random() % 6; changes > 0; --changes)
            change(text, random);
        QVERIFY2(isReadByTheGrammar(text), text.c_str());
        const ZoValue value = decodeJson(text);
        QVERIFY2(decodeJson(encodeJson(value)) == value, text.c_str());
    }
}

REGISTER_TEST(TestJsonHostile, NoApplication)
#include "tst_json_hostile.moc"
