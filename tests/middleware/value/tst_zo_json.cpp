// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <zo/zo.h>

#include <QtTest>

#include <limits>
#include <random>

/// Texts of values for files and other programs.
class TestZoJson : public GuardedTest
{
    Q_OBJECT

private slots:
    void theTextIsThatOfTheRobotsMemory();
    void bytesThatAreNoUtf8AreEscaped();
    void whatOnlyLooksEscapedStaysAsItStands();
    void everyStringReadsBackTheSame();
};

void TestZoJson::theTextIsThatOfTheRobotsMemory()
{
    const std::vector<std::pair<ZoValue, std::string>> texts = {
        {ZoValue(), "null"},
        {3, "3"},
        {3.0, "3.0"},
        {"3", "\"3\""},
        {true, "true"},
        {"a\nb\"", "\"a\\nb\\\"\""},
        {-std::numeric_limits<double>::infinity(), "-Infinity"},
        {std::numeric_limits<double>::quiet_NaN(), "NaN"},
        {std::vector<std::string>{"a", "b"}, "[\"a\",\"b\"]"},
    };
    for (const auto& [value, text] : texts) {
        QCOMPARE(ZoJson::textOf(value), text);
        QVERIFY2(ZoJson::valueOf(text) == value, text.c_str());
    }
}

void TestZoJson::bytesThatAreNoUtf8AreEscaped()
{
    const ZoValue value("\xc3\xa9 \xff\x80\n");
    QCOMPARE(ZoJson::textOf(value), std::string("\"\xc3\xa9 \\udcff\\udc80\\n\""));
    QVERIFY(ZoJson::valueOf(ZoJson::textOf(value)) == value);
}

void TestZoJson::whatOnlyLooksEscapedStaysAsItStands()
{
    for (const char* text : {"\"\\udc7f\"", "\"\\udcxx\"", "\"\\udcf\"", "\"\\ud800\"", "\"\\udcff",
                             "\"\\udcff\\q\"", "\\udcff", "\"\\udcff\"\""}) {
        QVERIFY2(ZoJson::valueOf(text) == ZoValue(text), text);
        const ZoValue value(text);
        QVERIFY2(ZoJson::valueOf(ZoJson::textOf(value)) == value, text);
    }
    QVERIFY(ZoJson::valueOf("\"\\\\udcff\"") == ZoValue("\\udcff"));
}

void TestZoJson::everyStringReadsBackTheSame()
{
    static const std::string pieces[] = {"a",  "\"",   "\\",          "\\udc",  "ff",
                                         "\n", "\xff", "\x80",        "\u00e9", "\xc3",
                                         "[",  "\\\\", "\xed\xa0\x80"};
    std::mt19937 random(1);
    for (int i = 0; i < 20000; ++i) {
        std::string bytes;
        for (std::uint64_t count = random() % 7; count > 0; --count)
            bytes += pieces[random() % std::size(pieces)];
        const std::string text = ZoJson::textOf(ZoValue(bytes));
        QVERIFY2(!QString::fromUtf8(text.c_str()).contains(QChar::ReplacementCharacter),
                 text.c_str());
        QVERIFY2(ZoJson::valueOf(text) == ZoValue(bytes), text.c_str());
    }
}

REGISTER_TEST(TestZoJson, NoApplication)
#include "tst_zo_json.moc"
