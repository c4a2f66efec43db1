// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <kit/options_text.h>

#include <QtTest>

/// What --help says of options.
class TestOptionsText : public GuardedTest
{
    Q_OBJECT

private slots:
    void textsStandInOneColumn();
    void longTextsAreWrappedInTheirColumn();
    void aWordLongerThanALineStaysWhole();
};

void TestOptionsText::textsStandInOneColumn()
{
    bool loud = false;
    std::string name;
    QCOMPARE(QString::fromStdString(
                 kit::optionsText({kit::flag("--loud", "be loud", loud),
                                   kit::textOption("--name", "NAME", "the name", name),
                                   kit::settlingOption({"--help", "-h"}, "print this", [] {})})),
             QString("  --loud       be loud\n"
                     "  --name NAME  the name\n"
                     "  --help, -h   print this\n"));
    QCOMPARE(kit::optionsText({}), std::string());
}

void TestOptionsText::longTextsAreWrappedInTheirColumn()
{
    bool loud = false;
    QString help;
    for (int i = 0; i < 60; ++i)
        help += QString("word%1 ").arg(i);
    const QString text =
        QString::fromStdString(kit::optionsText({kit::flag("--loud", help.toStdString(), loud)}));
    QCOMPARE(text.simplified(), ("--loud " + help).trimmed());
    const QStringList lines = text.chopped(1).split('\n');
    QVERIFY(lines.size() > 3);
    for (const QString& line : lines) {
        QVERIFY2(line.size() <= 90, qPrintable(line));
        QCOMPARE(line.indexOf("word"), 10);
    }
    // No line has room for the word that begins the next.
    for (int i = 0; i + 1 < lines.size(); ++i)
        QVERIFY(lines[i].size() + 1 + lines[i + 1].simplified().section(' ', 0, 0).size() > 90);
}

void TestOptionsText::aWordLongerThanALineStaysWhole()
{
    bool loud = false;
    const std::string word(200, 'x');
    QCOMPARE(kit::optionsText({kit::flag("--loud", word, loud)}), "  --loud  " + word + "\n");
}

REGISTER_TEST(TestOptionsText, NoApplication)
#include "tst_options_text.moc"
