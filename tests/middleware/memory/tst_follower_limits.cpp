// SPDX-License-Identifier: MIT
#include "support/follower_bench.h"
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <memory/follower.h>

#include <QtTest>

#include <set>
#include <string>
#include <vector>

using namespace zo;

namespace {

using Bench = FollowerBench;
using std::chrono::milliseconds;

} // namespace

/// How much one link follows: rounds, lists, and memory for their values.
class TestFollowerLimits : public GuardedTest
{
    Q_OBJECT

private slots:
    void thereAreNoMoreRoundsThanCalls();
    void theListsOfALinkShareItsWay();
    void aListThatIsLeftIsForgotten();
    void theLeastUsedOfManyListsGoes();
    void whoComesToSixteenFollowedListsIsAnsweredAndNotFollowed();
    void theLeastUsedGoesWhenValuesTakeTooMuch();
    void whatIsTooMuchBesideAFollowedListIsAnsweredAndNotFollowed();
    void whatIsTooMuchForOneListIsInvalidAlone();
};

void TestFollowerLimits::thereAreNoMoreRoundsThanCalls()
{
    Bench link;
    int rounds = 0;
    for (int call = 1; call <= 50; ++call) {
        link.call(Bench::requestOf(0, 3));
        while (const auto begun = link.follower.begin(link.now)) {
            ++rounds;
            link.answer(*begun);
        }
        QVERIFY(rounds <= call);
    }
    QVERIFY(rounds > 40);
    link.now += milliseconds(900);
    while (const auto begun = link.follower.begin(link.now)) {
        ++rounds;
        link.answer(*begun);
    }
    QVERIFY(rounds <= 50);
}

void TestFollowerLimits::theListsOfALinkShareItsWay()
{
    Bench link;
    const auto askAll = [&] {
        for (int caller = 0; caller < 12; ++caller)
            link.ask(Bench::requestOf(caller, 1), caller);
    };
    askAll();
    std::vector<Follower::Begun> under;
    while (const auto begun = link.follower.begin(link.now))
        under.push_back(*begun);
    QCOMPARE(under.size(), std::size_t{8});
    QVERIFY(link.follower.wakeAt() == Follower::Time::max());
    link.answer(under.back());
    under.pop_back();
    under.push_back(link.begin());
    QVERIFY(!link.begins());
    askAll();
    std::set<Follower::List> last{under.back().list};
    for (const auto& begun : under)
        link.answer(begun);
    for (int i = 0; i < 3; ++i)
        last.insert(link.begin().list);
    for (int caller = 8; caller < 12; ++caller) // whoever has had none comes first
        QVERIFY(last.count(link.ask(Bench::requestOf(caller, 1), caller).list) == 1);
}

void TestFollowerLimits::aListThatIsLeftIsForgotten()
{
    Bench link;
    for (int i = 0; i < 10; ++i)
        link.poll(Bench::requestOf(0, 3));
    link.call(Bench::requestOf(0, 3));
    const auto under = link.begin();
    link.call(Bench::requestOf(0, 3)); // which lets another one begin, later
    link.now += milliseconds(1001);
    QVERIFY(!link.begins());
    QCOMPARE(link.follower.lists(), std::size_t{0});
    QVERIFY(link.follower.memory() > 0);
    link.answer(under);
    QCOMPARE(link.follower.memory(), std::size_t{0});
}

void TestFollowerLimits::theLeastUsedOfManyListsGoes()
{
    Bench link;
    const auto first = link.ask(Bench::requestOf(0, 1)).list;
    for (int i = 1; i < 16; ++i)
        link.ask(Bench::requestOf(0, i + 1));
    QVERIFY(link.ask(Bench::requestOf(0, 1)).list == first);
    link.ask(Bench::requestOf(0, 17));
    QCOMPARE(link.follower.lists(), std::size_t{16});
    QVERIFY(link.ask(Bench::requestOf(0, 1)).list == first);
    const auto third = link.ask(Bench::requestOf(0, 3)).list;
    const auto second =
        link.ask(Bench::requestOf(0, 2)).list; // which had gone: the third one stayed ...
    QVERIFY(link.ask(Bench::requestOf(0, 3)).list == third);
    QVERIFY(link.ask(Bench::requestOf(0, 2)).list == second);
}

