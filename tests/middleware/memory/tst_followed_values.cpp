// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <memory/followed_values.h>

#include <QtTest>

using namespace zo;

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using Reading = FollowedValues::Reading;

const FollowedValues::Time start{std::chrono::hours(1)};

/// A reply at `place` after which the robot tells of changes.
Reading told(Place place)
{
    return {place, true, start};
}

} // namespace

/// What a link knows of the keys that its lists follow.
class TestFollowedValues : public GuardedTest
{
    Q_OBJECT

private slots:
    void aKeyIsKnownUntilANoticeComes();
    void aNoticeBeforeTheReplyIsOlder();
    void aReadWithoutNoticesIsNotTold();
    void anOlderReplyChangesNothing();
    void onlyAnotherValueIsAChange();
    void aTooLargeValueIsLeftAloneForLongerAndLonger();
    void aForbiddenKeyIsLeftAloneForAWhile();
    void whatIsReadInVainIsLeftAloneLongerEachTime();
    void anOwnWriteEndsThePause();
    void anOwnWriteIsAChangeWhateverBecomesOfIt();
    void whoComesInTheMidstOfOwnWritesKnowsOfThem();
    void allKeysMayHaveChanged();
    void aNewConnectionKnowsNothing();
    void memoryIsGivenBack();

private:
    FollowedValues fValues;
    FollowedValues::Entry* fEntry = nullptr;

private slots:
    void init() { fEntry = fValues.acquire("a"); }
    void cleanup() { fValues.release(fEntry); }
};

void TestFollowedValues::aKeyIsKnownUntilANoticeComes()
{
    QVERIFY(!fEntry->second.isTold());
    QVERIFY(fValues.read(*fEntry, 1, told(5)));
    QVERIFY(fEntry->second.isTold());
    QVERIFY(fEntry->second.value == ZoValue(1));
    QVERIFY(fEntry->second.askedAt == start);
    fValues.noticed("a", 6);
    QVERIFY(!fEntry->second.isTold());
    QVERIFY(fEntry->second.isWrittenSince(5));
    QVERIFY(!fEntry->second.isWrittenSince(6));
    fValues.noticed("nobody's", 7);
    QVERIFY(!fEntry->second.isWrittenSince(6));
}

void TestFollowedValues::aNoticeBeforeTheReplyIsOlder()
{
    fValues.noticed("a", 4);
    QVERIFY(fValues.read(*fEntry, 1, told(5)));
    QVERIFY(fEntry->second.isTold());
}

void TestFollowedValues::aReadWithoutNoticesIsNotTold()
{
    QVERIFY(fValues.read(*fEntry, 1, {5, false, start}));
    QVERIFY(!fEntry->second.isTold());
}

void TestFollowedValues::anOlderReplyChangesNothing()
{
    QVERIFY(fValues.read(*fEntry, 2, told(6)));
    QVERIFY(!fValues.read(*fEntry, 1, told(5)));
    QVERIFY(!fValues.readTooLarge(*fEntry, told(5), start));
    QVERIFY(!fValues.refused(*fEntry, told(5), start));
    QVERIFY(fEntry->second.value == ZoValue(2));
    QVERIFY(!fEntry->second.isForbidden);
    QVERIFY(!fEntry->second.isPaused(start));
    QCOMPARE(fEntry->second.readAt, Place{6});
}

void TestFollowedValues::onlyAnotherValueIsAChange()
{
    QVERIFY(fValues.read(*fEntry, 1, told(1)));
    QVERIFY(fValues.read(*fEntry, 1, told(2)));
    QVERIFY(!fEntry->second.isWrittenSince(0));
    const auto version = fEntry->second.version;
    QVERIFY(fValues.read(*fEntry, 2, told(3)));
    QVERIFY(fEntry->second.isWrittenSince(2));
    QVERIFY(fEntry->second.version > version);
}

void TestFollowedValues::aTooLargeValueIsLeftAloneForLongerAndLonger()
{
    QVERIFY(fValues.read(*fEntry, 1, told(1)));
    Place place = 1;
    for (const int pause : {1, 2, 4, 8, 10, 10}) {
        QVERIFY(fValues.readTooLarge(*fEntry, told(++place), start));
        QVERIFY(fEntry->second.value.getType() == ZoValue::Invalid);
        QVERIFY(fEntry->second.isPaused(start + seconds(pause) - milliseconds(1)));
        QVERIFY(!fEntry->second.isPaused(start + seconds(pause)));
    }
    QVERIFY(fValues.read(*fEntry, 1, told(++place)));
    QVERIFY(!fEntry->second.isPaused(start));
    QVERIFY(fValues.readTooLarge(*fEntry, told(++place), start));
    QVERIFY(!fEntry->second.isPaused(start + seconds(1)));
}

