// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/register_test.h"
#include "support/replay_bench.h"

#include <QtTest>

using namespace std::chrono_literals;

/// Steps and jumps of a recording that is played.
class TestReplayJumps : public GuardedTest, private ReplayBench
{
    Q_OBJECT

private slots:
    void itGoesStepByStep();
    void itJumps_data();
    void itJumps();
    void aLongSearchIsDoneInPieces();
    void whatWasNotKnownYetIsInvalidBehindAJumpBack();
    void aJumpPastTheEndOfARoundLeadsToTheNext();
    void theEndIsWhereItEnded();
    void manyStepsAreDoneInPieces();
    void playingGoesOnWhereStepsAreGivenUp();
    void aPauseGivesStepsUp();
    void aJumpWhileItSearchesCountsFromThere();
};

void TestReplayJumps::itGoesStepByStep()
{
    begin(fTable);
    obey("play");
    advance(60ms);
    obey("step");
    QVERIFY(advance(0ms) == (Values{{"a", "2"}}));
    QVERIFY(advance(1h).empty());
    obey("step 2");
    QVERIFY(advance(0ms) == (Values{{"a", "3"}, {"b", "true"}}));
    obey("step 7");
    QVERIFY(replay->hasEnded());
}

void TestReplayJumps::itJumps_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<int>("untilDue");
    for (const QByteArray& text : {fTable, fChanges}) {
        const QString form = text == fTable ? "table: " : "changes: ";
        const auto row = [&](const QString& command, const char* shown, int due) {
            QTest::newRow(qPrintable(form + command)) << text << command << QString(shown) << due;
        };
        row("jump 100.1", "100.1", 150);
        row("jump 100.2", "100.1", 50);
        row("jump 101", "101.0", -1);
        row("jump 5000", "101.0", -1);
        row("jump 7", "100.0", 100);
        row("jump 300ms", "100.25", 700);
        row("jump +200ms", "100.25", 540);
        row("jump -20ms", "100.1", 10);
        row("jump -1h", "100.0", 100);
    }
}

void TestReplayJumps::itJumps()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, command);
    QFETCH(QString, shown);
    QFETCH(int, untilDue);
    begin(text);
    obey("play");
    advance(260ms);
    obey(command.toStdString());
    const Values told = takeChanged();
    const auto time = told.find(kit::replayTimeKey);
    QCOMPARE(QString::fromStdString(time == told.end() ? "100.25" : time->second), shown);
    QCOMPARE(this->untilDue(), untilDue);
}

void TestReplayJumps::aLongSearchIsDoneInPieces()
{
    begin(longTable(200000));
    obey("play");
    takeChanged();
    obey("jump 190000");
    QVERIFY(replay->isSearching());
    QVERIFY(!replay->hasEnded());
    QVERIFY(*replay->due() <= now);
    QVERIFY(takeChanged()["Replay/State"] == "\"searching\"");
    Values values;
    int pieces = 0;
    for (; replay->isSearching(); ++pieces)
        values = advance(5ms);
    QVERIFY2(pieces > 3 && pieces < 100, qPrintable(QString::number(pieces)));
    QVERIFY(values == (Values{{"a", "190000"}}));
    QCOMPARE(untilDue(), 1000);
    obey("jump 5");
    obey("jump 199999");
    obey("step"); // gives the search up
    QVERIFY(!replay->isSearching());
}

void TestReplayJumps::whatWasNotKnownYetIsInvalidBehindAJumpBack()
{
    begin(fChanges);
    obey("play");
    advance(1s);
    obey("jump 100.1");
    QVERIFY(advance(0ms) == (Values{{"b", "\"x\""}, {"c", "null"}}));
}

void TestReplayJumps::aJumpPastTheEndOfARoundLeadsToTheNext()
{
    begin("time,a\r\n10,1\r\n11,2\r\n", 1, true);
    obey("play");
    takeChanged();
    obey("jump 5000");
    QVERIFY(advance(0ms) == (Values{{"a", "2"}}));
    QCOMPARE(untilDue(), 1000);
    QVERIFY(advance(1s) == (Values{{"a", "1"}}));
    QCOMPARE(untilDue(), 1000);
}

void TestReplayJumps::theEndIsWhereItEnded()
{
    begin(fTable);
    obey("play");
    advance(1s);
    advance(1h);
    QVERIFY(replay->hasEnded());
    obey("jump -900ms");
    QVERIFY(advance(0ms) == (Values{{"a", "2"}, {"b", "\"x\""}}));
    QCOMPARE(untilDue(), 150);
    obey("jump 5000");
    obey("jump -900ms");
    QCOMPARE(untilDue(), 150);
}

void TestReplayJumps::manyStepsAreDoneInPieces()
{
    begin(longTable(200000));
    obey("play");
    takeChanged();
    obey("step 190000");
    QVERIFY(replay->isSearching());
    Values values;
    int pieces = 0;
    for (; replay->isSearching(); ++pieces)
        values = advance(5ms);
    QVERIFY2(pieces > 3 && pieces < 100, qPrintable(QString::number(pieces)));
    QVERIFY(values == (Values{{"a", "190000"}}));
    QCOMPARE(untilDue(), -1); // it stands
    obey("step 9000");
    obey("jump 1");
    obey("step 190000");
    obey("play"); // gives the steps up
    QVERIFY(!replay->isSearching());
}

void TestReplayJumps::playingGoesOnWhereStepsAreGivenUp()
{
    begin(longTable(200000));
    obey("step 190000");
    QVERIFY(replay->isSearching());
    obey("play");
    QVERIFY(takeChanged()["Replay/State"] == "\"playing\"");
    QCOMPARE(untilDue(), 1000);
}

void TestReplayJumps::aPauseGivesStepsUp()
{
    begin(longTable(200000));
    obey("play");
    obey("step 190000");
    obey("pause");
    QVERIFY(takeChanged()["Replay/State"] == "\"paused\"");
    QCOMPARE(untilDue(), -1);
    obey("play");
    QCOMPARE(untilDue(), 1000);
}

void TestReplayJumps::aJumpWhileItSearchesCountsFromThere()
{
    begin(longTable(200000));
    obey("jump 100000");
    obey("jump +50000s");
    QVERIFY(replay->isSearching());
    QVERIFY(endSearch() == (Values{{"a", "150000"}}));
    obey("jump 0");
    obey("step 190000");
    const double shown = std::stod(takeChanged()["Replay/Time"]);
    QVERIFY(shown > 0);
    obey("jump +50000s");
    QVERIFY(endSearch() == (Values{{"a", std::to_string(int(shown) + 50000)}}));
}

REGISTER_TEST(TestReplayJumps, NoApplication)
#include "tst_replay_jumps.moc"
