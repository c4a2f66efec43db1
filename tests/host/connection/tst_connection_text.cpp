// SPDX-License-Identifier: MIT
#include "connection/connection_text.h"
#include "support/guarded_test.h"
#include "support/outage.h"
#include "support/register_test.h"

#include <QtTest>

/// What a window says about its connection.
class TestConnectionText : public GuardedTest
{
    Q_OBJECT

private slots:
    void saysHowItIsAndSinceWhen();
    void saysTheDateOfATimeOfAnotherDay();
    void saysWhereTheRobotIsAsLongAsItIsThere();
    void saysWhyTheRobotIsAway();
    void aRefusalIsToldAsFinal();
    void theTitleSaysHowItIs();
    void theHeadlineSaysWhoAndSinceWhen();
    void asLongAsAllIsWellThereIsNoAdvice();
    void warnsOfOldValuesWheneverTheRobotIsAway();
    void saysWhatIsBeingDone();
    void saysWhetherPanelsGoOn();
    void saysWhatToDoAfterALossUntilItIsKnown();
    void saysHowManyPanelsAreConcerned();
    void theReasonIsTheRobots();
    void aRemarkFollowsTheReason();
};

void TestConnectionText::saysHowItIsAndSinceWhen()
{
    const QDateTime now = noon.addSecs(60);
    QCOMPARE(connectionBrief(connectedState(), now), QString("Connected since 12:00:00"));
    QCOMPARE(connectionBrief(interruptedState(), now), QString("Interrupted since 12:00:00"));
    QCOMPARE(connectionBrief(lostState(), now), QString("Connection lost since 12:00:00"));
    QCOMPARE(connectionBrief(refusedState(), now), QString("Refused, lost since 12:00:00"));
    QCOMPARE(connectionBrief(closedState(), now), QString("Disconnected since 12:00:00"));
}

void TestConnectionText::saysTheDateOfATimeOfAnotherDay()
{
    QCOMPARE(connectionBrief(connectedState(), noon.addDays(1)),
             QString("Connected since 2026-11-20 12:00:00"));
}

void TestConnectionText::saysWhereTheRobotIsAsLongAsItIsThere()
{
    QCOMPARE(connectionDetail(connectedState(), "robot:1"), QString("robot:1"));
    ConnectionState back = connectedState();
    back.stopped = 1;
    QCOMPARE(connectionDetail(back, "robot:1"), QString("robot:1")); // the other bar tells more
}

void TestConnectionText::saysWhyTheRobotIsAway()
{
    for (const ConnectionState& state : {interruptedState(), lostState()})
        QCOMPARE(connectionDetail(state, "robot:1"), QString("Trying again: robot:1 fell over"));
    QCOMPARE(connectionDetail(closedState(), "robot:1"), QString("robot:1 fell over"));
}

void TestConnectionText::aRefusalIsToldAsFinal()
{
    QCOMPARE(connectionDetail(refusedState(), "robot:1"),
             QString("Not trying again: robot:1 fell over"));
}

void TestConnectionText::theTitleSaysHowItIs()
{
    QCOMPARE(connectionTitlePrefix(connectedState()), QString());
    QCOMPARE(connectionTitlePrefix(interruptedState()), QString("Interrupted: "));
    QCOMPARE(connectionTitlePrefix(lostState()), QString("Lost: "));
    QCOMPARE(connectionTitlePrefix(refusedState()), QString("Refused: "));
    QCOMPARE(connectionTitlePrefix(closedState()), QString("Disconnected: "));
}

void TestConnectionText::theHeadlineSaysWhoAndSinceWhen()
{
    QCOMPARE(connectionHeadline(interruptedState(), "robot:1", noon),
             QString("Interrupted since 12:00:00 (robot:1)"));
}

void TestConnectionText::asLongAsAllIsWellThereIsNoAdvice()
{
    QCOMPARE(connectionAdvice(connectedState()), QString());
    QCOMPARE(connectionReason(connectedState()), QString());
}

void TestConnectionText::warnsOfOldValuesWheneverTheRobotIsAway()
{
    for (const ConnectionState& state :
         {interruptedState(), lostState(), refusedState(), closedState()}) {
        QVERIFY(connectionAdvice(state).contains("Nothing new comes in"));
        QVERIFY(connectionAdvice(state).contains("curves drawn since then are no new data"));
    }
}

void TestConnectionText::saysWhatIsBeingDone()
{
    QVERIFY(connectionAdvice(interruptedState()).contains("tried again and again"));
    QVERIFY(connectionAdvice(lostState()).contains("tried again and again"));
    QVERIFY(connectionAdvice(refusedState()).contains("not tried again"));
    QVERIFY(connectionAdvice(refusedState()).contains("\"Connect again\""));
    QVERIFY(connectionAdvice(closedState()).contains("on request"));
    QVERIFY(connectionAdvice(closedState()).contains("\"Reconnect\""));
}

void TestConnectionText::saysWhetherPanelsGoOn()
{
    QVERIFY(connectionAdvice(interruptedState()).contains("go on by themselves"));
    for (const ConnectionState& state : {lostState(), refusedState(), closedState()}) {
        QVERIFY(!connectionAdvice(state).contains("go on by themselves"));
        QVERIFY(connectionAdvice(state).contains("Panels have stopped fetching"));
    }
    ConnectionState alone = lostState();
    alone.panels = alone.concerned = 0;
    QVERIFY(!connectionAdvice(alone).contains("Panels"));
}

void TestConnectionText::saysWhatToDoAfterALossUntilItIsKnown()
{
    ConnectionState back = connectedState();
    back.stopped = 2;
    QVERIFY(connectionAdvice(back).contains("have stopped fetching"));
    QVERIFY(connectionAdvice(back).contains("Start it again in each"));
    back.stopped = 0;
    QCOMPARE(connectionAdvice(back), QString());
}

void TestConnectionText::saysHowManyPanelsAreConcerned()
{
    ConnectionState state = interruptedState();
    QVERIFY(!connectionAdvice(state).contains("the others go on"));
    state.panels = 3;
    QVERIFY(connectionAdvice(state).contains("Concerns 1 of 3 panels; the others go on."));
}

void TestConnectionText::theReasonIsTheRobots()
{
    QCOMPARE(connectionReason(interruptedState()), QString("robot:1 fell over"));
    QCOMPARE(connectionReason(refusedState()), QString("robot:1 fell over"));
    QCOMPARE(connectionReason(closedState()), QString()); // the user's own
    const QString longest(250, 'x');
    QCOMPARE(connectionReason(lostState(longest)), longest);
    QCOMPARE(connectionReason(lostState(longest + 'y')), longest.chopped(1) + QChar(0x2026));
}

void TestConnectionText::aRemarkFollowsTheReason()
{
    ConnectionState state = lostState("fell over");
    state.remark = "ssh says:\nno";
    QCOMPARE(connectionReason(state), QString("fell over\nssh says:\nno"));
    state.remark = QString(250, 'x') + "no";
    QCOMPARE(connectionReason(state),
             QString("fell over\n") + QChar(0x2026) + QString(247, 'x') + "no");
}

REGISTER_TEST(TestConnectionText, QCoreApplication)
#include "tst_connection_text.moc"