void TestFollowedValues::aForbiddenKeyIsLeftAloneForAWhile()
{
    QVERIFY(fValues.read(*fEntry, 1, told(1)));
    QVERIFY(fValues.refused(*fEntry, {2, false, start}, start));
    QVERIFY(fEntry->second.isForbidden);
    QVERIFY(!fEntry->second.isTold()); // nobody tells that it may be read again
    QVERIFY(fEntry->second.value.getType() == ZoValue::Invalid);
    QVERIFY(fEntry->second.isPaused(start + seconds(10) - milliseconds(1)));
    QVERIFY(!fEntry->second.isPaused(start + seconds(10)));
    QVERIFY(fValues.read(*fEntry, 1, told(3)));
    QVERIFY(!fEntry->second.isForbidden);
}

void TestFollowedValues::whatIsReadInVainIsLeftAloneLongerEachTime()
{
    for (const int pause : {1, 2, 4, 8, 10}) {
        QVERIFY(fValues.read(*fEntry, 1, {1, false, {}}));
        fValues.leaveOut(*fEntry, start);
        QVERIFY(fEntry->second.value == ZoValue());
        QVERIFY(fEntry->second.isPaused(start + seconds(pause) - milliseconds(1)));
        QVERIFY(!fEntry->second.isPaused(start + seconds(pause)));
    }
    for (int kept = 0; kept < 2; ++kept)
        QVERIFY(fValues.read(*fEntry, 1, {1, false, {}}));
    fValues.leaveOut(*fEntry, start);
    QVERIFY(!fEntry->second.isPaused(start + seconds(1)));
}

void TestFollowedValues::anOwnWriteEndsThePause()
{
    QVERIFY(fValues.readTooLarge(*fEntry, told(1), start));
    QVERIFY(fEntry->second.isPaused(start));
    fValues.beginWrite({"a"});
    QVERIFY(!fEntry->second.isPaused(start));
    fValues.endWrite({"a"}, 3);
    QVERIFY(!fEntry->second.isPaused(start));
    QVERIFY(fValues.readTooLarge(*fEntry, told(2), start)); // it came before
    QVERIFY(!fEntry->second.isPaused(start));
    QVERIFY(fValues.readTooLarge(*fEntry, told(4), start));
    QVERIFY(fEntry->second.isPaused(start));
}

void TestFollowedValues::whoComesInTheMidstOfOwnWritesKnowsOfThem()
{
    fValues.beginWrite({"b"});
    FollowedValues::Entry* const entry = fValues.acquire("b");
    QCOMPARE(entry->second.writes, 1);
    fValues.beginWrite({"b"});
    fValues.endWrite({"b"}, 1);
    QCOMPARE(entry->second.writes, 1);
    fValues.endWrite({"b"}, 2);
    QCOMPARE(entry->second.writes, 0);
    fValues.release(entry);
}

void TestFollowedValues::anOwnWriteIsAChangeWhateverBecomesOfIt()
{
    QVERIFY(fValues.read(*fEntry, 1, told(1)));
    fValues.beginWrite({"a", "nobody's"});
    fValues.beginWrite({"a"});
    QCOMPARE(fEntry->second.writes, 2);
    fValues.endWrite({"a", "nobody's"}, 2);
    QCOMPARE(fEntry->second.writes, 1);
    QVERIFY(!fEntry->second.isTold());
    fValues.endWrite({"a"}, 3);
    fValues.endWrite({"a"}, 4); // it began before the key was followed
    QCOMPARE(fEntry->second.writes, 0);
}

void TestFollowedValues::allKeysMayHaveChanged()
{
    FollowedValues::Entry* const other = fValues.acquire("b");
    QVERIFY(fValues.read(*fEntry, 1, told(1)) && fValues.read(*other, 2, told(1)));
    fValues.noticedAll(2);
    QVERIFY(!fEntry->second.isTold() && !other->second.isTold());
    fValues.release(other);
}

void TestFollowedValues::aNewConnectionKnowsNothing()
{
    QVERIFY(fValues.acquire("a") == fEntry);
    QVERIFY(fValues.read(*fEntry, "text", told(9)));
    fValues.beginWrite({"a"});
    const std::size_t memory = fValues.memory();
    fValues.forget();
    QVERIFY(fValues.memory() < memory);
    QVERIFY(!fEntry->second.isTold());
    QCOMPARE(fEntry->second.writes, 0);
    QVERIFY(fValues.read(*fEntry, 1, told(1))); // places begin anew
    fValues.release(fEntry);                    // of the two lists one has it still
    QVERIFY(fValues.memory() > 0);
}

void TestFollowedValues::memoryIsGivenBack()
{
    const std::size_t empty = fValues.memory();
    FollowedValues::Entry* const other = fValues.acquire("b");
    QVERIFY(fValues.read(*other, std::string(5000, 't'), told(1)));
    QVERIFY(fValues.memory() > empty + 5000);
    ZoValue texts;
    texts.arraySetSize(1);
    texts[0] = std::string(3000, 't');
    QVERIFY(fValues.read(*other, texts, told(2)));
    QVERIFY(fValues.memory() > empty + 3000 && fValues.memory() < empty + 5000);
    fValues.release(other);
    QCOMPARE(fValues.memory(), empty);
}

REGISTER_TEST(TestFollowedValues, NoApplication)

#include "tst_followed_values.moc"
