// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/network_line.h"
#include "support/register_test.h"

#include <QtTest>

#include <algorithm>
#include <string>
#include <vector>

using namespace std::chrono_literals;

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

const Line::Time start{1h};

struct Arrival
{
    Line::Time at;
    std::string bytes;
};

/// All that arrives within a minute, as somebody who is there in time takes it.
std::vector<Arrival> arrivals(Line& line)
{
    std::vector<Arrival> all;
    for (Line::Time at = line.dueAt(); at < start + 1min && !line.isOver(at); at = line.dueAt())
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
    line.put(start + 1s, "abc");
    QVERIFY(line.dueAt() == start + 1s);
    QCOMPARE(line.take(start + 1s), std::string("abc"));
    QVERIFY(line.dueAt() == Line::Time::max());
}

void TestNetworkLine::eachByteComesAfterItsDelay()
{
    NetworkWay way;
    way.delay = 40ms;
    Line line(way, start, 1);
    line.put(start, "a");
    line.put(start + 10ms, "b");
    QCOMPARE(line.take(start + 40ms - 1ns), std::string());
    QCOMPARE(line.take(start + 40ms), std::string("a"));
    QVERIFY(line.dueAt() == start + 50ms);
    QCOMPARE(line.take(start + 50ms), std::string("b"));
}

void TestNetworkLine::jitterVariesTheDelayAndKeepsTheOrder()
{
    NetworkWay way;
    way.delay = 40ms;
    way.jitter = 40ms;
    Line line(way, start, 1);
    std::string sent;
    for (int i = 0; i < 100; ++i) {
        sent += char(i);
        line.put(start + i * 100ms, sent.substr(i));
    }
    const std::vector<Arrival> all = arrivals(line);
    QCOMPARE(textOf(all), sent);
    QCOMPARE(all.size(), std::size_t(100));
    std::vector<Line::Duration> delays;
    for (int i = 0; i < 100; ++i)
        delays.push_back(all[i].at - start - i * 100ms);
    const auto [least, most] = std::minmax_element(delays.begin(), delays.end());
    QVERIFY(*least >= 40ms && *least < 44ms);
    QVERIFY(*most > 76ms && *most <= 80ms);
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
        QVERIFY(one.at - start >= std::chrono::microseconds(passed * 8) - 1us);
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
    line.put(start + 100ms, std::string(1000, 'b'));
    line.put(start + 10s, "c");
    QCOMPARE(line.take(start + 2s), std::string(1000, 'a') + std::string(1000, 'b'));
    QVERIFY(line.dueAt() == start + 10s + 1ms);
}

void TestNetworkLine::aPauseHoldsEverythingBack()
{
    NetworkWay way;
    way.pause = 500ms;
    way.pauseEvery = 10s;
    Line line(way, start, 1);
    line.put(start + 9499ms, "a");
    QVERIFY(line.dueAt() == start + 9499ms);
    QCOMPARE(line.take(start + 9499ms), std::string("a"));
    line.put(start + 9500ms, "b");
    line.put(start + 9999ms, "c");
    QCOMPARE(line.take(start + 9999ms), std::string());
    QVERIFY(line.dueAt() == start + 10s);
    QCOMPARE(line.take(start + 10s), std::string("bc"));
}

void TestNetworkLine::aDripLetsAFewBytesPassAtATime()
{
    NetworkWay way;
    way.drip = 2;
    Line line(way, start, 1);
    line.put(start, "abcde");
    QCOMPARE(line.take(start), std::string("ab"));
    QCOMPARE(line.take(start + 5ms), std::string());
    QVERIFY(line.dueAt() == start + 10ms);
    QCOMPARE(line.take(start + 10ms), std::string("cd"));
    QCOMPARE(line.take(start + 20ms), std::string("e"));
}

void TestNetworkLine::nothingPassesAStoppedLine()
{
    NetworkWay way;
    way.isStopped = true;
    Line line(way, start, 1);
    line.put(start, "a");
    QVERIFY(line.dueAt() == Line::Time::max());
    QCOMPARE(line.take(start + 1h), std::string());
    line.change(NetworkWay());
    QCOMPARE(line.take(start + 1h), std::string("a"));
}

void TestNetworkLine::aFullLineHasNoRoom()
{
    NetworkWay way;
    way.queue = 1000;
    way.rate = 8000;
    way.delay = 1s; // 1,000 bytes are in the air
    Line line(way, start, 1);
    QCOMPARE(line.room(), std::size_t(2000));
    line.put(start, std::string(500, 'x'));
    QCOMPARE(line.room(), std::size_t(1500));
    line.put(start, std::string(1500, 'x'));
    QCOMPARE(line.room(), std::size_t(0));
    QCOMPARE(line.take(start + 1min).size(), std::size_t(2000));
    QCOMPARE(line.room(), std::size_t(2000));
}

void TestNetworkLine::theEndComesBehindAllBytes()
{
    NetworkWay way;
    way.delay = 40ms;
    Line line(way, start, 1);
    line.put(start, "a");
    line.end(start);
    QVERIFY(!line.isOver(start + 1s));
    QCOMPARE(line.take(start + 1s), std::string("a"));
    QVERIFY(!line.isOver(start));
    QVERIFY(line.isOver(start + 1s));
}

REGISTER_TEST(TestNetworkLine, NoApplication)
#include "tst_network_line.moc"
