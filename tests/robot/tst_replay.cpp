// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/register_test.h"
#include "support/replay_bench.h"

#include <QtTest>

using namespace std::chrono_literals;

/// What a recording that is played publishes, and when.
class TestReplay : public GuardedTest, private ReplayBench
{
    Q_OBJECT

private slots:
    void theFirstStepIsShownAtOnce();
    void stepsFallDueAtTheirTimes();
    void recordedStatesAndCommandsAreNotPlayed();
    void onlyWhatChangedIsPublished();
    void stepsThatAreLateAreShownTogether();
    void changesAreStepsToo();
    void aGapIsShownAsInvalidValues();
    void itStandsAndGoesOn();
    void itRunsFaster();
    void itLoopsWithoutDrift();
    void roundsThatAreOverAreNotPlayed();
    void itEndsAndCanBeginAgain();
    void manyLateStepsAreShownInPieces();
    void whatTheMemoryMayHaveLostIsPublishedAgain();
    void aCutFileIsPlayedAsFarAsItIsWhole();
    void badFilesAreNamed_data();
    void badFilesAreNamed();
};

void TestReplay::theFirstStepIsShownAtOnce()
{
    begin(fTable);
    const Values first = {{"a", "1"},
                          {"b", "\"x\""},
                          {"Replay/State", "\"paused\""},
                          {"Replay/Time", "100.0"},
                          {"Replay/Speed", "1.0"}};
    QVERIFY(takeChanged() == first);
    QCOMPARE(untilDue(), -1);
    obey("play");
    QVERIFY(takeChanged() == (Values{{"Replay/State", "\"playing\""}}));
    QCOMPARE(untilDue(), 100);
}

void TestReplay::stepsFallDueAtTheirTimes()
{
    begin(fTable);
    obey("play");
    takeChanged();
    QVERIFY(advance(99ms).empty());
    QVERIFY(advance(1ms) == (Values{{"a", "2"}}));
    QCOMPARE(untilDue(), 150);
    QVERIFY(advance(150ms) == (Values{{"b", "null"}}));
    QCOMPARE(untilDue(), 750);
}

void TestReplay::recordedStatesAndCommandsAreNotPlayed()
{
    begin("time,a,Replay/State,Replay/Control\r\n100.000,1,\"\"\"ended\"\"\",\"\"\"pause\"\"\"\r\n"
          "101.000,2,,\r\n");
    const Values shown = {{"a", "1"},
                          {"Replay/State", "\"paused\""},
                          {"Replay/Time", "100.0"},
                          {"Replay/Speed", "1.0"}};
    QVERIFY(takeChanged() == shown);
}

void TestReplay::onlyWhatChangedIsPublished()
{
    begin("time,a,b\r\n1,1,2\r\n2,1,2\r\n3,1,3\r\n");
    obey("play");
    takeChanged();
    QVERIFY(advance(1s).empty());
    QVERIFY(advance(1s) == (Values{{"b", "3"}}));
}

void TestReplay::stepsThatAreLateAreShownTogether()
{
    begin(fTable);
    obey("play");
    takeChanged();
    QVERIFY(advance(10s) == (Values{{"a", "3"}, {"b", "true"}}));
}

void TestReplay::changesAreStepsToo()
{
    begin(fChanges);
    obey("play");
    QVERIFY(advance(0ms) == (Values{{"a", "1"}, {"b", "\"x\""}}));
    QVERIFY(advance(100ms) == (Values{{"a", "2"}}));
    QVERIFY(advance(150ms) == (Values{{"b", "null"}}));
    QVERIFY(advance(750ms) == (Values{{"c", "true"}}));
    QVERIFY(replay->hasEnded());
}

void TestReplay::aGapIsShownAsInvalidValues()
{
    begin("time,a\r\n1,1\r\n2,\r\n3,1\r\n");
    obey("play");
    takeChanged();
    QVERIFY(advance(1s) == (Values{{"a", "null"}}));
    QVERIFY(advance(1s) == (Values{{"a", "1"}}));
}

void TestReplay::itStandsAndGoesOn()
{
    begin(fTable);
    obey("play");
    advance(60ms);
    obey("pause");
    QVERIFY(advance(1h).empty());
    obey("play");
    QCOMPARE(untilDue(), 40);
}

void TestReplay::itRunsFaster()
{
    begin(fTable, 10);
    obey("play");
    QCOMPARE(untilDue(), 10);
    obey("speed 0.5");
    QCOMPARE(untilDue(), 200);
    QCOMPARE(takeChanged()["Replay/Speed"], std::string("0.5"));
}

