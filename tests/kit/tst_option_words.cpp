// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <kit/option_words.h>
#include <kit/usage_error.h>

#include <QtTest>

#include <cstdint>
#include <limits>

using kit::OptionsEnd;
using Texts = std::vector<std::string>;

Q_DECLARE_METATYPE(Texts)
Q_DECLARE_METATYPE(std::string)

/// How programs take the options off their command lines.
class TestOptionWords : public GuardedTest
{
    Q_OBJECT

private slots:
    void init();
    void optionsEndAtTheFirstOperand();
    void dashesEndTheOptionsAndAreTaken();
    void aLoneDashIsAnOperand();
    void aValueMayFollowAnEqualsSign();
    void aValueMayLookLikeAnOption();
    void theLastOfEqualOptionsCounts();
    void whatSettlesEndsTheReading();
    void everyProgramTellsOfItself();
    void optionsAreJoinedInOrder();
    void mistakesAreNamed_data();
    void mistakesAreNamed();
    void operandsAreRefusedWhereThereAreNone();
    void numbersKeepTheirLimits();
    void whatIsNoNumberIsRefused_data();
    void whatIsNoNumberIsRefused();

private:
    /// Reads options out of `texts`; the rest comes into fRest.
    OptionsEnd read(const Texts& texts);

    bool fLoud = false;
    std::string fName;
    int fCount = 0;
    int fHelps = 0;
    Texts fRest;
};

void TestOptionWords::init()
{
    fLoud = false;
    fName.clear();
    fCount = 0;
    fHelps = 0;
}

OptionsEnd TestOptionWords::read(const Texts& texts)
{
    kit::Words words(texts);
    const OptionsEnd end = kit::readOptions(
        words, {kit::flag("--loud", "", fLoud), kit::textOption("--name", "NAME", "", fName),
                kit::numberOption("--count", "N", "", -9, 9, fCount),
                kit::settlingOption({"--help", "-h"}, "", [this] { ++fHelps; })});
    fRest = words.takeAll();
    return end;
}

void TestOptionWords::optionsEndAtTheFirstOperand()
{
    QVERIFY(read({"--loud", "--name", "a", "b", "--count", "3"}) == OptionsEnd::Operand);
    QVERIFY(fLoud);
    QCOMPARE(fName, std::string("a"));
    QCOMPARE(fCount, 0);
    QCOMPARE(fRest, (Texts{"b", "--count", "3"}));
    QVERIFY(read({}) == OptionsEnd::Operand);
    QVERIFY(read({""}) == OptionsEnd::Operand);
    QCOMPARE(fRest, Texts{""});
}

void TestOptionWords::dashesEndTheOptionsAndAreTaken()
{
    QVERIFY(read({"--loud", "--", "--name", "--"}) == OptionsEnd::Dashes);
    QCOMPARE(fRest, (Texts{"--name", "--"}));
}

void TestOptionWords::aLoneDashIsAnOperand()
{
    QVERIFY(read({"-", "--loud"}) == OptionsEnd::Operand);
    QCOMPARE(fRest, (Texts{"-", "--loud"}));
}

void TestOptionWords::aValueMayFollowAnEqualsSign()
{
    read({"--count=7", "--name=a=b"});
    QCOMPARE(fCount, 7);
    QCOMPARE(fName, std::string("a=b"));
}

void TestOptionWords::aValueMayLookLikeAnOption()
{
    read({"--count", "-3", "--name", "--"});
    QCOMPARE(fCount, -3);
    QCOMPARE(fName, std::string("--"));
    read({"--name", "--help", "[1, 2]"});
    QCOMPARE(fName, std::string("--help"));
    QCOMPARE(fHelps, 0);
    QCOMPARE(fRest, Texts{"[1, 2]"});
}

void TestOptionWords::theLastOfEqualOptionsCounts()
{
    read({"--name", "a", "--loud", "--loud", "--name", "b"});
    QCOMPARE(fName, std::string("b"));
    QVERIFY(fLoud);
}

void TestOptionWords::whatSettlesEndsTheReading()
{
    QVERIFY(read({"--loud", "--help", "--nonsense"}) == OptionsEnd::Settled);
    QVERIFY(read({"-h"}) == OptionsEnd::Settled);
    QCOMPARE(fHelps, 2);
}

