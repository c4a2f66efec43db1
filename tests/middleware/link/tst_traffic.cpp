// SPDX-License-Identifier: MIT
#include "support/contains.h"
#include "support/guarded_test.h"
#include "support/machine_bench.h"
#include "support/register_test.h"

#include <QtTest>

#include <chrono>
#include <new>

using namespace zo;

namespace {

using std::chrono::hours;
using std::chrono::milliseconds;
using std::chrono::nanoseconds;
using std::chrono::seconds;

constexpr nanoseconds moment{1};

/// Options without pings.
ZoBrokerOptions quiet()
{
    ZoBrokerOptions options;
    options.pingInterval = hours(1);
    return options;
}

/// A link that is up, to a robot so far away.
struct Link : MachineBench
{
    explicit Link(const ZoBrokerOptions& options = quiet(),
                  milliseconds roundTrip = milliseconds(0))
        : MachineBench(options)
    {
        start();
        answerLookUp();
        connect();
        finishWrite();
        pass(roundTrip);
        receive("+PONG\r\n+OK\r\n");
    }
    void answerCall(const std::string& bytes)
    {
        finishWrite();
        receive(bytes);
    }
    /// What was sent since the greeting.
    std::string sent() const
    {
        const std::string all = written(1);
        return all.substr(all.find("TestBroker\r\n") + 12);
    }
};

} // namespace

