// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <kit/shell_line.h>

#include <QProcess>
#include <QtTest>

using Texts = std::vector<std::string>;

Q_DECLARE_METATYPE(Texts)
Q_DECLARE_METATYPE(std::string)

/// A line of bash that is being written.
class TestShellLine : public GuardedTest
{
    Q_OBJECT

private slots:
    void wordsAreThoseOfAProgram_data();
    void wordsAreThoseOfAProgram();
    void bashReplacesWhatStandsBehindABreak_data();
    void bashReplacesWhatStandsBehindABreak();
    void whateverAWordHoldsBashReadsItBack_data();
    void whateverAWordHoldsBashReadsItBack();
};

namespace {

const std::string breaks = " \t\n\"'><=;|&(:";

} // namespace

void TestShellLine::wordsAreThoseOfAProgram_data()
{
    QTest::addColumn<std::string>("text");
    QTest::addColumn<Texts>("words");
    QTest::newRow("nothing") << std::string() << Texts{""};
    QTest::newRow("blanks") << std::string("zo  get\ta") << Texts{"zo", "get", "a"};
    QTest::newRow("new word") << std::string("zo get ") << Texts{"zo", "get", ""};
    QTest::newRow("empty word") << std::string("zo '' \"\" ") << Texts{"zo", "", "", ""};
    QTest::newRow("escaped") << std::string("zo a\\ b\\\"c\\\\") << Texts{"zo", "a b\"c\\"};
    QTest::newRow("single quotes")
        << std::string("zo 'a \"$b\\'c d") << Texts{"zo", "a \"$b\\c", "d"};
    QTest::newRow("double quotes")
        << std::string("zo \"a 'b\\\"\\$\\n\"") << Texts{"zo", "a 'b\"$\\n"};
    QTest::newRow("open quote") << std::string("zo \"a b") << Texts{"zo", "a b"};
    QTest::newRow("joined") << std::string("zo a'b c'\"d\"e") << Texts{"zo", "ab cde"};
    QTest::newRow("never run") << std::string("zo $(x)`y`$HOME")
                               << Texts{"zo", "$", "x", "`y`$HOME"};
    QTest::newRow("operators") << std::string("zo a|b>c;d&e")
                               << Texts{"zo", "a", "b", "c", "d", "e"};
    const std::string home = qEnvironmentVariable("HOME", "~").toStdString();
    QTest::newRow("home folder") << std::string("zo ~/a\\ b ~/c=~/d ")
                                 << Texts{"zo", home + "/a b", home + "/c=~/d", ""};
    QTest::newRow("no home folder") << std::string("zo '~/a' ~'/a' \\~/a ~a/ x~/a ~ ")
                                    << Texts{"zo", "~/a", "~/a", "~/a", "~a/", "x~/a", "~", ""};
    QTest::newRow("a home that is being written") << std::string("zo ~/a") << Texts{"zo", "~/a"};
    QTest::newRow("lone backslash") << std::string("zo a\\") << Texts{"zo", "a"};
}

void TestShellLine::wordsAreThoseOfAProgram()
{
    QFETCH(std::string, text);
    QTEST(kit::shellLineFrom(text, breaks).words, "words");
}

void TestShellLine::bashReplacesWhatStandsBehindABreak_data()
{
    QTest::addColumn<std::string>("text");
    QTest::addColumn<std::string>("word");
    QTest::addColumn<std::string>("put");
    QTest::newRow("whole") << std::string("zo Ar") << std::string("Arm") << std::string("Arm");
    QTest::newRow("colon") << std::string("zo a:b") << std::string("a:bc") << std::string("bc");
    QTest::newRow("equals sign") << std::string("zo --x=a:") << std::string("--x=a:b")
                                 << std::string("b");
    QTest::newRow("escaped colon")
        << std::string("zo a\\:b") << std::string("a:bc") << std::string("a:bc");
    QTest::newRow("open quote") << std::string("zo x'a:b") << std::string("xa:b c")
                                << std::string("a:b c");
    QTest::newRow("closed quote") << std::string("zo 'a:b'") << std::string("a:b c")
                                  << std::string("a:b\\ c");
    QTest::newRow("closed behind a break")
        << std::string("zo k:'a:b'") << std::string("k:a:bc") << std::string("a:bc");
    QTest::newRow("next word") << std::string("zo a:b ") << std::string("c") << std::string("c");
}

void TestShellLine::bashReplacesWhatStandsBehindABreak()
{
    QFETCH(std::string, text);
    QFETCH(std::string, word);
    QTEST(kit::quotedBehind(kit::shellLineFrom(text, breaks), word), "put");
}

void TestShellLine::whateverAWordHoldsBashReadsItBack_data()
{
    QTest::addColumn<QByteArray>("quote");
    QTest::newRow("none") << QByteArray();
    QTest::newRow("single") << QByteArray("'");
    QTest::newRow("double") << QByteArray("\"");
}

void TestShellLine::whateverAWordHoldsBashReadsItBack()
{
    QFETCH(QByteArray, quote);
    std::string word = "$(touch x)`id`;~#\xc3\xa9";
    for (char letter = ' '; letter < 0x7F; ++letter)
        word += letter;
    const kit::ShellLine line = kit::shellLineFrom("zo " + quote.toStdString(), breaks);
    const QByteArray put = QByteArray::fromStdString(kit::quotedBehind(line, word));
    QProcess bash;
    bash.start("bash", {"--norc", "-c", "printf %s " + quote + put + quote});
    QVERIFY(bash.waitForFinished());
    QCOMPARE(bash.readAllStandardOutput().toStdString(), word);
    QCOMPARE(bash.readAllStandardError(), QByteArray());
}

REGISTER_TEST(TestShellLine, QCoreApplication)
#include "tst_shell_line.moc"
