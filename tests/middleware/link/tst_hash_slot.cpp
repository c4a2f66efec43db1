// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <link/hash_slot.h>

#include <QtTest>

using namespace zo;

/// Which slot of a cluster a key belongs to.
class TestHashSlot : public GuardedTest
{
    Q_OBJECT

private slots:
    void aKeyHasItsPublishedSlot_data();
    void aKeyHasItsPublishedSlot();
    void theFirstBracesDecide_data();
    void theFirstBracesDecide();
    void aPrefixHasATagOrNot_data();
    void aPrefixHasATagOrNot();
};

void TestHashSlot::aKeyHasItsPublishedSlot_data()
{
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<int>("slot");
    QTest::newRow("the check value of the sum") << QByteArray("123456789") << 0x31c3;
    QTest::newRow("foo") << QByteArray("foo") << 12182;
    QTest::newRow("bar") << QByteArray("bar") << 5061;
    QTest::newRow("hello") << QByteArray("hello") << 866;
    QTest::newRow("nothing") << QByteArray("") << 0;
}

void TestHashSlot::aKeyHasItsPublishedSlot()
{
    QFETCH(QByteArray, key);
    QTEST(hashSlotOf(key.toStdString()), "slot");
}

void TestHashSlot::theFirstBracesDecide_data()
{
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QByteArray>("tag");
    QTest::newRow("one pair") << QByteArray("{user1000}.following") << QByteArray("user1000");
    QTest::newRow("inside") << QByteArray("fleet/{robot7}/Arm") << QByteArray("robot7");
    QTest::newRow("empty") << QByteArray("foo{}{bar}") << QByteArray("foo{}{bar}");
    QTest::newRow("two open") << QByteArray("foo{{bar}}zap") << QByteArray("{bar");
    QTest::newRow("two pairs") << QByteArray("foo{bar}{zap}") << QByteArray("bar");
    QTest::newRow("closed first") << QByteArray("a}b{c}") << QByteArray("c");
    QTest::newRow("not closed") << QByteArray("a{b") << QByteArray("a{b");
    QTest::newRow("bytes that are no letters")
        << QByteArray("{\xff\0\x80}", 5) << QByteArray("\xff\0\x80", 3);
}

void TestHashSlot::theFirstBracesDecide()
{
    QFETCH(QByteArray, key);
    QFETCH(QByteArray, tag);
    QCOMPARE(std::string(hashTagOf(key.toStdString())), tag.toStdString());
    QCOMPARE(hashSlotOf(key.toStdString()), hashSlotOf(tag.toStdString()));
}

void TestHashSlot::aPrefixHasATagOrNot_data()
{
    QTest::addColumn<QByteArray>("prefix");
    QTest::addColumn<bool>("has");
    QTest::newRow("none") << QByteArray("") << false;
    QTest::newRow("a word") << QByteArray("robot7/") << false;
    QTest::newRow("a tag") << QByteArray("{robot7}/") << true;
    QTest::newRow("a tag alone") << QByteArray("{robot7}") << true;
    QTest::newRow("an empty one") << QByteArray("{}/") << false;
    QTest::newRow("half a one") << QByteArray("{robot7/") << false;
}

void TestHashSlot::aPrefixHasATagOrNot()
{
    QFETCH(QByteArray, prefix);
    QTEST(hasHashTag(prefix.toStdString()), "has");
}

REGISTER_TEST(TestHashSlot, NoApplication)
#include "tst_hash_slot.moc"
