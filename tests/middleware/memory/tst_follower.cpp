// SPDX-License-Identifier: MIT
#include "support/follower_bench.h"
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <memory/follower.h>

#include <QtTest>

#include <string>

using namespace zo;

namespace {

using std::chrono::milliseconds;
using Names = FollowerBench::Names;

std::string nameOf(int key)
{
    return FollowerBench::nameOf(key);
}

Names namesOf(int first, int count)
{
    return FollowerBench::namesOf(first, count);
}

ZoValue requestOf(int first, int count)
{
    return FollowerBench::requestOf(first, count);
}

Names keysOf(const Follower::Begun& begun)
{
    return FollowerBench::keysOf(begun);
}

} // namespace

/// What is decided about lists that are asked for again and again. What no list of events here
/// thinks of, tests/simulation finds.
class TestFollower : public GuardedTest
{
    Q_OBJECT

private slots:
    void theFirstRoundReadsAll();
    void laterOnesReadWhatWasWrittenAndTheTurn();
    void aNoticeBehindTheReplyIsReadAgain();
    void whatIsAskedForAlreadyIsNotAskedForAgain();
    void whatIsAlwaysWrittenIsReadInEachRound();
    void whenMuchIsWrittenAllIsReadWithoutNotices();
    void whoComesAnewReadsWhatIsLate();
    void withoutNoticesWhoComesAnewReadsWhatIsNotKnown();
    void anAnswerThatWasGivenIsNotGivenAgainWhenTheNextIsNear();
    void anAnswerThatWasGivenIsGivenAgainWhenTheNextIsFar();
    void anOwnWriteHidesWhatWasAskedForBefore();
    void aLostLinkHasNoAnswer();
};

void TestFollower::theFirstRoundReadsAll()
{
    FollowerBench link;
    const auto asked = link.ask(requestOf(0, 3));
    QVERIFY(!asked.values);
    QVERIFY(asked.patience == Follower::Patience::Full);
    const auto begun = link.begin();
    QVERIFY(keysOf(begun) == namesOf(0, 3));
    link.answer(begun);
    QVERIFY(link.follower.answer(link.now, asked.list) == ZoValue::Elements(3, ZoValue(1)));
}

void TestFollower::laterOnesReadWhatWasWrittenAndTheTurn()
{
    FollowerBench link;
    const ZoValue request = requestOf(0, 60);
    link.poll(request);
    link.poll(request);
    link.poll(request); // from here on it is told
    link.follower.noticed(nameOf(50));
    link.call(request);
    const auto begun = link.begin();
    QVERIFY(begun.round->plan()->telling() == Telling::Wanted);
    QCOMPARE(keysOf(begun).size(), std::size_t{2});
    QVERIFY(keysOf(begun).count(nameOf(50)) == 1);
}

void TestFollower::aNoticeBehindTheReplyIsReadAgain()
{
    FollowerBench link;
    const ZoValue request = requestOf(0, 60);
    for (int i = 0; i < 3; ++i)
        link.poll(request);
    link.follower.noticed(nameOf(50));
    link.call(request);
    const auto begun = link.begin();
    link.reply(begun);
    link.follower.noticed(nameOf(50));
    link.end(begun);
    link.call(request);
    QVERIFY(keysOf(link.begin()).count(nameOf(50)) == 1);
}

void TestFollower::whatIsAskedForAlreadyIsNotAskedForAgain()
{
    FollowerBench link;
    const ZoValue request = requestOf(0, 60);
    for (int i = 0; i < 50; ++i)
        link.poll(request); // until it is known how much the way holds
    link.follower.noticed(nameOf(55));
    link.call(request);
    QVERIFY(keysOf(link.begin()).count(nameOf(55)) == 1);
    link.call(request);
    QVERIFY(keysOf(link.begin()).count(nameOf(55)) == 0);
}

void TestFollower::whatIsAlwaysWrittenIsReadInEachRound()
{
    FollowerBench link;
    const ZoValue request = requestOf(0, 60);
    for (int i = 0; i < 10; ++i) {
        link.poll(request);
        link.follower.noticed(nameOf(50));
    }
    link.poll(request);
    link.call(request); // without a notice now
    QVERIFY(keysOf(link.begin()).count(nameOf(50)) == 1);
}

void TestFollower::whenMuchIsWrittenAllIsReadWithoutNotices()
{
    FollowerBench link;
    const ZoValue request = requestOf(0, 60);
    for (int i = 0; i < 3; ++i)
        link.poll(request);
    for (int again = 0; again < 2; ++again) {
        for (int key = 0; key < 21; ++key)
            link.follower.noticed(nameOf(key));
        link.poll(request);
    }
    link.call(request);
    const auto begun = link.begin();
    QVERIFY(begun.round->plan()->telling() == Telling::Refused);
    QVERIFY(keysOf(begun) == namesOf(0, 60));
}

