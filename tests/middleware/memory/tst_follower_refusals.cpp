// SPDX-License-Identifier: MIT
#include "support/follower_bench.h"
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <memory/follower.h>

#include <QtTest>

#include <algorithm>
#include <string>

using namespace zo;

namespace {

using Bench = FollowerBench;
using std::chrono::seconds;

} // namespace

/// What becomes of followed keys that a robot forbids, and of its errors.
class TestFollowerRefusals : public GuardedTest
{
    Q_OBJECT

private slots:
    void keysRefusedTogetherAreAskedForOneByOne();
    void manyKeysRefusedTogetherTakeSeveralRounds();
    void fewForbiddenKeysAreTriedAgainInOneRound();
    void allForbiddenKeysHaveTheirTurn();
    void whoMayAskForNothingHearsNothingNew();
    void aServersErrorIsTold();
};

void TestFollowerRefusals::keysRefusedTogetherAreAskedForOneByOne()
{
    Bench link;
    link.refused = {Bench::nameOf(1)};
    const auto asked = link.ask(Bench::requestOf(0, 3));
    link.answer(link.begin());
    QVERIFY(!link.follower.answer(link.now, asked.list));
    const auto more = link.begin();
    QVERIFY(more.isMore);
    QCOMPARE(Bench::commandsOf(more), 3);
    link.answer(more);
    QVERIFY(link.follower.answer(link.now, asked.list) ==
            (ZoValue::Elements{ZoValue(1), ZoValue(), ZoValue(1)}));
    link.call(Bench::requestOf(0, 3));
    QVERIFY(Bench::keysOf(link.begin()).count(Bench::nameOf(1)) ==
            0); // rights may change, but not at once
}

void TestFollowerRefusals::manyKeysRefusedTogetherTakeSeveralRounds()
{
    Bench link;
    link.refused = {Bench::nameOf(1)};
    const auto asked = link.ask(Bench::requestOf(0, 120));
    link.answer(link.begin());
    Bench::Names again;
    for (const std::size_t keys : {50, 50, 20}) {
        QVERIFY(!link.follower.news(link.now, asked.list));
        const auto more = link.begin();
        QVERIFY(more.isMore);
        QCOMPARE(Bench::keysOf(more).size(), keys);
        again.merge(Bench::keysOf(more));
        link.answer(more);
    }
    QVERIFY(again == Bench::namesOf(0, 120));
    auto values = ZoValue::Elements(120, ZoValue(1));
    values[1] = ZoValue();
    QVERIFY(link.follower.news(link.now, asked.list) == values);
}

void TestFollowerRefusals::fewForbiddenKeysAreTriedAgainInOneRound()
{
    Bench link;
    link.refused = Bench::namesOf(0, 60);
    for (int i = 0; i < 110; ++i)
        link.poll(Bench::requestOf(0, 61));
    link.refused.clear();
    std::size_t most = 0;
    Bench::Names again;
    for (int i = 0; i < 110; ++i) {
        link.call(Bench::requestOf(0, 61));
        while (const auto begun = link.follower.begin(link.now)) {
            if (again.size() < 60)
                most = std::max(most, begun->round->plan()->commands().size());
            for (const std::string& name : Bench::keysOf(*begun))
                again.insert(name);
            link.answer(*begun);
        }
    }
    QVERIFY(again == Bench::namesOf(0, 61));
    QVERIFY(most >= 50 && most <= 51);
}

// Who calls as seldom as forbidden keys are tried again finds all of them due at each call.
void TestFollowerRefusals::allForbiddenKeysHaveTheirTurn()
{
    Bench link;
    link.refused = Bench::namesOf(0, 120);
    const auto callOn = [&] {
        link.passUntil(link.now + seconds(11));
        link.callNow(Bench::requestOf(0, 120));
    };
    for (int i = 0; i < 5; ++i)
        callOn();
    link.begun.clear();
    for (int i = 0; i < 4; ++i)
        callOn();
    Bench::Names tried;
    for (const auto& begun : link.begun) {
        QVERIFY(Bench::commandsOf(begun) <= 50);
        tried.merge(Bench::keysOf(begun));
    }
    QVERIFY(tried == Bench::namesOf(0, 120));
}

void TestFollowerRefusals::whoMayAskForNothingHearsNothingNew()
{
    Bench link;
    link.refused = Bench::namesOf(0, 1);
    link.poll(Bench::requestOf(0, 1));
    const auto list = link.call(Bench::requestOf(0, 1)).list;
    const auto arrived = list->arrived();
    for (int i = 0; i < 20; ++i) {
        const auto begun = link.begin();
        QVERIFY(Bench::keysOf(begun).empty());
        link.follower.answeredAtOnce(begun, link.now);
        QVERIFY(link.call(Bench::requestOf(0, 1)).values);
    }
    QVERIFY(list->arrived() == arrived);
}

void TestFollowerRefusals::aServersErrorIsTold()
{
    Bench link;
    const auto asked = link.ask(Bench::requestOf(0, 3));
    const auto begun = link.begin();
    const int reply = begun.round->plan()->repliesPerCommand() - 1;
    QVERIFY(begun.round->take({reply, 0, 0}, {ReplyKind::Error, "LOADING not yet"}));
    link.end(begun);
    try {
        link.follower.answer(link.now, asked.list);
        QFAIL("nothing is told");
    } catch (const ServerRefusal& refusal) {
        QCOMPARE(refusal.text, std::string("LOADING not yet"));
    }
    QVERIFY(!link.follower.answer(link.now, asked.list)); // once
}

REGISTER_TEST(TestFollowerRefusals, NoApplication)

#include "tst_follower_refusals.moc"
