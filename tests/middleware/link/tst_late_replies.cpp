// SPDX-License-Identifier: MIT
#include "support/contains.h"
#include "support/guarded_test.h"
#include "support/link_bench.h"
#include "support/register_test.h"

#include <QtTest>

#include <chrono>

using namespace zo;

using std::chrono::hours;
using std::chrono::milliseconds;
using std::chrono::nanoseconds;
using std::chrono::seconds;

/// How long calls and links wait for a robot that is late, in virtual time.
class TestLateReplies : public GuardedTest
{
    Q_OBJECT

private slots:
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
    void bytesThatArrivedCountAlsoWhenTheDriverWasHeldUp();
};

void TestLateReplies::aCallWaitsSoLongForASilentRobot()
{
    LinkBench link;
    const auto call = link.call("GET");
    link.finishWrite();
    link.pass(milliseconds(250) - moment);
    QCOMPARE(link.ends(call), 0);
    link.pass(moment);
    QCOMPARE(link.end(call), std::string("robot at arm:6379: no reply to GET within 250 ms"));
    QVERIFY(link.isUp());
}

void TestLateReplies::aRoundTripIsAddedToThat()
{
    LinkBench link(withoutPings(), milliseconds(300));
    const auto call = link.call("GET");
    link.finishWrite();
    link.pass(milliseconds(550) - moment);
    QCOMPARE(link.ends(call), 0);
    link.pass(moment);
    QCOMPARE(link.ends(call), 1);
}

