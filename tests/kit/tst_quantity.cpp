// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <kit/quantity.h>
#include <kit/usage_error.h>

#include <QtTest>

using namespace std::chrono_literals;

/// Times and sizes with their units.
class TestQuantity : public GuardedTest
{
    Q_OBJECT

private slots:
    void timesHaveUnits();
    void sizesHaveUnits();
    void secondsAreReadAndWritten();
    void aMistakeNamesTheOption();
    void sizesAreShownForPeople();
};

void TestQuantity::timesHaveUnits()
{
    QVERIFY(kit::timeIn("1ms") == 1ms);
    QVERIFY(kit::timeIn("90s") == 90s);
    QVERIFY(kit::timeIn("1.5min") == 90s);
    QVERIFY(kit::timeIn("0.5h") == 30min);
    QVERIFY(kit::timeIn("2d") == 48h);
    for (const char* wrong : {"", "s", "1", "-1s", "0s", "0.5ms", "1 s", "1S", "1sec", "1e3s",
                              "nans", "infd", "99999d", "1MB"})
        QVERIFY2(!kit::timeIn(wrong), wrong);
}

void TestQuantity::sizesHaveUnits()
{
    QVERIFY(kit::sizeIn("1kB") == std::uint64_t(1000));
    QVERIFY(kit::sizeIn("1.5GB") == std::uint64_t(1500000000));
    for (const char* wrong : {"", "1", "1M", "1KB", "0MB", "-1MB", "9999TB", "1s"})
        QVERIFY2(!kit::sizeIn(wrong), wrong);
}

void TestQuantity::secondsAreReadAndWritten()
{
    QVERIFY(kit::secondsIn("1700000000.0625") == 1700000000063ms);
    QVERIFY(kit::secondsIn("-1.5") == -1500ms);
    QVERIFY(kit::secondsIn("1e11") == std::chrono::seconds(100000000000));
    for (const char* wrong : {"", " 1", "1s", "nan", "-nan", "inf", "-inf", "1e12", "-1e12",
                              "1e999", "0x1", "+1", "1,5"})
        QVERIFY2(!kit::secondsIn(wrong), wrong);
    QCOMPARE(kit::secondsText(0ms), std::string("0.000"));
    QCOMPARE(kit::secondsText(60ms), std::string("0.060"));
    QCOMPARE(kit::secondsText(123456789ms), std::string("123456.789"));
    QCOMPARE(kit::secondsText(1700000000007ms), std::string("1700000000.007"));
}

void TestQuantity::aMistakeNamesTheOption()
{
    QVERIFY(kit::timeFrom("--for", "1s") == 1s);
    try {
        kit::timeFrom("--for", "90");
        QFAIL("90 is no time");
    } catch (const kit::UsageError& error) {
        QVERIFY2(QString(error.what()).startsWith("--for must be a time with its unit"),
                 error.what());
    }
}

void TestQuantity::sizesAreShownForPeople()
{
    QCOMPARE(kit::sizeText(0), std::string("0 B"));
    QCOMPARE(kit::sizeText(999), std::string("999 B"));
    QCOMPARE(kit::sizeText(1000), std::string("1.0 kB"));
    QCOMPARE(kit::sizeText(999949), std::string("999.9 kB"));
    QCOMPARE(kit::sizeText(999950), std::string("1.0 MB"));
    QCOMPARE(kit::sizeText(12345678901), std::string("12.3 GB"));
}

REGISTER_TEST(TestQuantity, NoApplication)
#include "tst_quantity.moc"
