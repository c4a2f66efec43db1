// SPDX-License-Identifier: MIT
#include "support/contains.h"
#include "support/guarded_test.h"
#include "support/link_bench.h"
#include "support/register_test.h"

#include <link/link_pulse.h>

#include <QtTest>

#include <chrono>
#include <new>

using namespace zo;

namespace {

using std::chrono::microseconds;
using std::chrono::milliseconds;
using std::chrono::nanoseconds;
using std::chrono::seconds;

} // namespace

/// What goes over a link that is up, and its limits, in virtual time.
class TestTraffic : public GuardedTest
{
    Q_OBJECT

private slots:
    void callsAreSentInTheirOrder();
    void aCallOfALinkThatIsDownEndsAtOnce();
    void aSinkThatRunsOutOfMemoryIsALoss();
    void anIdleLinkIsPinged();
    void aLinkInUseIsNotPinged();
    void aPingMayBeRefused();
    void aCallMayFollowThePing();
    void aLargeRequestGoesOutInSlices();
    void aSliceThatGoesOutIsASignOfLife();
    void aReplyBeforeTheCommandIsOutWaitsForThat();
    void callsDoNotWaitForOneAnother();
    void partsOfALongRequestLetOthersGoBetween();
    void thoseOfOneFlowGoInTheirOrder();
    void aNoticeIsNoAnswer();
    void aViolationCutsTheLink_data();
    void aViolationCutsTheLink();
    void aLossEndsAllCalls();
    void aRoundTripOfNoTimeIsKnown();
    void theRoundTripIsSmoothedAndBounded();
    void everyByteIsCounted();
    void onlyWholeAnswersToCallsCount();
};

void TestTraffic::callsAreSentInTheirOrder()
{
    LinkBench link;
    const auto first = link.call("ONE");
    const auto second = link.call("TWO");
    const auto third = link.call("THREE");
    QCOMPARE(link.sent(), std::string("ONE\r\n"));
    link.answerCall("+1\r\n");
    QCOMPARE(link.sent(), std::string("ONE\r\nTWO\r\n"));
    link.answerCall("+2\r\n");
    link.answerCall("+3\r\n");
    for (const auto& call : {first, second, third})
        QCOMPARE(link.end(call), std::string("answered"));
    QCOMPARE(link.answer(first) + link.answer(second) + link.answer(third), std::string("123"));
}

void TestTraffic::aCallOfALinkThatIsDownEndsAtOnce()
{
    MachineBench bench;
    bench.start();
    QVERIFY(contains(bench.end(bench.call("GET")), "not connected yet"));
    bench.answerLookUp({}, "unknown host");
    QVERIFY(contains(bench.end(bench.call("GET")), "unknown host"));
    QVERIFY(bench.writes.empty());
}

void TestTraffic::aSinkThatRunsOutOfMemoryIsALoss()
{
    class Poor : public StatusSink
    {
    public:
        using StatusSink::StatusSink;
        bool take(const ReplyPlace&, const ReplyPiece&) override { throw std::bad_alloc(); }
    };
    LinkBench link;
    const auto call =
        std::make_shared<Call>("GET", sharedText("GET\r\n"), 1, std::make_shared<Poor>("GET"),
                               Deadline::after(link.now, seconds(1)));
    link.machine.call(link.now, call);
    link.settle();
    link.answerCall("+1\r\n");
    QVERIFY(!link.isUp() && link.isClosed(1));
    QCOMPARE(link.end(call), std::string("robot at arm:6379: out of memory"));
}

void TestTraffic::anIdleLinkIsPinged()
{
    LinkBench link(ZoBrokerOptions{});
    link.pass(milliseconds(1000) - moment);
    QVERIFY(link.sent().empty());
    for (int i = 1; i <= 10; ++i) {
        link.pass(milliseconds(1000));
        QCOMPARE(link.sent().size(), i * std::string("*1\r\n$4\r\nPING\r\n").size());
        link.answerCall("+PONG\r\n");
    }
    link.pass(milliseconds(1000));
    link.finishWrite();
    link.pass(milliseconds(2000));
    QVERIFY(!link.isUp());
    QVERIFY2(contains(link.cause(), "PING"), link.cause().c_str());
}

void TestTraffic::aLinkInUseIsNotPinged()
{
    LinkBench link(ZoBrokerOptions{});
    for (int i = 0; i < 100; ++i) {
        link.pass(milliseconds(900));
        link.call("GET");
        link.pass(milliseconds(100));
        link.answerCall("+1\r\n");
    }
    QVERIFY(!contains(link.sent(), "PING"));
}

void TestTraffic::aPingMayBeRefused()
{
    LinkBench link(ZoBrokerOptions{});
    for (int i = 0; i < 10; ++i) {
        link.pass(milliseconds(1000));
        link.answerCall("-NOPERM no\r\n");
    }
    QVERIFY(link.isUp());
}

