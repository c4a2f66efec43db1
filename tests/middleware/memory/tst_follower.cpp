// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/register_test.h"
#include "support/request_for.h"

#include <memory/follower.h>

#include <QtTest>

#include <algorithm>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

using namespace zo;

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using Names = std::set<std::string>;

constexpr milliseconds period{100};

std::string nameOf(int key)
{
    return std::to_string(key);
}

Names namesOf(int first, int count)
{
    Names names;
    for (int key = first; key < first + count; ++key)
        names.insert(nameOf(key));
    return names;
}

ZoValue requestOf(int first, int count)
{
    std::vector<std::string> names;
    for (int key = first; key < first + count; ++key)
        names.push_back(nameOf(key));
    return requestFor(names);
}

Names keysOf(const Follower::Begun& begun)
{
    Names names;
    for (const auto* entry : begun.round->plan()->keys())
        names.insert(entry->first);
    return names;
}

int commandsOf(const Follower::Begun& begun)
{
    return static_cast<int>(begun.round->plan()->commands().size());
}

/// A link to a robot whose every value is 1, or `text`, unless it refuses the key.
class Link
{
public:
    Link() { follower.cameUp(true); }

    Follower::Asked ask(const ZoValue& request, int caller = 0)
    {
        return follower.ask(now, {this + caller, {}}, request);
    }
    /// The next call in its rhythm.
    Follower::Asked call(const ZoValue& request)
    {
        now = called += period;
        return ask(request);
    }
    /// ... and what is to be done until the one behind it.
    void poll(const ZoValue& request)
    {
        call(request);
        while (follower.wakeAt() < called + period)
            answer(begin());
    }
    /// The next round, when its time has come.
    Follower::Begun begin()
    {
        if (follower.wakeAt() < Follower::Time::max())
            now = std::max(now, follower.wakeAt());
        const auto begun = follower.begin(now);
        return begun ? *begun : throw std::logic_error("no round begins");
    }
    bool begins() { return follower.begin(now).has_value(); }
    void answerAll()
    {
        while (const auto begun = follower.begin(now))
            answer(*begun);
    }
    void answer(const Follower::Begun& begun)
    {
        reply(begun);
        end(begun);
    }
    /// The replies come ...
    void reply(const Follower::Begun& begun)
    {
        const RoundPlan& plan = *begun.round->plan();
        for (int command = 0; command < commandsOf(begun); ++command) {
            const int reply = (command + 1) * plan.repliesPerCommand() - 1;
            const auto [first, count, end] = plan.commands()[static_cast<std::size_t>(command)];
            if (isRefused(plan, first, count)) {
                QVERIFY(begun.round->take({reply, 0, 0}, {ReplyKind::Error, "NOPERM no"}));
                continue;
            }
            QVERIFY(begun.round->take({reply, 0, 0}, {ReplyKind::Array, {}, count}));
            for (int i = 0; i < count; ++i)
                QVERIFY(begun.round->take({reply, 1, i}, {ReplyKind::Text, text}));
        }
    }
    /// ... and are all there.
    void end(const Follower::Begun& begun)
    {
        follower.ended(begun, true, ++order, now, milliseconds(1));
    }

    Follower follower;
    Follower::Time now{std::chrono::hours(1)};
    Follower::Time called = now;
    std::string text = "1";
    Names refused;
    std::uint64_t order = 0;

private:
    bool isRefused(const RoundPlan& plan, int first, int count) const
    {
        for (int i = first; i < first + count; ++i) {
            if (refused.count(plan.keys()[static_cast<std::size_t>(i)]->first) > 0)
                return true;
        }
        return false;
    }
};

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
    void keysRefusedTogetherAreAskedForOneByOne();
    void fewForbiddenKeysAreTriedAgainInOneRound();
    void thereAreNoMoreRoundsThanCalls();
    void aListThatIsLeftIsForgotten();
    void theLeastUsedOfManyListsGoes();
    void theLeastUsedGoesWhenValuesTakeTooMuch();
    void anOwnWriteHidesWhatWasAskedForBefore();
    void aLostLinkHasNoAnswer();
    void aServersErrorIsTold();
};

