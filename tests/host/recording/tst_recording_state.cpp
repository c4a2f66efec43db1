// SPDX-License-Identifier: MIT
#include "recording/recording_state.h"
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <QtTest>

Q_DECLARE_METATYPE(RecordingState::Phase)

namespace {

const QByteArray good = R"({"state":"recording","rows":12000,"missed":0,"tooLarge":0,)"
                        R"("empty":2,"bytes":4096,"free":58400000000,"age":3,"file":"/tmp/a.csv",)"
                        R"("cause":"","later":[1]})";

} // namespace

/// What the recorder tells, and what is made of it.
class TestRecordingState : public GuardedTest
{
    Q_OBJECT

private slots:
    void aLineIsUnderstood();
    void whatIsNotKnownIsLeftOut();
    void anyOtherLineIsNone_data();
    void anyOtherLineIsNone();
    void theTextTellsWhatMatters_data();
    void theTextTellsWhatMatters();
};

void TestRecordingState::aLineIsUnderstood()
{
    const auto state = recordingStateFrom(good + '\n');
    QVERIFY(state);
    QCOMPARE(int(state->phase), int(RecordingState::Phase::Recording));
    QCOMPARE(state->rows, qint64(12000));
    QCOMPARE(state->bytes, qint64(4096));
    QCOMPARE(state->empty, qint64(2));
    QVERIFY(state->free && *state->free == 58400000000);
    QCOMPARE(state->file, QString("/tmp/a.csv"));
}

void TestRecordingState::whatIsNotKnownIsLeftOut()
{
    QByteArray line = good;
    line.replace("\"tooLarge\":0,", "").replace("\"empty\":2,", "");
    line.replace("58400000000", "null").replace("\"cause\":\"\"", "\"cause\":\"a\\n  b\"");
    const auto state = recordingStateFrom(line.replace("recording", "waiting"));
    QVERIFY(state && !state->free && state->tooLarge == 0 && state->empty == 0);
    QCOMPARE(int(state->phase), int(RecordingState::Phase::Waiting));
    QCOMPARE(state->cause, QString("a b"));
}

void TestRecordingState::anyOtherLineIsNone_data()
{
    QTest::addColumn<QByteArray>("line");
    const auto with = [](const QByteArray& before, const QByteArray& after) {
        return QByteArray(good).replace(before, after);
    };
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("no JSON") << QByteArray("zo record: the robot is lost");
    QTest::newRow("no object") << QByteArray("[1]");
    QTest::newRow("cut") << good.left(good.size() / 2);
    QTest::newRow("another state") << with("recording", "flying");
    QTest::newRow("no rows") << with("\"rows\"", "\"columns\"");
    QTest::newRow("negative") << with("12000", "-1");
    QTest::newRow("a fraction") << with("4096", "0.5");
    QTest::newRow("too many") << with("4096", "1e300");
    QTest::newRow("a string") << with("\"missed\":0", "\"missed\":\"0\"");
}

void TestRecordingState::anyOtherLineIsNone()
{
    QFETCH(QByteArray, line);
    QVERIFY(!recordingStateFrom(line));
}

void TestRecordingState::theTextTellsWhatMatters_data()
{
    QTest::addColumn<RecordingState::Phase>("phase");
    QTest::addColumn<int>("lost"); // polls, values, and keys
    QTest::addColumn<bool>("knowsFree");
    QTest::addColumn<QString>("text");
    using Phase = RecordingState::Phase;
    QTest::newRow("start") << Phase::Starting << 0 << false << "starting";
    QTest::newRow("well") << Phase::Recording << 0 << true << "12,000 rows, 291.6 MB, 58.4 GB free";
    QTest::newRow("gaps") << Phase::Recording << 3 << false
                          << "12,000 rows, 291.6 MB, 3 polls missed, 3 values too large, "
                             "keys without a value: 3";
    QTest::newRow("away") << Phase::Waiting << 0 << false
                          << "waits for the robot, 12,000 rows, 291.6 MB";
}

void TestRecordingState::theTextTellsWhatMatters()
{
    QFETCH(RecordingState::Phase, phase);
    QFETCH(int, lost);
    QFETCH(bool, knowsFree);
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    RecordingState state;
    state.phase = phase;
    state.rows = 12000;
    state.bytes = 291600000;
    state.missed = lost;
    state.tooLarge = lost;
    state.empty = lost;
    if (knowsFree)
        state.free = 58400000000;
    const QString text = recordingText(state);
    QLocale::setDefault(before);
    QTEST(text, "text");
}

REGISTER_TEST(TestRecordingState, NoApplication)
#include "tst_recording_state.moc"