void TestTraffic::aCallMayFollowThePing()
{
    LinkBench link(ZoBrokerOptions{});
    link.pass(milliseconds(1000));
    const auto call = link.call("GET");
    QVERIFY(!contains(link.sent(), "GET"));
    link.finishWrite();
    QVERIFY(contains(link.sent(), "GET"));
    link.finishWrite();
    link.receive("+PONG\r\n+1\r\n");
    QCOMPARE(link.answer(call), std::string("1"));
}

void TestTraffic::aLargeRequestGoesOutInSlices()
{
    LinkBench link;
    std::string bytes;
    for (int i = 0; bytes.size() < 200000; ++i)
        bytes += std::to_string(i);
    const auto call = link.call("MGET", seconds(2), bytes);
    const auto next = link.call("SET");
    for (std::size_t size = 65536; size < bytes.size(); size += 65536) {
        QCOMPARE(link.sent().size(), size);
        link.finishWrite();
    }
    QVERIFY(link.sent() == bytes);
    link.answerCall("+1\r\n");
    QCOMPARE(link.end(call), std::string("answered"));
    QVERIFY(link.sent() == bytes + "SET\r\n");
}

void TestTraffic::aSliceThatGoesOutIsASignOfLife()
{
    LinkBench link;
    const auto call = link.call("MGET", seconds(2), std::string(400000, 'x'));
    for (int slice = 0; slice < 6; ++slice) {
        link.pass(milliseconds(240));
        link.finishWrite();
    }
    QCOMPARE(link.ends(call), 0);
    link.pass(milliseconds(249));
    QCOMPARE(link.ends(call), 0);
    link.pass(milliseconds(1));
    QCOMPARE(link.ends(call), 1);
}

void TestTraffic::aReplyBeforeTheCommandIsOutWaitsForThat()
{
    LinkBench link;
    const auto call = link.call("SET", seconds(2), std::string(100000, 'x'));
    const auto next = link.call("GET");
    link.receive("+1\r\n");
    QCOMPARE(link.ends(call), 0);
    link.finishWrite();
    QCOMPARE(link.sent().size(), std::size_t{100000});
    link.finishWrite();
    QCOMPARE(link.end(call), std::string("answered"));
    QVERIFY(contains(link.sent(), "GET"));
}

void TestTraffic::callsDoNotWaitForOneAnother()
{
    LinkBench link;
    const auto first = link.call("ONE");
    link.finishWrite();
    const auto second = link.call("TWO");
    QCOMPARE(link.sent(), std::string("ONE\r\nTWO\r\n"));
    link.finishWrite();
    link.receive("+1\r\n+");
    QCOMPARE(link.end(first), std::string("answered"));
    QCOMPARE(link.ends(second), 0);
    link.receive("2\r\n");
    QCOMPARE(link.answer(first) + link.answer(second), std::string("12"));
}

void TestTraffic::partsOfALongRequestLetOthersGoBetween()
{
    LinkBench link;
    const auto list = link.callInParts("L", 10, 40000);
    const auto next = link.call("SET");
    link.finishWrite();
    QVERIFY(!contains(link.sent(), "SET"));
    link.finishWrite();
    QVERIFY(contains(link.sent(), "SET"));
    QCOMPARE(link.sent().size(), std::size_t{2 * 40000 + 5});
    for (int i = 0; i < 20; ++i)
        link.finishWrite();
    QCOMPARE(link.sent().size(), std::size_t{6 * 40000 + 5}); // as much as may be unanswered
    link.receive("+1\r\n+2\r\n+set\r\n");
    QCOMPARE(link.answer(next), std::string("set"));
    link.finishWrite();
    QCOMPARE(link.sent().size(), std::size_t{8 * 40000 + 5});
    for (int part = 3; part <= 10; ++part) {
        QCOMPARE(link.ends(list), 0);
        link.receive("+x\r\n");
        link.finishWrite();
    }
    QCOMPARE(link.end(list), std::string("answered"));
}

void TestTraffic::thoseOfOneFlowGoInTheirOrder()
{
    LinkBench link;
    static const int flow = 0;
    link.callInParts("A", 4, 40000, &flow);
    link.callInParts("B", 2, 40000, &flow);
    link.callInParts("C", 2, 40000);
    for (int i = 0; i < 20; ++i)
        link.finishWrite();
    std::string order;
    for (std::size_t at = 0; at < link.sent().size(); at += 40000)
        order += link.sent()[at];
    QCOMPARE(order, std::string("AACACABB"));
}

void TestTraffic::aNoticeIsNoAnswer()
{
    LinkBench link(withoutPings(), milliseconds(80));
    link.call("GET");
    link.finishWrite();
    link.pass(milliseconds(10));
    link.receive(">1\r\n+news\r\n");
    QVERIFY(link.machine.roundTrip().value() == milliseconds(80));
    link.pass(milliseconds(70));
    link.receive("+1\r\n");
    QVERIFY(link.machine.roundTrip().value() == milliseconds(80));
}