void TestFollower::theFirstRoundReadsAll()
{
    Link link;
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
    Link link;
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
    Link link;
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
    Link link;
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
    Link link;
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
    Link link;
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
    Link link;
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

void TestFollower::keysRefusedTogetherAreAskedForOneByOne()
{
    Link link;
    link.refused = {nameOf(1)};
    const auto asked = link.ask(requestOf(0, 3));
    link.answer(link.begin());
    QVERIFY(!link.follower.answer(link.now, asked.list));
    const auto more = link.begin();
    QVERIFY(more.isMore);
    QCOMPARE(commandsOf(more), 3);
    link.answer(more);
    QVERIFY(link.follower.answer(link.now, asked.list) ==
            (ZoValue::Elements{ZoValue(1), ZoValue(), ZoValue(1)}));
    link.call(requestOf(0, 3));
    QVERIFY(keysOf(link.begin()).count(nameOf(1)) == 0); // rights may change, but not at once
}

void TestFollower::fewForbiddenKeysAreTriedAgainInOneRound()
{
    Link link;
    link.refused = namesOf(0, 60);
    for (int i = 0; i < 110; ++i)
        link.poll(requestOf(0, 61));
    link.refused.clear();
    std::size_t most = 0;
    Names again;
    for (int i = 0; i < 110; ++i) {
        link.call(requestOf(0, 61));
        while (const auto begun = link.follower.begin(link.now)) {
            if (again.size() < 60)
                most = std::max(most, begun->round->plan()->commands().size());
            for (const std::string& name : keysOf(*begun))
                again.insert(name);
            link.answer(*begun);
        }
    }
    QVERIFY(again == namesOf(0, 61));
    QVERIFY(most >= 50 && most <= 51);
}

void TestFollower::thereAreNoMoreRoundsThanCalls()
{
    Link link;
    int rounds = 0;
    for (int call = 1; call <= 50; ++call) {
        link.call(requestOf(0, 3));
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

void TestFollower::aListThatIsLeftIsForgotten()
{
    Link link;
    for (int i = 0; i < 10; ++i)
        link.poll(requestOf(0, 3));
    link.call(requestOf(0, 3));
    const auto under = link.begin();
    link.call(requestOf(0, 3)); // which lets another one begin, later
    link.now += milliseconds(1001);
    QVERIFY(!link.begins());
    QCOMPARE(link.follower.lists(), std::size_t{0});
    QVERIFY(link.follower.memory() > 0);
    link.answer(under);
    QCOMPARE(link.follower.memory(), std::size_t{0});
}

void TestFollower::theLeastUsedOfManyListsGoes()
{
    Link link;
    const auto first = link.ask(requestOf(0, 1)).list;
    for (int i = 1; i < 16; ++i)
        link.ask(requestOf(0, i + 1));
    QVERIFY(link.ask(requestOf(0, 1)).list == first);
    link.ask(requestOf(0, 17));
    QCOMPARE(link.follower.lists(), std::size_t{16});
    QVERIFY(link.ask(requestOf(0, 1)).list == first);
    const auto third = link.ask(requestOf(0, 3)).list;
    const auto second = link.ask(requestOf(0, 2)).list; // which had gone: the third one stayed ...
    QVERIFY(link.ask(requestOf(0, 3)).list == third);
    QVERIFY(link.ask(requestOf(0, 2)).list == second);
}

void TestFollower::theLeastUsedGoesWhenValuesTakeTooMuch()
{
    Link link;
    link.text = '"' + std::string(1000000, 't') + '"';
    for (const int first : {0, 34}) {
        link.ask(requestOf(first, 33));
        link.answerAll();
    }
    QCOMPARE(link.follower.lists(), std::size_t{2});
    link.ask(requestOf(100, 40));
    link.answerAll();
    QCOMPARE(link.follower.lists(), std::size_t{1});
    QVERIFY(link.follower.memory() <= Follower::fMostMemory);
}

void TestFollower::anOwnWriteHidesWhatWasAskedForBefore()
{
    Link link;
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
    Link link;
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

void TestFollower::aServersErrorIsTold()
{
    Link link;
    const auto asked = link.ask(requestOf(0, 3));
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

REGISTER_TEST(TestFollower, NoApplication)

#include "tst_follower.moc"
