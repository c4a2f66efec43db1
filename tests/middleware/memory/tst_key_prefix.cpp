// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/redis_server.h"
#include "support/register_test.h"

#include <memory/followed_values.h>
#include <memory/key_prefix.h>
#include <memory/key_text.h>
#include <memory/names_sink.h>

#include <zo/broker_options.h>
#include <zo/error.h>

#include <QtTest>

using namespace zo;

Q_DECLARE_METATYPE(std::string)

/// What the keys of a robot begin with on a server of many.
class TestKeyPrefix : public GuardedTest
{
    Q_OBJECT

private slots:
    void aNameIsWhatStandsBehindIt();
    void everyKeyNeedsNoPattern();
    void noCharacterOfItHasAMeaningInAPattern();
    void theServerTakesThePatternLiterally();
    void aPrefixIsChecked_data();
    void aPrefixIsChecked();
    void theLongestKeyIsShorterBehindIt();
    void aNoticeTellsOfTheKeyBehindIt();
};

void TestKeyPrefix::aNameIsWhatStandsBehindIt()
{
    QCOMPARE(nameBehind("robot7/", "robot7/Arm").value(), std::string_view("Arm"));
    QCOMPARE(nameBehind("robot7/", "robot7/").value(), std::string_view());
    QCOMPARE(nameBehind("", "Arm").value(), std::string_view("Arm"));
    QVERIFY(!nameBehind("robot7/", "robot70/Arm"));
    QVERIFY(!nameBehind("robot7/", "robot7"));
    QVERIFY(!nameBehind("robot7/", "Arm"));
}

void TestKeyPrefix::everyKeyNeedsNoPattern()
{
    QCOMPARE(patternOf("", ""), std::string());
    QCOMPARE(encodeScan("0", 5, "", patternOf("", "")), encodeScan("0", 5, ""));
    QCOMPARE(encodeScan("0", 5, "string", "a*"),
             std::string("*8\r\n$4\r\nSCAN\r\n$1\r\n0\r\n$5\r\nCOUNT\r\n$1\r\n5\r\n"
                         "$5\r\nMATCH\r\n$2\r\na*\r\n$4\r\nTYPE\r\n$6\r\nstring\r\n"));
}

void TestKeyPrefix::noCharacterOfItHasAMeaningInAPattern()
{
    QCOMPARE(patternOf("robot7/", ""), std::string("robot7/*"));
    QCOMPARE(patternOf("", "/End"), std::string("*/End"));
    QCOMPARE(patternOf("r*[7]", "?\\"), std::string("r\\*\\[7\\]*\\?\\\\"));
}

void TestKeyPrefix::theServerTakesThePatternLiterally()
{
    const RedisServer server;
    for (const std::string prefix : {"r*/", "r?/", "r[7]/", "r[^7]/", "r[1-7]/", "r\\7/", "r]/"}) {
        server.command({"FLUSHALL"});
        const std::string own = prefix + "Arm";
        server.command({"MSET", "r/Arm", "1", "r7/Arm", "1", "rr/Arm", "1", own, "1"});
        const std::string found = server.command(
            {"EVAL", "return table.concat(redis.call('SCAN', '0', 'MATCH', ARGV[1])[2], ' ')", "0",
             patternOf(prefix, "m")});
        QCOMPARE(found, own);
    }
}

void TestKeyPrefix::aPrefixIsChecked_data()
{
    QTest::addColumn<std::string>("prefix");
    QTest::addColumn<std::string>("fault");
    const auto row = [](const char* name, const std::string& prefix, const std::string& fault) {
        QTest::newRow(name) << prefix << fault;
    };
    row("none", "", "");
    row("usual", "robot7/", "");
    row("with a hash tag", "{robot7}/", "");
    row("glob characters", "r*[7]?\\", "");
    row("not ASCII", "Röntgen/", "");
    row("longest", std::string(256, 'r'), "");
    row("too long", std::string(257, 'r'), "it is longer than 256 bytes");
    row("1 MB", std::string(1 << 20, 'r'), "it is longer than 256 bytes");
    row("blank", "robot 7/", "there is a blank in it");
    row("line break", "robot7/\n", "there is a control character in it");
    row("NUL", std::string("a\0b", 3), "there is a control character in it");
    row("DEL", "a\x7F", "there is a control character in it");
    row("line separator", "a\xE2\x80\xA8", "there is a control character in it");
    row("Latin-1", "R\xF6ntgen/", "it is no UTF-8");
    row("cut character", "a\xC3", "it is no UTF-8");
}

void TestKeyPrefix::aPrefixIsChecked()
{
    QFETCH(const std::string, prefix);
    QFETCH(const std::string, fault);
    std::string told;
    try {
        ZoBrokerOptions::checkPrefix(prefix);
    } catch (const ZoError& error) {
        told = error.toString();
    }
    QVERIFY2(fault.empty() == told.empty(), told.c_str());
    QVERIFY2(told.find(fault) != std::string::npos, told.c_str());
    QVERIFY(told.size() < 1200);
    QVERIFY(told.find('\n') == std::string::npos);
}

void TestKeyPrefix::theLongestKeyIsShorterBehindIt()
{
    QVERIFY(canBeKey("", std::string(65536, 'k')));
    QVERIFY(canBeKey("robot7/", std::string(65529, 'k')));
    QVERIFY(!canBeKey("robot7/", std::string(65530, 'k')));
    checkKey("robot7/", std::string(65529, 'k'));
    QVERIFY_EXCEPTION_THROWN(checkKey("robot7/", std::string(65530, 'k')), ZoError);
}

void TestKeyPrefix::aNoticeTellsOfTheKeyBehindIt()
{
    FollowedValues values("robot7/");
    FollowedValues::Entry* const arm = values.acquire("Arm");
    values.noticed("Arm", 1);
    values.noticed("robot70/Arm", 2);
    QCOMPARE(arm->second.noticedAt, Place{0});
    values.noticed("robot7/Arm", 3);
    QCOMPARE(arm->second.noticedAt, Place{3});
}

REGISTER_TEST(TestKeyPrefix, NoApplication)

#include "tst_key_prefix.moc"
