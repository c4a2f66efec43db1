// SPDX-License-Identifier: MIT
#include "support/contains.h"
#include "support/guarded_test.h"
#include "support/link_bench.h"
#include "support/register_test.h"

#include <QtTest>

#include <chrono>
#include <new>

using namespace zo;

namespace {

using std::chrono::milliseconds;
using std::chrono::nanoseconds;
using std::chrono::seconds;

} // namespace

/// What goes over a link that is up, and its limits, in virtual time.
class TestTraffic : public GuardedTest
{
    Q_OBJECT

private slots:
    void callsAreSentOneAfterTheOther();
    void aCallOfALinkThatIsDownEndsAtOnce();
    void aSinkThatRunsOutOfMemoryIsALoss();
    void anIdleLinkIsPinged();
    void aLinkInUseIsNotPinged();
    void aPingMayBeRefused();
    void aCallWaitsForThePing();
    void aLargeRequestGoesOutInSlices();
    void aSliceThatGoesOutIsASignOfLife();
    void aReplyBeforeTheRequestIsWrittenWaitsForThat();
    void aViolationCutsTheLink_data();
    void aViolationCutsTheLink();
    void aLossEndsAllCalls();
    void theRoundTripIsSmoothedAndBounded();
};

void TestTraffic::callsAreSentOneAfterTheOther()
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
        std::make_shared<Exchange>("GET", sharedText("GET\r\n"), 1, std::make_shared<Poor>("GET"),
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

void TestTraffic::aCallWaitsForThePing()
{
    LinkBench link(ZoBrokerOptions{});
    link.pass(milliseconds(1000));
    const auto call = link.call("GET");
    QVERIFY(!contains(link.sent(), "GET"));
    link.answerCall("+PONG\r\n");
    link.answerCall("+1\r\n");
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

void TestTraffic::aReplyBeforeTheRequestIsWrittenWaitsForThat()
{
    LinkBench link;
    const auto call = link.call("GET");
    const auto next = link.call("SET");
    link.receive("+1\r\n");
    QCOMPARE(link.ends(call), 0);
    QVERIFY(!contains(link.sent(), "SET"));
    link.finishWrite();
    QCOMPARE(link.end(call), std::string("answered"));
    QVERIFY(contains(link.sent(), "SET"));
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

void TestTraffic::theRoundTripIsSmoothedAndBounded()
{
    LinkBench link(withoutPings(), milliseconds(80));
    QVERIFY(link.machine.roundTrip() == milliseconds(80));
    const auto exchange = [&](milliseconds wait) {
        link.call("GET");
        link.finishWrite();
        link.pass(wait);
        link.receive("+1\r\n");
    };
    exchange(milliseconds(160));
    QVERIFY(link.machine.roundTrip() == milliseconds(90));
    for (int i = 0; i < 100; ++i)
        exchange(milliseconds(20));
    QVERIFY(link.machine.roundTrip() < milliseconds(21));
    for (int i = 0; i < 200; ++i)
        exchange(milliseconds(1900));
    QVERIFY(link.isUp());
    QVERIFY(link.machine.roundTrip() <= seconds(1));
}

REGISTER_TEST(TestTraffic, QCoreApplication)
#include "tst_traffic.moc"