void TestFollowerLimits::whoComesToSixteenFollowedListsIsAnsweredAndNotFollowed()
{
    Bench link;
    int unanswered = 0;
    const auto pollAll = [&](int callers) {
        std::vector<Follower::List> lists;
        link.now = link.called += Bench::fPeriod;
        for (int caller = 0; caller < callers; ++caller) {
            const auto asked = link.ask(Bench::requestOf(caller, 2), caller);
            link.answerAll();
            unanswered += asked.values || link.follower.news(link.now, asked.list) ? 0 : 1;
            lists.push_back(asked.list);
        }
        return lists;
    };
    pollAll(16);
    const auto lists = pollAll(16);
    for (int i = 0; i < 20; ++i) {
        const auto more = pollAll(18);
        for (int caller = 0; caller < 16; ++caller)
            QVERIFY(more[caller] == lists[caller] && more[caller]->isFollowed());
        QVERIFY(!more[16]->isFollowed() && !more[17]->isFollowed());
        QCOMPARE(link.follower.lists(), std::size_t{17});
    }
    QCOMPARE(unanswered, 0);
    const auto fewer = [&] {
        link.now = link.called += Bench::fPeriod;
        link.ask(Bench::requestOf(0, 2), 0);
        const auto asked = link.ask(Bench::requestOf(16, 2), 16);
        link.answerAll();
        return asked.list->isFollowed();
    };
    int calls = 0;
    while (!fewer() && calls < 20)
        ++calls;
    QVERIFY2(calls >= 10 && calls < 14, std::to_string(calls).c_str()); // others have left by then
}

void TestFollowerLimits::theLeastUsedGoesWhenValuesTakeTooMuch()
{
    Bench link;
    link.textOf = [](const Round&) { return '"' + std::string(1000000, 't') + '"'; };
    for (const int first : {0, 34}) {
        const auto asked = link.ask(Bench::requestOf(first, 33));
        link.answerAll();
        QVERIFY(link.follower.news(link.now, asked.list));
    }
    QCOMPARE(link.follower.lists(), std::size_t{2});
    link.ask(Bench::requestOf(100, 40));
    link.answerAll();
    QCOMPARE(link.follower.lists(), std::size_t{1});
    QVERIFY(link.follower.memory() <= FollowedValues::fMostMemory);
}

void TestFollowerLimits::whatIsTooMuchBesideAFollowedListIsAnsweredAndNotFollowed()
{
    Bench link;
    link.textOf = [](const Round&) { return '"' + std::string(1000000, 't') + '"'; };
    const auto first = link.ask(Bench::requestOf(0, 40)).list;
    for (int i = 0; i < 10; ++i) {
        link.now = link.called += Bench::fPeriod;
        QVERIFY(link.ask(Bench::requestOf(0, 40)).list == first);
        link.answerAll();
        if (i == 0)
            continue;
        const auto second = link.ask(Bench::requestOf(40, 40), 1);
        QVERIFY(!second.values);
        link.answerAll();
        QVERIFY(link.follower.news(link.now, second.list));
        QVERIFY(first->isFollowed() && !second.list->isFollowed());
    }
    link.ask(Bench::requestOf(0, 40));
    link.answerAll();
    QVERIFY(link.follower.memory() <= FollowedValues::fMostMemory);
}

void TestFollowerLimits::whatIsTooMuchForOneListIsInvalidAlone()
{
    Bench link;
    const ZoValue text = std::string(1000000, 't');
    link.textOf = [](const Round&) { return '"' + std::string(1000000, 't') + '"'; };
    for (int i = 0; i < 20; ++i) {
        link.poll(Bench::requestOf(0, 70));
        QVERIFY(link.follower.memory() < FollowedValues::fMostMemory + (1 << 16));
    }
    const auto values = link.call(Bench::requestOf(0, 70)).values;
    QVERIFY(values && (*values)[0] == text && (*values)[66] == text);
    QVERIFY((*values)[67] == ZoValue() && (*values)[69] == ZoValue());
    link.textOf = [](const Round&) { return "1"; };
    for (int i = 0; i < 110; ++i)
        link.poll(Bench::requestOf(0, 70));
    QVERIFY(link.call(Bench::requestOf(0, 70)).values == ZoValue::Elements(70, ZoValue(1)));
}

REGISTER_TEST(TestFollowerLimits, NoApplication)

#include "tst_follower_limits.moc"