void TestLateReplies::aRobotThatAnswersSlowlyIsWaitedForUntilTheDeadline()
{
    LinkBench link;
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

void TestLateReplies::aReplyThatBreaksOffIsNamed()
{
    LinkBench link;
    const auto call = link.call("GET");
    link.finishWrite();
    link.pass(milliseconds(200));
    link.receive("+x");
    link.pass(milliseconds(249));
    QCOMPARE(link.ends(call), 0);
    link.pass(milliseconds(100));
    QVERIFY2(contains(link.end(call), "the reply to GET broke off"), link.end(call).c_str());
}

void TestLateReplies::aLateReplyReachesNobody()
{
    LinkBench link;
    const auto late = link.call("GET");
    link.finishWrite();
    link.pass(milliseconds(300));
    QCOMPARE(link.ends(late), 1);
    link.receive("+late");
    const auto next = link.call("SET");
    QVERIFY(contains(link.sent(), "SET"));
    link.finishWrite();
    link.receive("\r\n+next\r\n");
    QCOMPARE(link.end(next), std::string("answered"));
    QCOMPARE(link.answer(next), std::string("next"));
    QCOMPARE(link.ends(late), 1);
}

void TestLateReplies::aSilentRobotCostsItsCallersOneWait()
{
    LinkBench link;
    link.call("GET");
    link.finishWrite();
    const auto waiting = link.call("SET");
    link.finishWrite();
    link.pass(milliseconds(250));
    QCOMPARE(link.ends(waiting), 1);
    link.pass(milliseconds(100));
    const auto next = link.call("SET");
    link.pass(nanoseconds(0));
    QCOMPARE(link.end(next),
             std::string("robot at arm:6379: SET was not sent: nothing came for 350 ms"));
    QVERIFY(link.isUp());
}

void TestLateReplies::aLinkThatWasSilentServesAgain()
{
    LinkBench link;
    link.call("GET");
    link.finishWrite();
    link.pass(milliseconds(1900));
    link.receive("+late\r\n");
    const auto next = link.call("SET");
    QVERIFY(contains(link.sent(), "SET"));
    link.answerCall("+OK\r\n");
    QCOMPARE(link.end(next), std::string("answered"));
}

void TestLateReplies::givingUpLeavesTheLinkUp()
{
    LinkBench link;
    const auto call = link.call("GET");
    link.machine.givenUp(link.now, call);
    link.settle();
    QVERIFY(link.isUp() && link.closes.empty());
    link.pass(milliseconds(500));
    link.answerCall("+1\r\n");
    QCOMPARE(link.ends(call), 0);
    QVERIFY(link.isUp() && link.closes.empty());
}

void TestLateReplies::aCallThatIsGivenUpIsNeverSent()
{
    LinkBench link;
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

void TestLateReplies::aCallWhoseTimeIsUpIsNeverSent()
{
    LinkBench link;
    link.call("ONE"); // which the network does not take yet
    const auto late = link.call("TWO", milliseconds(100));
    link.pass(milliseconds(100) - moment);
    QCOMPARE(link.ends(late), 0);
    link.now += moment; // that is written before time is up for the driver
    link.finishWrite();
    link.receive("+1\r\n");
    QCOMPARE(link.ends(late), 0);
    link.pass(nanoseconds(0));
    QVERIFY2(contains(link.end(late), "no reply to TWO within 100 ms: it was not sent"),
             link.end(late).c_str());
    QCOMPARE(link.sent(), std::string("ONE\r\n"));
    link.call("THREE");
    QCOMPARE(link.sent(), std::string("ONE\r\nTHREE\r\n"));
}

void TestLateReplies::whoWaitsBehindALateCallIsSent()
{
    LinkBench link;
    link.call("ONE");
    const auto late = link.call("TWO", milliseconds(100));
    link.call("THREE");
    link.now += milliseconds(100);
    link.finishWrite();
    link.pass(nanoseconds(0));
    QCOMPARE(link.ends(late), 1);
    QCOMPARE(link.sent(), std::string("ONE\r\nTHREE\r\n"));
}

void TestLateReplies::aCallThatComesTooLateIsNeverSent()
{
    LinkBench link;
    const auto call = link.makeCall("GET", milliseconds(100));
    link.now += milliseconds(100);
    link.machine.call(link.now, call);
    link.settle();
    link.pass(nanoseconds(0));
    QCOMPARE(link.ends(call), 1);
    QVERIFY(link.sent().empty());
}

void TestLateReplies::aCallWhoseAnswerCannotComeInTimeIsNeverSent()
{
    ZoBrokerOptions options = withoutPings();
    options.exchangeTimeout = seconds(10);
    LinkBench link(options, milliseconds(300));
    link.call("ONE", seconds(10)); // which the network does not take yet
    const auto hopeless = link.call("TWO", milliseconds(1000));
    link.call("THREE", seconds(10));
    link.pass(milliseconds(700) - moment);
    QCOMPARE(link.ends(hopeless), 0);
    QVERIFY(link.machine.wakeAt() == link.now + moment);
    link.pass(moment);
    link.finishWrite();
    QVERIFY2(contains(link.end(hopeless), "no reply to TWO within 1000 ms: it was not sent"),
             link.end(hopeless).c_str());
    QCOMPARE(link.sent(), std::string("ONE\r\nTHREE\r\n"));
}

void TestLateReplies::aCallThatFindsTheLinkIdleIsTriedAlsoWhenTheWayWasSlow()
{
    LinkBench link(withoutPings(), milliseconds(900));
    const auto call = link.call("GET", milliseconds(100));
    QCOMPARE(link.sent(), std::string("GET\r\n"));
    link.answerCall("+1\r\n");
    QCOMPARE(link.end(call), std::string("answered"));
}

void TestLateReplies::aLinkIsCutAfterALongSilence()
{
    LinkBench link;
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

void TestLateReplies::fourRoundTripsAreAddedToThat()
{
    LinkBench link(withoutPings(), milliseconds(300));
    link.call("GET");
    link.finishWrite();
    link.pass(milliseconds(3200) - moment);
    QVERIFY(link.isUp());
    link.pass(moment);
    QVERIFY(!link.isUp());
}

void TestLateReplies::patientCallersAreGivenTheirTime()
{
    ZoBrokerOptions options = withoutPings();
    options.exchangeTimeout = seconds(10);
    LinkBench link(options);
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

void TestLateReplies::bytesThatArrivedCountAlsoWhenTheDriverWasHeldUp()
{
    LinkBench link;
    const auto call = link.call("GET");
    link.finishWrite();
    link.now += hours(1);
    link.receive("+1\r\n");
    link.pass(nanoseconds(0));
    QCOMPARE(link.end(call), std::string("answered"));
    QVERIFY(link.isUp());
}

REGISTER_TEST(TestLateReplies, QCoreApplication)
#include "tst_late_replies.moc"
