// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <kit/escape.h>

#include <QtTest>

using kit::escaped;

/// How programs keep a record or a message on its line.
class TestEscape : public GuardedTest
{
    Q_OBJECT

private slots:
    void ordinaryTextStays();
    void controlCharactersAreWrittenOut();
    void unicodeLineBreaksAreWrittenOut();
    void bytesThatAreNoUtf8Stay();
};

void TestEscape::ordinaryTextStays()
{
    for (const std::string text : {"", "Arm/Elbow/Angle", "a \"b\" 'c'", "\u00e9\u20ac\U0001F600"})
        QCOMPARE(escaped(text), text);
}

void TestEscape::controlCharactersAreWrittenOut()
{
    QCOMPARE(escaped("a\tb\nc\rd\\e"), std::string("a\\tb\\nc\\rd\\\\e"));
    QCOMPARE(escaped(std::string("\0\x01\x1b\x1f\x7f", 5)),
             std::string("\\x00\\x01\\x1b\\x1f\\x7f"));
    QCOMPARE(escaped("\\n"), std::string("\\\\n"));
}

void TestEscape::unicodeLineBreaksAreWrittenOut()
{
    QCOMPARE(escaped("a\u0085b\u009f"), std::string("a\\xc2\\x85b\\xc2\\x9f"));
    QCOMPARE(escaped("\u2028\u2029\u2027"), std::string("\\xe2\\x80\\xa8\\xe2\\x80\\xa9\u2027"));
    QCOMPARE(escaped("\u00a0\u00bf"), std::string("\u00a0\u00bf"));
}

void TestEscape::bytesThatAreNoUtf8Stay()
{
    for (const std::string text : {"\xe9t\xe9", "\xc2", "\xe2\x80", "\xff\xfe", "\x85"})
        QCOMPARE(escaped(text), text);
}

REGISTER_TEST(TestEscape, NoApplication)
#include "tst_escape.moc"