void TestReplay::itLoopsWithoutDrift()
{
    begin("time,a\r\n10,1\r\n11,2\r\n12.5,3\r\n", 1, true);
    obey("play");
    takeChanged();
    QVERIFY(advance(1s) == (Values{{"a", "2"}}));
    QVERIFY(advance(1500ms) == (Values{{"a", "3"}}));
    QVERIFY(!replay->hasEnded());
    QCOMPARE(untilDue(), 1500); // as between the last two
    QVERIFY(advance(1510ms) == (Values{{"a", "1"}}));
    QCOMPARE(untilDue(), 990);
    QVERIFY(advance(990ms) == (Values{{"a", "2"}}));
}

void TestReplay::roundsThatAreOverAreNotPlayed()
{
    begin("time,a\r\n10,1\r\n11,2\r\n", 1, true);
    obey("play");
    takeChanged();
    QVERIFY(advance(1s) == (Values{{"a", "2"}}));
    QVERIFY(advance(24h) == (Values{{"a", "1"}})); // as after a sleep of the machine
    QCOMPARE(untilDue(), 1000);
}

void TestReplay::manyLateStepsAreShownInPieces()
{
    begin(longTable(200000));
    obey("play");
    takeChanged();
    now += 190000s;
    int pieces = 0;
    for (; *replay->due() <= now; ++pieces)
        replay->advance(now);
    QVERIFY2(pieces > 3 && pieces < 100, qPrintable(QString::number(pieces)));
    QCOMPARE(takeChanged()["a"], std::string("190000"));
}

void TestReplay::itEndsAndCanBeginAgain()
{
    begin(fTable);
    obey("play");
    advance(1s);
    QVERIFY(replay->hasEnded());
    QCOMPARE(untilDue(), -1);
    QVERIFY(advance(1h).empty());
    obey("play");
    QVERIFY(!replay->hasEnded());
    QVERIFY(advance(0ms) == (Values{{"a", "1"}, {"b", "\"x\""}}));
    QCOMPARE(untilDue(), 100);
}

void TestReplay::whatTheMemoryMayHaveLostIsPublishedAgain()
{
    begin(fTable);
    const Values first = takeChanged();
    QVERIFY(takeChanged().empty());
    replay->startOver();
    QVERIFY(takeChanged() == first);
}

void TestReplay::aCutFileIsPlayedAsFarAsItIsWhole()
{
    begin(fTable + "102.000,\"[1");
    obey("play");
    QCOMPARE(replay->cutRow(), std::uint64_t(0));
    QVERIFY(advance(10s) == (Values{{"a", "3"}, {"b", "true"}}));
    QVERIFY(replay->hasEnded());
    QCOMPARE(replay->cutRow(), std::uint64_t(6));
}

void TestReplay::badFilesAreNamed_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("message");
    const auto row = [](const char* name, const QByteArray& text, const char* message) {
        QTest::newRow(name) << text << QString(message);
    };
    row("empty", "", "is empty");
    row("cut header", "time,a", "is empty, or ends within its first row");
    row("other columns", "seconds,a\r\n1,2\r\n", "row 1: the first column is called 'seconds'");
    row("time alone", "time\r\n1\r\n", "row 1: there is no column beside the time");
    row("a column twice", "time,a,a\r\n1,2,3\r\n", "row 1: two columns are called 'a'");
    row("no row", "time,a\r\n", "has no row to play");
    row("a column more", "time,a\r\n1,2\r\n2,3,4\r\n", "row 3: it has 3 columns, not 2");
    row("a column less", "time,a,b\r\n1,2\r\n", "row 2: it has 2 columns, not 3");
    row("no time", "time,a\r\nx,2\r\n", "row 2: 'x' is no time in seconds");
    row("no number", "time,a\r\nnan,2\r\n", "row 2: 'nan' is no time in seconds");
    row("back in time", "time,a\r\n2,2\r\n1,3\r\n",
        "row 3: its time is before that of the row above");
    row("changes back in time", "time,key,type,value\r\n2,a,int,2\r\n1,a,int,3\r\n",
        "row 3: its time");
    row("XML", "<stm_viewer/>\n", "row 1: the first column is called '<stm_viewer/>'");
}

void TestReplay::badFilesAreNamed()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, message);
    try {
        begin(text);
        obey("jump 1000");
        QFAIL("it was played");
    } catch (const std::runtime_error& error) {
        QVERIFY2(QString(error.what()).contains(message), error.what());
        QVERIFY2(QString(error.what()).contains(path()), error.what());
    }
}

REGISTER_TEST(TestReplay, NoApplication)
#include "tst_replay.moc"
