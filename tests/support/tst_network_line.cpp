// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/network_line.h"
#include "support/register_test.h"

#include <QtTest>

#include <algorithm>
#include <string>
#include <vector>

using std::chrono::hours;
using std::chrono::microseconds;
using std::chrono::milliseconds;
using std::chrono::minutes;
using std::chrono::nanoseconds;
using std::chrono::seconds;

/// What decides when bytes arrive on the other side of a slow network.
class TestNetworkLine : public GuardedTest
{
    Q_OBJECT

private slots:
    void anOpenLineDelaysNothing();
    void eachByteComesAfterItsDelay();
    void jitterVariesTheDelayAndKeepsTheOrder();
    void theRateIsKeptTo();
    void bytesWaitForThoseBeforeThem();
    void aPauseHoldsEverythingBack();
    void aDripLetsAFewBytesPassAtATime();
    void nothingPassesAStoppedLine();
    void aFullLineHasNoRoom();
    void theEndComesBehindAllBytes();
};

namespace {

using Line = NetworkLine;

const Line::Time start{hours(1)};

struct Arrival
{
    Line::Time at;
    std::string bytes;
};

/// All that arrives within a minute, as somebody who is there in time takes it.
std::vector<Arrival> arrivals(Line& line)
{
    std::vector<Arrival> all;
    for (Line::Time at = line.dueAt(); at < start + minutes(1) && !line.isOver(at);
         at = line.dueAt())
        all.push_back({at, line.take(at)});
    return all;
}

std::string textOf(const std::vector<Arrival>& all)
{
    std::string text;
    for (const Arrival& one : all)
        text += one.bytes;
    return text;
}

} // namespace

void TestNetworkLine::anOpenLineDelaysNothing()
{
    Line line(NetworkWay(), start, 1);
    QVERIFY(line.dueAt() == Line::Time::max());
    line.put(start + seconds(1), "abc");
    QVERIFY(line.dueAt() == start + seconds(1));
    QCOMPARE(line.take(start + seconds(1)), std::string("abc"));
    QVERIFY(line.dueAt() == Line::Time::max());
}

void TestNetworkLine::eachByteComesAfterItsDelay()
{
    NetworkWay way;
    way.delay = milliseconds(40);
    Line line(way, start, 1);
    line.put(start, "a");
    line.put(start + milliseconds(10), "b");
    QCOMPARE(line.take(start + milliseconds(40) - nanoseconds(1)), std::string());
    QCOMPARE(line.take(start + milliseconds(40)), std::string("a"));
    QVERIFY(line.dueAt() == start + milliseconds(50));
    QCOMPARE(line.take(start + milliseconds(50)), std::string("b"));
}

void TestNetworkLine::jitterVariesTheDelayAndKeepsTheOrder()
{
    NetworkWay way;
    way.delay = milliseconds(40);
    way.jitter = milliseconds(40);
    Line line(way, start, 1);
    std::string sent;
    for (int i = 0; i < 100; ++i) {
        sent += char(i);
        line.put(start + i * milliseconds(100), sent.substr(i));
    }
    const std::vector<Arrival> all = arrivals(line);
    QCOMPARE(textOf(all), sent);
    QCOMPARE(all.size(), std::size_t(100));
    std::vector<Line::Duration> delays(100);
    for (int i = 0; i < 100; ++i)
        delays[i] = all[i].at - start - i * milliseconds(100);
    const auto [least, most] = std::minmax_element(delays.begin(), delays.end());
    QVERIFY(*least >= milliseconds(40) && *least < milliseconds(44));
    QVERIFY(*most > milliseconds(76) && *most <= milliseconds(80));
}

void TestNetworkLine::theRateIsKeptTo()
{
    NetworkWay way;
    way.rate = 1000000;
    way.queue = 200000;
    Line line(way, start, 1);
    line.put(start, std::string(100000, 'x'));
    std::size_t passed = 0;
    for (const Arrival& one : arrivals(line)) {
        passed += one.bytes.size();
        QVERIFY(one.at - start >= std::chrono::microseconds(passed * 8) - microseconds(1));
        QVERIFY(one.at - start <= std::chrono::microseconds(passed * 8));
    }
    QCOMPARE(passed, std::size_t(100000));
}

void TestNetworkLine::bytesWaitForThoseBeforeThem()
{
    NetworkWay way;
    way.rate = 8000;
    Line line(way, start, 1);
    line.put(start, std::string(1000, 'a'));
    line.put(start + milliseconds(100), std::string(1000, 'b'));
    line.put(start + seconds(10), "c");
    QCOMPARE(line.take(start + seconds(2)), std::string(1000, 'a') + std::string(1000, 'b'));
    QVERIFY(line.dueAt() == start + seconds(10) + milliseconds(1));
}

void TestNetworkLine::aPauseHoldsEverythingBack()
{
    NetworkWay way;
    way.pause = milliseconds(500);
    way.pauseEvery = seconds(10);
    Line line(way, start, 1);
    line.put(start + milliseconds(9499), "a");
    QVERIFY(line.dueAt() == start + milliseconds(9499));
    QCOMPARE(line.take(start + milliseconds(9499)), std::string("a"));
    line.put(start + milliseconds(9500), "b");
    line.put(start + milliseconds(9999), "c");
    QCOMPARE(line.take(start + milliseconds(9999)), std::string());
    QVERIFY(line.dueAt() == start + seconds(10));
    QCOMPARE(line.take(start + seconds(10)), std::string("bc"));
}

void TestNetworkLine::aDripLetsAFewBytesPassAtATime()
{
    NetworkWay way;
    way.drip = 2;
    Line line(way, start, 1);
    line.put(start, "abcde");
    QCOMPARE(line.take(start), std::string("ab"));
    QCOMPARE(line.take(start + milliseconds(5)), std::string());
    QVERIFY(line.dueAt() == start + milliseconds(10));
    QCOMPARE(line.take(start + milliseconds(10)), std::string("cd"));
    QCOMPARE(line.take(start + milliseconds(20)), std::string("e"));
}

void TestNetworkLine::nothingPassesAStoppedLine()
{
    NetworkWay way;
    way.isStopped = true;
    Line line(way, start, 1);
    line.put(start, "a");
    QVERIFY(line.dueAt() == Line::Time::max());
    QCOMPARE(line.take(start + hours(1)), std::string());
    line.change(NetworkWay());
    QCOMPARE(line.take(start + hours(1)), std::string("a"));
}

void TestNetworkLine::aFullLineHasNoRoom()
{
    NetworkWay way;
    way.queue = 1000;
    way.rate = 8000;
    way.delay = seconds(1); // 1,000 bytes are in the air
    Line line(way, start, 1);
    QCOMPARE(line.room(), std::size_t(2000));
    line.put(start, std::string(500, 'x'));
    QCOMPARE(line.room(), std::size_t(1500));
    line.put(start, std::string(1500, 'x'));
    QCOMPARE(line.room(), std::size_t(0));
    QCOMPARE(line.take(start + minutes(1)).size(), std::size_t(2000));
    QCOMPARE(line.room(), std::size_t(2000));
}

void TestNetworkLine::theEndComesBehindAllBytes()
{
    NetworkWay way;
    way.delay = milliseconds(40);
    Line line(way, start, 1);
    line.put(start, "a");
    line.end(start);
    QVERIFY(!line.isOver(start + seconds(1)));
    QCOMPARE(line.take(start + seconds(1)), std::string("a"));
    QVERIFY(!line.isOver(start));
    QVERIFY(line.isOver(start + seconds(1)));
}

REGISTER_TEST(TestNetworkLine, NoApplication)
#include "tst_network_line.moc"