void TestTraffic::aViolationCutsTheLink_data()
{
    QTest::addColumn<bool>("isAsked");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("garbage") << true << QByteArray("lorem ipsum\r\n");
    QTest::newRow("another kind") << true << QByteArray("*0\r\n");
    QTest::newRow("one too many") << true << QByteArray("+1\r\n+2\r\n");
    QTest::newRow("unasked") << false << QByteArray("+1\r\n");
}

void TestTraffic::aViolationCutsTheLink()
{
    QFETCH(bool, isAsked);
    QFETCH(QByteArray, bytes);
    LinkBench link;
    std::shared_ptr<Exchange> call;
    if (isAsked) {
        call = link.call("GET");
        link.finishWrite();
    }
    link.receive(bytes.toStdString());
    QVERIFY(!link.isUp());
    QVERIFY2(contains(link.cause(), "malformed reply"), link.cause().c_str());
    QVERIFY(link.isClosed(1));
    if (isAsked)
        QCOMPARE(link.end(call), link.cause());
}

void TestTraffic::aLossEndsAllCalls()
{
    LinkBench link;
    const std::vector<std::shared_ptr<Exchange>> calls = {link.call("ONE"), link.call("TWO"),
                                                          link.call("THREE")};
    link.close("gone");
    for (const auto& call : calls) {
        QCOMPARE(link.ends(call), 1);
        QCOMPARE(link.end(call), std::string("robot at arm:6379: gone"));
    }
    link.passToNextAttempt();
    link.goUp();
    QVERIFY(!contains(link.written(link.newest()), "TWO"));
}

void TestTraffic::aRoundTripOfNoTimeIsKnown()
{
    LinkPulse pulse;
    QVERIFY(!pulse.knownRoundTrip());
    const LinkBench link(withoutPings(), milliseconds(0));
    pulse.set(ZoLinkStatus::Step::None, link.now, link.machine.roundTrip());
    QVERIFY(pulse.knownRoundTrip() == microseconds(1));
}

void TestTraffic::theRoundTripIsSmoothedAndBounded()
{
    LinkBench link(withoutPings(), milliseconds(80));
    QVERIFY(link.machine.roundTrip().value() == milliseconds(80));
    const auto exchange = [&](milliseconds wait) {
        link.call("GET");
        link.finishWrite();
        link.pass(wait);
        link.receive("+1\r\n");
    };
    exchange(milliseconds(160));
    QVERIFY(link.machine.roundTrip().value() == milliseconds(90));
    for (int i = 0; i < 100; ++i)
        exchange(milliseconds(20));
    QVERIFY(link.machine.roundTrip().value() < milliseconds(21));
    for (int i = 0; i < 200; ++i)
        exchange(milliseconds(1900));
    QVERIFY(link.isUp());
    QVERIFY(link.machine.roundTrip().value() <= seconds(1));
}

void TestTraffic::everyByteIsCounted()
{
    LinkBench link(ZoBrokerOptions{});
    const TrafficTally& tally = link.machine.tally();
    QCOMPARE(tally.sent, link.written(1).size());
    QCOMPARE(tally.received, sizeof "+PONG\r\n+OK\r\n" - 1);
    link.call("MGET", seconds(2), std::string(100000, 'x'));
    QCOMPARE(tally.sent, link.written(1).size()); // a slice of it
    link.finishWrite();
    link.answerCall("+1\r\n");
    link.pass(seconds(1));
    link.answerCall("+PONG\r\n>1\r\n+news\r\n");
    QCOMPARE(tally.sent, link.written(1).size());
    QCOMPARE(tally.received, sizeof "+PONG\r\n+OK\r\n+1\r\n+PONG\r\n>1\r\n+news\r\n" - 1);
    link.close("gone");
    link.passToNextAttempt();
    link.goUp();
    QCOMPARE(tally.sent, link.written(1).size() + link.written(2).size());
}

void TestTraffic::onlyWholeAnswersToCallsCount()
{
    LinkBench link(ZoBrokerOptions{});
    const TrafficTally& tally = link.machine.tally();
    link.pass(seconds(1));
    link.answerCall("+PONG\r\n");
    QCOMPARE(tally.answers, 0U);
    QVERIFY(tally.newestAnswer == MachineBench::Time::min());
    link.callInParts("L", 2, 10);
    link.finishWrite();
    link.answerCall("+1\r\n");
    link.pass(milliseconds(10));
    QCOMPARE(tally.answers, 0U);
    link.receive("+2\r\n");
    QCOMPARE(tally.answers, 1U);
    QVERIFY(tally.newestAnswer == link.now);
    const auto then = link.now;
    const auto givenUp = link.call("GET");
    link.finishWrite();
    link.machine.givenUp(link.now, givenUp);
    link.pass(milliseconds(10));
    link.receive("+3\r\n");
    QCOMPARE(tally.answers, 1U);
    QVERIFY(tally.newestAnswer == then);
}

REGISTER_TEST(TestTraffic, QCoreApplication)
#include "tst_traffic.moc"