void TestFollower::whoComesAnewReadsWhatIsLate()
{
    FollowerBench link;
    for (int i = 0; i < 3; ++i)
        link.poll(requestOf(0, 60));
    link.now += milliseconds(900);
    link.ask(requestOf(0, 59), 1);
    QVERIFY(keysOf(link.begin()).size() < 5);
    for (int i = 0; i < 10; ++i) { // the values stay, and no round reads them
        link.ask(requestOf(0, 60));
        link.now += milliseconds(900);
    }
    const auto asked = link.ask(requestOf(0, 58), 2);
    auto begun = link.begin();
    while (begun.list != asked.list) {
        QVERIFY(keysOf(begun).size() < 20); // few rounds have gone by
        begun = link.begin();
    }
    QVERIFY(keysOf(begun).size() > 40);
}

void TestFollower::withoutNoticesWhoComesAnewReadsWhatIsNotKnown()
{
    FollowerBench link(false);
    for (int i = 0; i < 3; ++i)
        link.poll(requestOf(0, 60));
    const auto asked = link.ask(requestOf(0, 62), 1);
    QVERIFY(asked.patience == Follower::Patience::OneWay);
    const auto begun = link.begin();
    QVERIFY(begun.list == asked.list);
    QVERIFY(keysOf(begun) == (Names{nameOf(0), nameOf(60), nameOf(61)}));
    link.answer(begun);
    const auto number = link.follower.writes({nameOf(50)});
    link.ask(requestOf(0, 63), 2);
    QVERIFY(keysOf(link.begin()).count(nameOf(50)) == 1);
    link.follower.wrote({nameOf(50)}, {number, ++link.order});
    link.ask(requestOf(0, 64), 3);
    QVERIFY(keysOf(link.begin()).count(nameOf(50)) == 1);
    link.now += milliseconds(101); // what was read is too old to be shown
    link.ask(requestOf(0, 65), 4);
    QVERIFY(keysOf(link.begin()).size() > 60);
}

void TestFollower::anAnswerThatWasGivenIsNotGivenAgainWhenTheNextIsNear()
{
    FollowerBench link;
    const ZoValue request = requestOf(0, 3);
    for (int i = 0; i < 10; ++i)
        link.poll(request);
    QVERIFY(link.call(request).values);
    const auto late = link.call(request);
    QVERIFY(!late.values && late.patience == Follower::Patience::Brief);
    QVERIFY(!link.follower.news(link.now, late.list));
    QVERIFY(link.follower.answer(link.now, late.list)); // at the end of the wait
    link.answerAll();
    QVERIFY(link.follower.news(link.now, late.list));
    QVERIFY(!link.follower.news(link.now, late.list));
}

void TestFollower::anAnswerThatWasGivenIsGivenAgainWhenTheNextIsFar()
{
    FollowerBench link(true, milliseconds(20));
    const ZoValue request = requestOf(0, 3);
    for (int i = 0; i < 20; ++i) {
        link.passUntil(link.called + FollowerBench::fPeriod);
        link.call(request);
    }
    link.passUntil(link.now + milliseconds(99));
    QVERIFY(link.ask(request).values);
    QVERIFY(link.ask(request).values);
}

void TestFollower::anOwnWriteHidesWhatWasAskedForBefore()
{
    FollowerBench link;
    const ZoValue request = requestOf(0, 60);
    for (int i = 0; i < 3; ++i)
        link.poll(request);
    QVERIFY(link.ask(request).values);
    const auto number = link.follower.writes({nameOf(50)});
    const auto write = ++link.order;
    link.follower.wrote({nameOf(50)}, {number, write});
    QVERIFY(!link.ask(request).values);
    const auto begun = link.begin();
    QVERIFY(keysOf(begun).count(nameOf(50)) == 1);
    link.answer(begun);
    QVERIFY(link.ask(request).values);
}

void TestFollower::aLostLinkHasNoAnswer()
{
    FollowerBench link;
    for (int i = 0; i < 3; ++i)
        link.poll(requestOf(0, 3));
    const auto list = link.ask(requestOf(0, 3)).list;
    link.follower.wentDown();
    QVERIFY(!link.follower.answer(link.now, list));
    QVERIFY(link.follower.wakeAt() == Follower::Time::max());
    QVERIFY(!link.begins());
    link.follower.cameUp(true);
    link.ask(requestOf(0, 3));
    QVERIFY(keysOf(link.begin()) == namesOf(0, 3));
}

REGISTER_TEST(TestFollower, NoApplication)

#include "tst_follower.moc"