/// What goes over a link that is up, and its limits, in virtual time.
class TestTraffic : public GuardedTest
{
    Q_OBJECT

private slots:
    void callsAreSentOneAfterTheOther();
    void aCallOfALinkThatIsDownEndsAtOnce();
    void aCallWaitsSoLongForASilentRobot();
    void aRoundTripIsAddedToThat();
    void aRobotThatAnswersSlowlyIsWaitedForUntilTheDeadline();
    void aReplyThatBreaksOffIsNamed();
    void aLateReplyReachesNobody();
    void aSilentRobotCostsItsCallersOneWait();
    void aLinkThatWasSilentServesAgain();
    void givingUpLeavesTheLinkUp();
    void aCallThatIsGivenUpIsNeverSent();
    void aCallWhoseTimeIsUpIsNeverSent();
    void whoWaitsBehindALateCallIsSent();
    void aCallThatComesTooLateIsNeverSent();
    void aCallWhoseAnswerCannotComeInTimeIsNeverSent();
    void aCallThatFindsTheLinkIdleIsTriedAlsoWhenTheWayWasSlow();
    void aLinkIsCutAfterALongSilence();
    void fourRoundTripsAreAddedToThat();
    void patientCallersAreGivenTheirTime();
    void aSinkThatRunsOutOfMemoryIsALoss();
    void bytesThatArrivedCountAlsoWhenTheDriverWasHeldUp();
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
    Link link;
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

void TestTraffic::aCallWaitsSoLongForASilentRobot()
{
    Link link;
    const auto call = link.call("GET");
    link.finishWrite();
    link.pass(milliseconds(250) - moment);
    QCOMPARE(link.ends(call), 0);
    link.pass(moment);
    QCOMPARE(link.end(call), std::string("robot at arm:6379: no reply to GET within 250 ms"));
    QVERIFY(link.isUp());
}

void TestTraffic::aRoundTripIsAddedToThat()
{
    Link link(quiet(), milliseconds(300));
    const auto call = link.call("GET");
    link.finishWrite();
    link.pass(milliseconds(550) - moment);
    QCOMPARE(link.ends(call), 0);
    link.pass(moment);
    QCOMPARE(link.ends(call), 1);
}

void TestTraffic::aRobotThatAnswersSlowlyIsWaitedForUntilTheDeadline()
{
    Link link;
    const auto call = link.call("GET", milliseconds(2000));
    link.finishWrite();
    link.receive("+");
    for (int i = 0; i < 9; ++i) {
        link.pass(milliseconds(200));
        link.receive("x");
    }
    QCOMPARE(link.ends(call), 0);
    link.pass(milliseconds(200) - moment);
    QCOMPARE(link.ends(call), 0);
    link.pass(moment);
    QCOMPARE(link.end(call), std::string("robot at arm:6379: no reply to GET within 2000 ms"));
    QVERIFY(link.isUp());
}

void TestTraffic::aReplyThatBreaksOffIsNamed()
{
    Link link;
    const auto call = link.call("GET");
    link.finishWrite();
    link.pass(milliseconds(200));
    link.receive("+x");
    link.pass(milliseconds(249));
    QCOMPARE(link.ends(call), 0);
    link.pass(milliseconds(100));
    QVERIFY2(contains(link.end(call), "the reply to GET broke off"), link.end(call).c_str());
}

void TestTraffic::aLateReplyReachesNobody()
{
    Link link;
    const auto late = link.call("GET");
    link.finishWrite();
    link.pass(milliseconds(300));
    QCOMPARE(link.ends(late), 1);
    link.receive("+late");
    const auto next = link.call("SET");
    QVERIFY(!contains(link.sent(), "SET"));
    link.receive("\r\n");
    QVERIFY(contains(link.sent(), "SET"));
    link.answerCall("+next\r\n");
    QCOMPARE(link.end(next), std::string("answered"));
    QCOMPARE(link.answer(next), std::string("next"));
    QCOMPARE(link.ends(late), 1);
}

void TestTraffic::aSilentRobotCostsItsCallersOneWait()
{
    Link link;
    link.call("GET");
    link.finishWrite();
    const auto waiting = link.call("SET");
    link.pass(milliseconds(250));
    QCOMPARE(link.ends(waiting), 1);
    link.pass(milliseconds(100));
    const auto next = link.call("SET");
    link.pass(nanoseconds(0));
    QCOMPARE(link.end(next),
             std::string("robot at arm:6379: SET was not sent: nothing came for 350 ms"));
    QVERIFY(link.isUp());
}

void TestTraffic::aLinkThatWasSilentServesAgain()
{
    Link link;
    link.call("GET");
    link.finishWrite();
    link.pass(milliseconds(1900));
    link.receive("+late\r\n");
    const auto next = link.call("SET");
    QVERIFY(contains(link.sent(), "SET"));
    link.answerCall("+OK\r\n");
    QCOMPARE(link.end(next), std::string("answered"));
}

void TestTraffic::givingUpLeavesTheLinkUp()
{
    Link link;
    const auto call = link.call("GET");
    link.machine.givenUp(link.now, call);
    link.settle();
    QVERIFY(link.isUp() && link.closes.empty());
    link.pass(milliseconds(500));
    link.answerCall("+1\r\n");
    QCOMPARE(link.ends(call), 0);
    QVERIFY(link.isUp() && link.closes.empty());
}

void TestTraffic::aCallThatIsGivenUpIsNeverSent()
{
    Link link;
    link.call("ONE");
    const auto gone = link.call("TWO");
    const auto last = link.call("THREE");
    link.machine.givenUp(link.now, gone);
    link.answerCall("+1\r\n");
    link.answerCall("+3\r\n");
    QCOMPARE(link.sent(), std::string("ONE\r\nTHREE\r\n"));
    QCOMPARE(link.answer(last), std::string("3"));
    QCOMPARE(link.ends(gone), 0);
}

void TestTraffic::aCallWhoseTimeIsUpIsNeverSent()
{
    Link link;
    link.call("ONE");
    link.finishWrite();
    const auto late = link.call("TWO", milliseconds(100));
    link.pass(milliseconds(100) - moment);
    QCOMPARE(link.ends(late), 0);
    link.now += moment; // the answer is there before time is up for the driver
    link.receive("+1\r\n");
    QCOMPARE(link.ends(late), 0);
    link.pass(nanoseconds(0));
    QVERIFY2(contains(link.end(late), "no reply to TWO within 100 ms: it was not sent"),
             link.end(late).c_str());
    QCOMPARE(link.sent(), std::string("ONE\r\n"));
    link.call("THREE");
    QCOMPARE(link.sent(), std::string("ONE\r\nTHREE\r\n"));
}

void TestTraffic::whoWaitsBehindALateCallIsSent()
{
    Link link;
    link.call("ONE");
    link.finishWrite();
    const auto late = link.call("TWO", milliseconds(100));
    link.call("THREE");
    link.now += milliseconds(100);
    link.receive("+1\r\n");
    link.pass(nanoseconds(0));
    QCOMPARE(link.ends(late), 1);
    QCOMPARE(link.sent(), std::string("ONE\r\nTHREE\r\n"));
}

void TestTraffic::aCallThatComesTooLateIsNeverSent()
{
    Link link;
    const auto call = link.makeCall("GET", milliseconds(100));
    link.now += milliseconds(100);
    link.machine.call(link.now, call);
    link.settle();
    link.pass(nanoseconds(0));
    QCOMPARE(link.ends(call), 1);
    QVERIFY(link.sent().empty());
}

void TestTraffic::aCallWhoseAnswerCannotComeInTimeIsNeverSent()
{
    ZoBrokerOptions options = quiet();
    options.exchangeTimeout = seconds(10);
    Link link(options, milliseconds(300));
    link.call("ONE", seconds(10));
    link.finishWrite();
    const auto hopeless = link.call("TWO", milliseconds(1000));
    link.call("THREE", seconds(10));
    link.pass(milliseconds(700) - moment);
    QCOMPARE(link.ends(hopeless), 0);
    QVERIFY(link.machine.wakeAt() == link.now + moment);
    link.now += moment;
    link.receive("+1\r\n"); // which makes the round trip a longer one
    QCOMPARE(link.sent(), std::string("ONE\r\n"));
    link.pass(nanoseconds(0));
    QVERIFY2(contains(link.end(hopeless), "no reply to TWO within 1000 ms: it was not sent"),
             link.end(hopeless).c_str());
    QCOMPARE(link.sent(), std::string("ONE\r\nTHREE\r\n"));
}

void TestTraffic::aCallThatFindsTheLinkIdleIsTriedAlsoWhenTheWayWasSlow()
{
    Link link(quiet(), milliseconds(900));
    const auto call = link.call("GET", milliseconds(100));
    QCOMPARE(link.sent(), std::string("GET\r\n"));
    link.answerCall("+1\r\n");
    QCOMPARE(link.end(call), std::string("answered"));
}

void TestTraffic::aLinkIsCutAfterALongSilence()
{
    Link link;
    link.call("GET");
    link.finishWrite();
    link.receive("+");
    link.pass(milliseconds(1000));
    link.receive("x");
    link.pass(milliseconds(2000) - moment);
    QVERIFY(link.isUp());
    link.pass(moment);
    QVERIFY(!link.isUp());
    QCOMPARE(link.cause(),
             std::string("robot at arm:6379: silent for 2000 ms while GET awaits its reply"));
    QVERIFY(link.isClosed(1));
}

void TestTraffic::fourRoundTripsAreAddedToThat()
{
    Link link(quiet(), milliseconds(300));
    link.call("GET");
    link.finishWrite();
    link.pass(milliseconds(3200) - moment);
    QVERIFY(link.isUp());
    link.pass(moment);
    QVERIFY(!link.isUp());
}

void TestTraffic::patientCallersAreGivenTheirTime()
{
    ZoBrokerOptions options = quiet();
    options.exchangeTimeout = seconds(10);
    Link link(options);
    const auto call = link.call("GET", seconds(10));
    link.finishWrite();
    link.pass(seconds(5));
    link.machine.woken(link.now); // early, as a driver may
    link.settle();
    QVERIFY(link.isUp());
    link.pass(seconds(5) - moment);
    QVERIFY(link.isUp());
    QCOMPARE(link.ends(call), 0);
    link.pass(moment);
    QCOMPARE(link.end(call), std::string("robot at arm:6379: no reply to GET within 10000 ms"));
}

void TestTraffic::aSinkThatRunsOutOfMemoryIsALoss()
{
    class Poor : public StatusSink
    {
    public:
        using StatusSink::StatusSink;
        bool take(const ReplyPlace&, const ReplyPiece&) override { throw std::bad_alloc(); }
    };
    Link link;
    const auto call =
        std::make_shared<Exchange>("GET", sharedText("GET\r\n"), 1, std::make_shared<Poor>("GET"),
                                   Deadline::after(link.now, seconds(1)));
    link.machine.call(link.now, call);
    link.settle();
    link.answerCall("+1\r\n");
    QVERIFY(!link.isUp() && link.isClosed(1));
    QCOMPARE(link.end(call), std::string("robot at arm:6379: out of memory"));
}

void TestTraffic::bytesThatArrivedCountAlsoWhenTheDriverWasHeldUp()
{
    Link link;
    const auto call = link.call("GET");
    link.finishWrite();
    link.now += hours(1);
    link.receive("+1\r\n");
    link.pass(nanoseconds(0));
    QCOMPARE(link.end(call), std::string("answered"));
    QVERIFY(link.isUp());
}

void TestTraffic::anIdleLinkIsPinged()
{
    Link link(ZoBrokerOptions{});
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
    Link link(ZoBrokerOptions{});
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
    Link link(ZoBrokerOptions{});
    for (int i = 0; i < 10; ++i) {
        link.pass(milliseconds(1000));
        link.answerCall("-NOPERM no\r\n");
    }
    QVERIFY(link.isUp());
}

void TestTraffic::aCallWaitsForThePing()
{
    Link link(ZoBrokerOptions{});
    link.pass(milliseconds(1000));
    const auto call = link.call("GET");
    QVERIFY(!contains(link.sent(), "GET"));
    link.answerCall("+PONG\r\n");
    link.answerCall("+1\r\n");
    QCOMPARE(link.answer(call), std::string("1"));
}

void TestTraffic::aLargeRequestGoesOutInSlices()
{
    Link link;
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
    Link link;
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
    Link link;
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
    Link link;
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
    Link link;
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
    Link link(quiet(), milliseconds(80));
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
