// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <value/json.h>
#include <zo/error.h>

#include <QtTest>

#include <cmath>

using namespace zo;

/// The texts in a robot's memory.
class TestJson : public GuardedTest
{
    Q_OBJECT

private slots:
    void everyTypeIsRead_data();
    void everyTypeIsRead();
    void whatIsNoJsonIsAStringAsItStands_data();
    void whatIsNoJsonIsAStringAsItStands();
};

Q_DECLARE_METATYPE(ZoValue)

namespace {

ZoValue arrayOf(ZoValue::Elements elements)
{
    return ZoValue::fromElements(std::move(elements));
}

} // namespace

void TestJson::everyTypeIsRead_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<ZoValue>("value");
    const auto row = [](const char* text, const ZoValue& value) {
        QTest::newRow(text) << QByteArray(text) << value;
    };
    const double infinity = std::numeric_limits<double>::infinity();
    row("3", 3);
    row("-0", 0);
    row(" 3\n", 3);
    row("9223372036854775807", std::int64_t{9223372036854775807});
    row("-9223372036854775808", std::numeric_limits<std::int64_t>::min());
    row("9223372036854775808", 9223372036854775808.0);
    row("-9223372036854775809", -9223372036854775809.0);
    row("0.5", 0.5);
    row("3.0", 3.0);
    row("1e2", 100.0);
    row("-1.5E-3", -0.0015);
    row("0.12345678901234567", 0.12345678901234567);
    row("1e999", infinity);
    row("-1e999", -infinity);
    row("4.9e-324", 4.9e-324);
    row("1e-999", 0.0);
    row("true", true);
    row("\tfalse\r\n", false);
    row("null", ZoValue());
    row("NaN", std::nan(""));
    row("Infinity", infinity);
    row("-Infinity", -infinity);
    row("\"\"", "");
    row("\"x\"", "x");
    row(" \"a \\\"b\\\" \\\\ \\/ \\n\\t\\u00e9\\ud83d\\ude00\" ",
        "a \"b\" \\ / \n\t\u00e9\U0001F600");
    row("[]", arrayOf({}));
    row(" [ 1 , \"a\" ] ", arrayOf({1, "a"}));
    row("[1e999,18446744073709551616,null,true,false,0.5,-0.0]",
        arrayOf({infinity, 18446744073709551616.0, ZoValue(), true, false, 0.5, -0.0}));
    row("[[1,[2.0]],[]]", arrayOf({arrayOf({1, arrayOf({2.0})}), arrayOf({})}));
    row("[{\"a\" : [1, {}]} , 2]", arrayOf({"{\"a\" : [1, {}]}", 2}));
    row("{\"a\":1}", "{\"a\":1}");
}

void TestJson::everyTypeIsRead()
{
    QFETCH(QByteArray, text);
    QFETCH(ZoValue, value);
    const ZoValue read = decodeJson(text.toStdString());
    QCOMPARE(read.getType(), value.getType());
    QCOMPARE(read.toString(ZoWhole), value.toString(ZoWhole));
    QVERIFY(read == value);
}

void TestJson::whatIsNoJsonIsAStringAsItStands_data()
{
    QTest::addColumn<QByteArray>("text");
    for (const char* text : {"",
                             " ",
                             "plain text",
                             " padded ",
                             "01",
                             "+1",
                             "1.",
                             ".5",
                             "1e",
                             "1e+",
                             "0x10",
                             "--1",
                             "-",
                             "1 2",
                             "1,2",
                             "nan",
                             "inf",
                             "TRUE",
                             "truex",
                             "nulll",
                             "- Infinity",
                             "\"",
                             "\"a",
                             "a\"",
                             "\"a\"b\"",
                             "\"a\\\"",
                             "\"\\x\"",
                             "\"\\ud83d\"",
                             "\"\\ude00\"",
                             "\"\\ud83d\\u0041\"",
                             "\"tab\there\"",
                             "\"\xff\"",
                             "\"\xc3\"",
                             "[",
                             "]",
                             "[1",
                             "[1,]",
                             "[,1]",
                             "[1 2]",
                             "[1]]",
                             "[1],[2]",
                             "[1] 2",
                             "[01]",
                             "[nul]",
                             "[nulll]",
                             "[NaN]",
                             "[+1]",
                             "[\"\\ud83d\"]",
                             "[\"\xff\"]",
                             "[{\"a\":01}]",
                             "[{\"a\"}]",
                             "[{\"a\":1]",
                             "[{a:1}]",
                             "[{\"a\":tru}]",
                             "[{\"a\":1,}]",
                             "[{\"\\x\":1}]",
                             "[{\"a\":[1,]}]",
                             "[\"a\":1]",
                             "\xEF\xBB\xBF[1]",
                             "\"a\",\"b\\n\"",
                             "\"a\\n\"],[\"b\""})
        QTest::newRow(text) << QByteArray(text);
    QTest::newRow("zero byte") << QByteArray("a\0b", 3);
    QTest::newRow("number and zero byte") << QByteArray("1\0", 2);
    QTest::newRow("zero byte in a string") << QByteArray("\"a\0b\"", 5);
    QTest::newRow("zero byte in an array") << QByteArray("[1\0]", 4);
}

void TestJson::whatIsNoJsonIsAStringAsItStands()
{
    QFETCH(QByteArray, text);
    const ZoValue value = decodeJson(text.toStdString());
    QCOMPARE(value.getType(), int(ZoValue::String));
    QCOMPARE(value.asString(), text.toStdString());
}

REGISTER_TEST(TestJson, NoApplication)
#include "tst_json.moc"
