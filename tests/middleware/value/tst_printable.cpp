// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <value/printable.h>

#include <QtTest>

using namespace zo;

/// How texts of unknown origin are shown in messages.
class TestPrintable : public GuardedTest
{
    Q_OBJECT

private slots:
    void whatATerminalWouldObeyIsNotShown_data();
    void whatATerminalWouldObeyIsNotShown();
    void aLongTextIsCutBetweenCharacters();
};

void TestPrintable::whatATerminalWouldObeyIsNotShown_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("shown");
    QTest::newRow("plain") << QByteArray("ERR no ~") << QByteArray("ERR no ~");
    QTest::newRow("controls") << QByteArray("a\x1b[2J\x7f\n") << QByteArray("a?[2J??");
    QTest::newRow("letters") << QByteArray("\xC3\xA9 \xE2\x82\xAC \xF0\x9F\xA4\x96")
                             << QByteArray("\xC3\xA9 \xE2\x82\xAC \xF0\x9F\xA4\x96");
    QTest::newRow("wide controls")
        << QByteArray("a\xC2\x80\xC2\x9B\xC2\x9F\xC2\xA0z") << QByteArray("a???\xC2\xA0z");
    QTest::newRow("line and paragraph separators")
        << QByteArray("a\xE2\x80\xA8\xE2\x80\xA9\xE2\x80\xA7z") << QByteArray("a??\xE2\x80\xA7z");
    QTest::newRow("lone bytes") << QByteArray("a\x9B\x80\xFFz") << QByteArray("a???z");
    QTest::newRow("cut character") << QByteArray("a\xE2\x82") << QByteArray("a??");
    QTest::newRow("broken character") << QByteArray("\xE2\x82z") << QByteArray("??z");
    QTest::newRow("too long a way of writing it")
        << QByteArray("\xC0\x9B\xE0\x80\x9B") << QByteArray("?????");
    QTest::newRow("surrogate") << QByteArray("\xED\xA0\x80") << QByteArray("???");
    QTest::newRow("beyond") << QByteArray("\xF4\x90\x80\x80") << QByteArray("????");
}

void TestPrintable::whatATerminalWouldObeyIsNotShown()
{
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, shown);
    QCOMPARE(QByteArray::fromStdString(printable(text.toStdString())), shown);
}

void TestPrintable::aLongTextIsCutBetweenCharacters()
{
    QCOMPARE(printable(std::string(200, 'x')), std::string(200, 'x'));
    QCOMPARE(printable(std::string(201, 'x')), std::string(200, 'x') + "...");
    const std::string euro = "\xE2\x82\xAC";
    QCOMPARE(printable(std::string(198, 'x') + euro), std::string(198, 'x') + "...");
    QCOMPARE(printable(std::string(197, 'x') + euro + "x"), std::string(197, 'x') + euro + "...");
}

REGISTER_TEST(TestPrintable, QCoreApplication)
#include "tst_printable.moc"