void TestOptionWords::everyProgramTellsOfItself()
{
    Texts told;
    const kit::Options options = kit::aboutOptions([&told] { told.emplace_back("help"); },
                                                   [&told] { told.emplace_back("version"); });
    for (const std::string word : {"--help", "-h", "--version"}) {
        kit::Words words({word, "--nonsense"});
        QVERIFY(kit::readOptions(words, options) == OptionsEnd::Settled);
    }
    QCOMPARE(told, (Texts{"help", "help", "version"}));
}

void TestOptionWords::optionsAreJoinedInOrder()
{
    bool any = false;
    const kit::Options options = kit::joined({kit::flag("--a", "", any), kit::flag("--b", "", any)},
                                             {kit::flag("--c", "", any)});
    Texts names;
    for (const kit::Option& option : options)
        names.push_back(option.names[0]);
    QCOMPARE(names, (Texts{"--a", "--b", "--c"}));
}

void TestOptionWords::mistakesAreNamed_data()
{
    QTest::addColumn<Texts>("words");
    QTest::addColumn<QString>("mistake");
    QTest::newRow("unknown") << Texts{"--nonsense"} << "there is no option '--nonsense' here";
    QTest::newRow("unknown, with a value") << Texts{"--non=3"} << "there is no option '--non' here";
    QTest::newRow("begin of one") << Texts{"--nam", "a"} << "there is no option '--nam' here";
    QTest::newRow("letter") << Texts{"-v"} << "there is no option '-v' here";
    QTest::newRow("no value") << Texts{"--loud", "--name"} << "--name needs a value";
    QTest::newRow("empty value") << Texts{"--name", ""} << "--name needs a value";
    QTest::newRow("nothing behind =") << Texts{"--name=", "a"} << "--name needs a value";
    QTest::newRow("value of a flag") << Texts{"--loud=yes"} << "--loud has no value";
    QTest::newRow("empty value of a flag") << Texts{"--loud="} << "--loud has no value";
    QTest::newRow("bad number") << Texts{"--count", "ten"}
                                << "--count must be a whole number from -9 to 9, not 'ten'";
}

void TestOptionWords::mistakesAreNamed()
{
    QFETCH(Texts, words);
    QFETCH(QString, mistake);
    try {
        read(words);
        QFAIL("accepted");
    } catch (const kit::UsageError& error) {
        QCOMPARE(QString(error.what()), mistake);
    }
}

void TestOptionWords::operandsAreRefusedWhereThereAreNone()
{
    kit::refuseOperands(kit::Words({}));
    try {
        kit::refuseOperands(kit::Words({"robot:7000", "more"}));
        QFAIL("accepted");
    } catch (const kit::UsageError& error) {
        QCOMPARE(QString(error.what()), QString("'robot:7000' is no option; an address is given "
                                                "with --connect HOST[:PORT]"));
    }
}

void TestOptionWords::numbersKeepTheirLimits()
{
    QCOMPARE(kit::numberFrom("--n", "1", 1, 3), 1);
    QCOMPARE(kit::numberFrom("--n", "3", 1, 3), 3);
    const std::uint32_t most = std::numeric_limits<std::uint32_t>::max();
    QCOMPARE(kit::numberFrom<std::uint32_t>("--n", "4294967295", 0, most), most);
    QCOMPARE(kit::numberFrom("--n", "0.1", 0.1, 1000.0), 0.1);
    QCOMPARE(kit::numberFrom("--n", "1e3", 0.1, 1000.0), 1000.0);
}

void TestOptionWords::whatIsNoNumberIsRefused_data()
{
    QTest::addColumn<std::string>("text");
    for (const char* text : {"0.09", "1001", "nan", "inf", "2,5", " 1", "1 ", "1x", "+1", "0x1"})
        QTest::newRow(text) << std::string(text);
}

void TestOptionWords::whatIsNoNumberIsRefused()
{
    QFETCH(std::string, text);
    try {
        kit::numberFrom("--rate", text, 0.1, 1000.0);
        QFAIL("accepted");
    } catch (const kit::UsageError& error) {
        QCOMPARE(std::string(error.what()),
                 "--rate must be a number from 0.1 to 1000, not '" + text + "'");
    }
}

REGISTER_TEST(TestOptionWords, NoApplication)
#include "tst_option_words.moc"
