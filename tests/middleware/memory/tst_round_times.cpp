// SPDX-License-Identifier: MIT
#include "support/follower_bench.h"
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <memory/follower.h>

#include <QtTest>

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
    void aWholeReadHoldsUpNoShortOnesBehindIt();
};

namespace {

using Time = Follower::Time;

constexpr auto period = FollowerBench::fPeriod;

/// When the call of this number comes, of one that is never more than 2 ms off.
Time timeOf(int call)
{
    constexpr std::chrono::milliseconds strays[] = {
        milliseconds(0),  milliseconds(1), -milliseconds(2), milliseconds(2),
        -milliseconds(1), milliseconds(0), -milliseconds(2)};
    return Time(hours(2)) + call * period + strays[call % 7];
}

/// Some keys from the first one on are written, as the link hears.
void hearOf(FollowerBench& bench, int keys)
{
    for (const std::string& name : FollowerBench::namesOf(0, keys))
        bench.follower.noticed(name);
}

} // namespace

void TestRoundTimes::aRoundIsAnsweredJustBeforeACall()
{
    for (const auto way : {milliseconds(1), milliseconds(98), milliseconds(130), milliseconds(301),
                           milliseconds(399)}) {
        FollowerBench bench(false, way);
        bench.textOf = FollowerBench::timeOfBegin;
        for (int call = 0; call < 200; ++call) {
            bench.passUntil(timeOf(call));
            const auto age = bench.callNow(FollowerBench::requestOf(0, 1));
            if (call > 60)
                QVERIFY2(age < way + milliseconds(20), std::to_string(age.count()).c_str());
        }
    }
}

void TestRoundTimes::aCallThatComesEarlyCostsNoRound()
{
    for (const auto way : {milliseconds(1), milliseconds(95), milliseconds(99), milliseconds(195),
                           milliseconds(301), milliseconds(395)}) {
        FollowerBench bench(false, way);
        for (int call = 0; call < 200; ++call) {
            bench.passUntil(timeOf(call));
            bench.callNow(FollowerBench::requestOf(0, 1));
        }
        QVERIFY2(bench.begun.size() > 190, std::to_string(bench.begun.size()).c_str());
    }
}

void TestRoundTimes::aPauseOfTheNetworkIsNoReasonToReadEverything()
{
    FollowerBench bench(true, milliseconds(10));
    const ZoValue request = FollowerBench::requestOf(0, 100);
    for (int call = 0; call < 100; ++call) {
        bench.passUntil(timeOf(call));
        hearOf(bench, call % 20 == 19 ? 50 : 5); // what was written in the pause comes at once
        bench.callNow(request);
        if (call > 20)
            QVERIFY(bench.begun.back().round->plan()->telling() == Telling::Wanted);
    }
}

void TestRoundTimes::whatIsAllWrittenIsReadWithoutNotices()
{
    FollowerBench bench(true, milliseconds(10));
    const ZoValue request = FollowerBench::requestOf(0, 100);
    int told = 0;
    for (int call = 0; call < 200; ++call) {
        bench.passUntil(timeOf(call));
        hearOf(bench, 100);
        bench.callNow(request);
        told += bench.begun.back().round->plan()->telling() == Telling::Wanted ? 1 : 0;
    }
    QVERIFY(told > 0 && told < 20);
}

// As over a cellular network: a whole read takes seconds, what has changed of it a fraction of the
// round trip.
void TestRoundTimes::aWholeReadHoldsUpNoShortOnesBehindIt()
{
    FollowerBench bench(true, milliseconds(300));
    bench.perKey = std::chrono::microseconds(250);
    const ZoValue request = FollowerBench::requestOf(0, 10000);
    int call = 0;
    const auto callOn = [&] {
        bench.passUntil(timeOf(call++));
        hearOf(bench, 100);
        bench.callNow(request);
    };
    const auto isShort = [&] { return bench.begun.back().round->plan()->keys().size() < 1000; };
    while (call < 5 || !isShort())
        callOn();
    const std::size_t before = bench.begun.size();
    for (const int end = call + 20; call < end;)
        callOn();
    QVERIFY2(bench.begun.size() >= before + 18,
             std::to_string(bench.begun.size() - before).c_str());
}

REGISTER_TEST(TestRoundTimes, NoApplication)
#include "tst_round_times.moc"
