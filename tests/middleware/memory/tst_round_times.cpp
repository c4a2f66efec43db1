// SPDX-License-Identifier: MIT
#include "memory/follower.h"
#include "support/guarded_test.h"
#include "support/register_test.h"
#include "support/request_for.h"

#include <QtTest>

#include <algorithm>
#include <deque>
#include <string>

using namespace zo;
using std::chrono::hours;
using std::chrono::milliseconds;

/// When rounds begin and what they ask for, on a network and with a caller of the test's own, in
/// its own time.
class TestRoundTimes : public GuardedTest
{
    Q_OBJECT

private slots:
    void aRoundIsAnsweredJustBeforeACall();
    void aCallThatComesEarlyCostsNoRound();
    void aPauseOfTheNetworkIsNoReasonToReadEverything();
    void whatIsAllWrittenIsReadWithoutNotices();
};

namespace {

using Time = Follower::Time;

/// One caller, one list, and a robot whose answers take always the same time.
class Bench
{
public:
    Bench(int keys, bool canTell, Pace::Duration way)
        : fRequest(requestFor(namesOf(keys))), fWay(way)
    {
        follower.cameUp(canTell);
    }

    static std::vector<std::string> namesOf(int keys)
    {
        std::vector<std::string> names(keys);
        for (int i = 0; i < keys; ++i)
            names[i] = "Key/" + std::to_string(i);
        return names;
    }

    void passUntil(Time until)
    {
        for (Time next = nextEvent(); next <= until; next = nextEvent()) {
            fNow = std::max(fNow, next);
            if (!fUnderWay.empty() && fUnderWay.front().round->begin() + fWay <= fNow)
                answer();
            begin();
        }
        fNow = until;
    }

    /// How long ago the values were asked for that the call gets; the longest time, if none.
    Pace::Duration call()
    {
        const auto asked = follower.ask(fNow, {this, {}}, fRequest);
        begin();
        if (!asked.values)
            return Pace::Duration::max();
        return fNow - Time(Pace::Duration(std::get<std::int64_t>(asked.values->front().data())));
    }

    /// Some keys from the first one on are written, as the link hears.
    void hearOf(int keys)
    {
        for (const std::string& name : namesOf(keys))
            follower.noticed(name);
    }

    Follower follower;
    std::deque<Follower::Begun> begun; ///< all rounds

private:
    Time nextEvent() const
    {
        const Time arrival =
            fUnderWay.empty() ? Time::max() : fUnderWay.front().round->begin() + fWay;
        return std::min(arrival, follower.wakeAt());
    }

    void begin()
    {
        while (const auto round = follower.begin(fNow)) {
            begun.push_back(*round);
            fUnderWay.push_back(*round);
        }
    }

    void answer()
    {
        const Follower::Begun round = fUnderWay.front();
        fUnderWay.pop_front();
        const RoundPlan& plan = *round.round->plan();
        const std::string value = std::to_string(round.round->begin().time_since_epoch().count());
        const int reply = plan.repliesPerCommand() - 1;
        const int keys = static_cast<int>(plan.keys().size());
        bool isTaken = round.round->take({reply, 0, 0}, {ReplyKind::Array, {}, keys});
        for (int key = 0; key < keys; ++key)
            isTaken = round.round->take({reply, 1, key}, {ReplyKind::Text, value}) && isTaken;
        QVERIFY(isTaken);
        follower.ended(round, true, ++fOrder, fNow, fWay);
    }

    const ZoValue fRequest;
    const Pace::Duration fWay;
    Time fNow{hours(1)};
    std::deque<Follower::Begun> fUnderWay;
    std::uint64_t fOrder = 0;
};

constexpr auto period = milliseconds(100);

/// When the call of this number comes, of one that is never more than 2 ms off.
Time timeOf(int call)
{
    constexpr std::chrono::milliseconds strays[] = {
        milliseconds(0),  milliseconds(1), -milliseconds(2), milliseconds(2),
        -milliseconds(1), milliseconds(0), -milliseconds(2)};
    return Time(hours(2)) + call * period + strays[call % 7];
}

} // namespace

void TestRoundTimes::aRoundIsAnsweredJustBeforeACall()
{
    for (const auto way : {milliseconds(1), milliseconds(98), milliseconds(130), milliseconds(301),
                           milliseconds(399)}) {
        Bench bench(1, false, way);
        for (int call = 0; call < 200; ++call) {
            bench.passUntil(timeOf(call));
            const auto age = bench.call();
            if (call > 60)
                QVERIFY2(age < way + milliseconds(20), std::to_string(age.count()).c_str());
        }
    }
}

void TestRoundTimes::aCallThatComesEarlyCostsNoRound()
{
    for (const auto way : {milliseconds(1), milliseconds(95), milliseconds(99), milliseconds(195),
                           milliseconds(301), milliseconds(395)}) {
        Bench bench(1, false, way);
        for (int call = 0; call < 200; ++call) {
            bench.passUntil(timeOf(call));
            bench.call();
        }
        QVERIFY2(bench.begun.size() > 190, std::to_string(bench.begun.size()).c_str());
    }
}

void TestRoundTimes::aPauseOfTheNetworkIsNoReasonToReadEverything()
{
    Bench bench(100, true, milliseconds(10));
    for (int call = 0; call < 100; ++call) {
        bench.passUntil(timeOf(call));
        bench.hearOf(call % 20 == 19 ? 50 : 5); // what was written in the pause comes at once
        bench.call();
        if (call > 20)
            QVERIFY(bench.begun.back().round->plan()->telling() == Telling::Wanted);
    }
}

void TestRoundTimes::whatIsAllWrittenIsReadWithoutNotices()
{
    Bench bench(100, true, milliseconds(10));
    int told = 0;
    for (int call = 0; call < 200; ++call) {
        bench.passUntil(timeOf(call));
        bench.hearOf(100);
        bench.call();
        told += bench.begun.back().round->plan()->telling() == Telling::Wanted ? 1 : 0;
    }
    QVERIFY(told > 0 && told < 20);
}

REGISTER_TEST(TestRoundTimes, NoApplication)
#include "tst_round_times.moc"
